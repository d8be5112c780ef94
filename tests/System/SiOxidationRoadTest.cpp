#include "System/WaferRoad.h"

#include "Model/Process/ProcessFactory.h"

namespace {

using Support::DialogAnswer;

constexpr std::uint32_t Oxide = 3;

class SiOxidationRoadTest : public WaferRoad
{
protected:
    ~SiOxidationRoadTest() override
    {
        Model::Process::ProcessFactory::instance()->loadDefaultProcesses();
    }

    static DialogAnswer oxide(const char *thickness, const char *conversion = "100")
    {
        return DialogAnswer()
            .type("dblThickness", thickness)
            .type("dblCellUnitsPerMicron", conversion)
            .accept();
    }
    static DialogAnswer furnace(const char *time, const char *temperature, const char *pressure,
                                const char *conversion = "100")
    {
        return DialogAnswer()
            .check("rbtTime")
            .type("dblTime", time)
            .type("dblTemperature", temperature)
            .type("dblPressure", pressure)
            .type("dblCellUnitsPerMicron", conversion)
            .accept();
    }
    void expectOxide(std::uint32_t silicon, std::uint32_t thickness)
    {
        expectLayers(silicon, thickness, Oxide);
    }
    /// On a new wafer.
    void oxidize(const DialogAnswer &answer)
    {
        createBlock(40, 0);
        run("actionSi_Oxidation", answer);
    }

    // A wafer that is thin for the number of threads gets no oxide at all.
    const Support::PoolThreads m_threads{2};
};

TEST_F(SiOxidationRoadTest, OxideGrowsOutOfTheSiliconAndIntoIt)
{
    // Cells up to 5.6 units above the uppermost silicon, and those less than 3 units below it.
    run("actionSi_Oxidation", oxide("10"));
    expectOxide(9, 8);
    EXPECT_EQ(lastLines(2), (QStringList{"Simple Si Oxidation: Cell volume selected.",
                                         "Simple Si Oxidation: Operation finished."}));
    EXPECT_TRUE(idle());
    // It is not undone.
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(SiOxidationRoadTest, AThicknessIsTakenInCellsWhateverTheConversionIs)
{
    run("actionSi_Oxidation", oxide("10", "7"));
    expectOxide(9, 8);
}

TEST_F(SiOxidationRoadTest, UnderFurnaceConditionsTheConversionCounts)
{
    // 0.105457 microns: 10.5457 units, and 21.0914.
    run("actionSi_Oxidation", furnace("2", "1273", "1"));
    expectOxide(8, 9);
    oxidize(furnace("2", "1273", "1", "200"));
    expectOxide(5, 18);
    // The oxide that is there before any time has passed: 0.025 microns, 25 units.
    oxidize(furnace("0", "1273", "1", "1000"));
    expectOxide(4, 22);
}

TEST_F(SiOxidationRoadTest, AThicknessThatIsTypedAndNotChosenHasNoEffect)
{
    run("actionSi_Oxidation", DialogAnswer().type("dblThickness", "30").check("rbtTime").accept());
    expectOxide(8, 9);
}

TEST_F(SiOxidationRoadTest, TheOnlyObjectNeedsNotBeSelected)
{
    m_driver.trigger("actionSi_Oxidation", {oxide("10")});
    expectOxide(9, 8);
}

TEST_F(SiOxidationRoadTest, OfTwoVolumesOneHasToBePicked)
{
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    m_driver.trigger("actionSi_Oxidation");
    EXPECT_EQ(lastLines(1),
              QStringList("Simple Si Oxidation: Select a cell volume and press Enter/Return."));
    EXPECT_FALSE(idle());
}

TEST_F(SiOxidationRoadTest, ThicknessesOfACellAndLessChangeNothing)
{
    for (const char *thickness : {"1", "0.99", "0"}) {
        run("actionSi_Oxidation", oxide(thickness));
        expectLayers(12);
        EXPECT_EQ(lastLines(1), QStringList("Simple Si Oxidation: Operation finished."));
        EXPECT_TRUE(idle());
    }
}

TEST_F(SiOxidationRoadTest, TemperatureZeroAndPressureZeroChangeNothing)
{
    run("actionSi_Oxidation", furnace("2", "0", "1"));
    expectLayers(12);
    run("actionSi_Oxidation", furnace("2", "1273", "0"));
    expectLayers(12);
    run("actionSi_Oxidation", furnace("0", "0", "0"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Simple Si Oxidation: Operation finished."));
}

TEST_F(SiOxidationRoadTest, AWaferThatIsThinForTheNumberOfThreadsGetsNoOxide)
{
    const Support::PoolThreads many(21);
    run("actionSi_Oxidation", oxide("10"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Simple Si Oxidation: Operation finished."));
}

TEST_F(SiOxidationRoadTest, ARejectedDialogLeavesTheOperationCurrentUntilTheNextOneStarts)
{
    run("actionSi_Oxidation", DialogAnswer().reject());
    EXPECT_FALSE(idle());
    EXPECT_EQ(lastLines(1), QStringList("Simple Si Oxidation: Cell volume selected."));
    m_driver.trigger("actionSi_Oxidation", {DialogAnswer().reject()});
    EXPECT_EQ(lastLines(2), (QStringList{"Simple Si Oxidation: Operation canceled.",
                                         "Simple Si Oxidation: Cell volume selected."}));
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLines(1), QStringList("Simple Si Oxidation: Operation canceled."));
    EXPECT_TRUE(idle());
    expectLayers(12);
}

TEST_F(SiOxidationRoadTest, AProcessOfAnotherNameOxidizesNothing)
{
    const auto processes = Model::Process::ProcessFactory::instance();
    const Model::Process::Process oxidation = processes->processByName("Simple Si Oxidation");
    processes->updateProcess({"Furnace", oxidation.id(), oxidation.compatibleMaterialIds()});
    run("actionSi_Oxidation", oxide("10"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Simple Si Oxidation: Operation finished."));
}

} // namespace
