#include "System/WaferRoad.h"

#include "Model/Process/ProcessFactory.h"

#include <QComboBox>

namespace {

using Support::DialogAnswer;

constexpr std::uint32_t NDoped = 14;

class IonImplantationRoadTest : public WaferRoad
{
protected:
    ~IonImplantationRoadTest() override
    {
        Model::Process::ProcessFactory::instance()->loadDefaultProcesses();
    }

    static DialogAnswer implant(const char *depth, const char *annealing)
    {
        return DialogAnswer()
            .choose("cbxMaterial", "N-doped Si (100)")
            .type("dblImplantationDepth", depth)
            .type("dblAnnealingDistance", annealing)
            .accept();
    }
    /// Silicon with a doped layer from one height to below another.
    void expectDoped(std::uint32_t from, std::uint32_t to)
    {
        expectCells([=](std::uint32_t, std::uint32_t, std::uint32_t z) {
            return z >= from && z < to ? NDoped : z < 12 ? Silicon : 0u;
        });
    }
    static void rename(const char *name)
    {
        const auto processes = Model::Process::ProcessFactory::instance();
        const Model::Process::Process process = processes->processByName(name);
        processes->updateProcess({"Renamed", process.id(), process.compatibleMaterialIds()});
    }
};

TEST_F(IonImplantationRoadTest, TheLayerLiesAtTheDepthAndSpreadsByTheAnnealingDistance)
{
    // Counted from one cell above the wafer.
    run("actionIon_Implantation", implant("5", "2"));
    expectDoped(5, 10);
    EXPECT_EQ(lastLines(2), (QStringList{"Ion Implantation: Cell volume selected.",
                                         "Ion Implantation: Operation finished."}));
    EXPECT_TRUE(idle());
    // It is not undone.
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(IonImplantationRoadTest, WithoutAnnealingTheLayerIsOneCellThick)
{
    run("actionIon_Implantation", implant("1", "0"));
    expectDoped(11, 12);
}

TEST_F(IonImplantationRoadTest, ADepthHalfWayBetweenTwoCellsImplantsBoth)
{
    run("actionIon_Implantation", implant("4.5", "0"));
    expectDoped(7, 9);
}

TEST_F(IonImplantationRoadTest, TheVolumeCanBePickedAtThePrompt)
{
    m_driver.trigger("actionIon_Implantation");
    EXPECT_EQ(lastLines(1),
              QStringList("Ion Implantation: Select a cell volume and press Enter/Return."));
    pick();
    m_driver.answering({implant("3", "1")}, [this] { m_driver.press(Qt::Key_Return); });
    expectDoped(8, 11);
}

TEST_F(IonImplantationRoadTest, DepthsBelowHalfACellAndBelowTheWaferChangeNothing)
{
    run("actionIon_Implantation", implant("0.49", "0"));
    expectLayers(12);
    run("actionIon_Implantation", implant("13", "0"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Ion Implantation: Operation finished."));
}

TEST_F(IonImplantationRoadTest, ARejectedDialogLeavesTheOperationCurrentUntilEscape)
{
    run("actionIon_Implantation", DialogAnswer().reject());
    EXPECT_FALSE(idle());
    EXPECT_EQ(lastLines(1), QStringList("Ion Implantation: Cell volume selected."));
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLines(1), QStringList("Ion Implantation: Operation Canceled!"));
    EXPECT_TRUE(idle());
    expectLayers(12);
}

TEST_F(IonImplantationRoadTest, WhatCanBeChosenComesFromOneProcessAndWhatIsDopedFromAnother)
{
    rename("Ion Implantation");
    int items = -1;
    const auto look = [&] {
        run("actionIon_Implantation",
            DialogAnswer()
                .look([&](QWidget &dialog) { items = dialog.findChild<QComboBox *>()->count(); })
                .reject());
        m_driver.press(Qt::Key_Escape);
    };
    look();
    EXPECT_EQ(items, 0);

    Model::Process::ProcessFactory::instance()->loadDefaultProcesses();
    rename("Simple Doping");
    look();
    EXPECT_EQ(items, 4);
    run("actionIon_Implantation", implant("5", "2"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Ion Implantation: Operation finished."));
}

} // namespace
