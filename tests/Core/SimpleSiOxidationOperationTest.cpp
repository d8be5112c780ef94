#include "Core/Operations/SiOxidation/SimpleSiOxidationOperation.h"

#include "PlainProcessSuite.h"

#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using Core::Operations::SimpleSiOxidationOperation;

namespace {

constexpr Support::Grid grid{3, 4, 20};

/// Eight layers of silicon, the upper ones of which are oxide, and layers of oxide on them.
std::vector<std::uint32_t> wafer(std::uint32_t layersInto, std::uint32_t layersOut)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z + layersInto < 8 ? 1U : z < 8 + layersOut ? 3U : 0U;
    });
}

// Layer k of the silicon, from 0 on, becomes oxide below 0.3 of the thickness, and layer k of the
// void, from 1 on, up to 0.56 of it: 2.4 and 4.48 cells of a thickness of 8.
class SimpleSiOxidationOperationTest : public Fakes::PlainProcessSuite<SimpleSiOxidationOperation>
{
protected:
    SimpleSiOxidationOperationTest()
        : PlainProcessSuite(
              {"Simple Si Oxidation", 26, "Simple Si Oxidation: Cell volume selected.",
               "Simple Si Oxidation: Select a cell volume and press Enter/Return.",
               "Simple Si Oxidation: Operation finished.",
               "Simple Si Oxidation: Operation canceled.", grid, wafer(0, 0), wafer(3, 4)},
              acceptThickness(8.0))
    {}

    using Setter = std::function<void(SimpleSiOxidationOperation &)>;
    static Setter thickness(double value)
    {
        return [=](auto &operation) { operation.setThickness(value); };
    }
    static Setter time(double hours)
    {
        return [=](auto &operation) { operation.setTime(hours); };
    }
    static Setter temperature(double kelvin)
    {
        return [=](auto &operation) { operation.setTemperature(kelvin); };
    }
    static Setter pressure(double atmospheres)
    {
        return [=](auto &operation) { operation.setPressure(atmospheres); };
    }
    static Setter conversion(double units)
    {
        return [=](auto &operation) { operation.setCellUnitsPerMicron(units); };
    }
    static Answer endAfter(const std::vector<Setter> &calls)
    {
        return [=](SimpleSiOxidationOperation &operation) {
            for (const Setter &call : calls)
                call(operation);
            operation.end();
        };
    }
    /// As the dialog does it, in either of its modes.
    static Answer acceptThickness(double value, double units = 1.0)
    {
        return endAfter({conversion(units), thickness(value)});
    }
    static Answer acceptFurnace(double hours, double kelvin, double atmospheres, double units)
    {
        return endAfter(
            {conversion(units), time(hours), pressure(atmospheres), temperature(kelvin)});
    }

    /// Expects that end() does nothing, says nothing and leaves the operation where it is.
    void expectSilentEnd(const Volume &volume)
    {
        const std::uint32_t untouched = 77;
        Core::ObjectRecords &records = workspace().objectRecords();
        records.setLastOperation(volume->id(), untouched);
        records.setLatticeStale(volume->id(), false);
        const Shared operation = current();
        ASSERT_NE(operation, nullptr);
        const bool isSelecting = workspace().selection().isSelectionMode();
        log().clear();
        operation->end();
        EXPECT_EQ(log(), Fakes::Log{});
        EXPECT_EQ(current(), operation);
        EXPECT_EQ(workspace().selection().isSelectionMode(), isSelecting);
        EXPECT_EQ(records.lastOperation(volume->id()), untouched);
        EXPECT_FALSE(records.isLatticeStale(volume->id()));
        Fakes::expectMaterials(*volume, m_facts.before);
    }

    /// The document holds these objects alone.
    static void setDocument(const ObjectList &objects)
    {
        workspace().document().reset();
        for (const auto &object : objects)
            workspace().document().addObject(object);
    }
    static boost::shared_ptr<Fakes::Object> otherObject()
    {
        return boost::make_shared<Fakes::Object>();
    }
    Fakes::Log promptLog() const { return {m_facts.prompted, "selection mode changed"}; }
};

} // namespace

// Its end() does not cancel.
PROCESS_SELECTION_TESTS(SimpleSiOxidationOperationTest)
PLAIN_PROCESS_TESTS(SimpleSiOxidationOperationTest)

TEST_F(SimpleSiOxidationOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const SimpleSiOxidationOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Simple Si Oxidation");
    EXPECT_EQ(operation.id(), 26U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(SimpleSiOxidationOperationTest, AllOfTheClassTellTheObserverThatWasSetLast)
{
    ASSERT_TRUE(isObserverClassWide);
    observerTold();
}

TEST_F(SimpleSiOxidationOperationTest, ObserverStaysWithTheClassUntilItIsReplaced)
{
    replacedObserverIsReleased();
}

TEST_F(SimpleSiOxidationOperationTest, OnlyVolumeOfTheDocumentNeedsNoSelection)
{
    setDocument({m_volume});
    m_answer = m_accepted;
    activate();
    Fakes::Log whole{"view updated", m_facts.selected, "dialog"};
    for (const std::string &entry : endLog())
        whole.push_back(entry);
    EXPECT_EQ(log(), whole);
    Fakes::expectMaterials(*m_volume, m_facts.after);
}

TEST_F(SimpleSiOxidationOperationTest, OnlyVolumeOfTheDocumentTurnsTheSelectionModeOffToo)
{
    setDocument({m_volume});
    workspace().selection().setSelectionMode(true);
    log().clear();
    activate();
    EXPECT_EQ(log(),
              (Fakes::Log{"selection mode changed", "view updated", m_facts.selected, "dialog"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
}

TEST_F(SimpleSiOxidationOperationTest, OnlyVolumeIsTheTargetWhereOtherObjectsAreSelected)
{
    setDocument({m_volume});
    select({otherObject()});
    m_answer = m_accepted;
    activate();
    Fakes::expectMaterials(*m_volume, m_facts.after);
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
}

TEST_F(SimpleSiOxidationOperationTest, SelectedVolumeGoesBeforeTheOnlyOne)
{
    setDocument({m_other});
    run(m_volume);
    Fakes::expectMaterials(*m_volume, m_facts.after);
    Fakes::expectMaterials(*m_other, m_facts.before);
}

TEST_F(SimpleSiOxidationOperationTest, OnlyObjectThatIsNoVolumeIsNoTarget)
{
    setDocument({otherObject()});
    activate();
    EXPECT_EQ(log(), promptLog());
    log().clear();
    type("");
    EXPECT_EQ(log(), Fakes::Log{m_facts.prompted});
}

TEST_F(SimpleSiOxidationOperationTest, NoneOfTwoObjectsIsATargetByItself)
{
    const std::vector<ObjectList> documents = {
        {m_volume, m_other}, {m_volume, otherObject()}, {otherObject(), m_volume}};
    for (const ObjectList &objects : documents) {
        setDocument(objects);
        log().clear();
        activate();
        EXPECT_EQ(log(), promptLog());
        workspace().cancelCurrent();
        workspace().selection().setSelectionMode(false);
    }
}

TEST_F(SimpleSiOxidationOperationTest, EmptyDocumentHasNoTarget)
{
    setDocument({});
    activate();
    EXPECT_EQ(log(), promptLog());
}

TEST_F(SimpleSiOxidationOperationTest, EnterAtThePromptLooksForTheOnlyVolumeAgain)
{
    setDocument({});
    activate();
    workspace().document().addObject(m_volume);
    log().clear();
    type("");
    EXPECT_EQ(log(),
              (Fakes::Log{"selection mode changed", "view updated", m_facts.selected, "dialog"}));
    m_accepted(*Shared(current()));
    Fakes::expectMaterials(*m_volume, m_facts.after);
}

TEST_F(SimpleSiOxidationOperationTest, EndAtThePromptDoesNothingAndSaysNothing)
{
    activate();
    expectSilentEnd(m_volume);
    for (const Setter &set :
         {conversion(1.0), pressure(1.0), temperature(1273.0), time(2.0), thickness(8.0)}) {
        set(*current());
        expectSilentEnd(m_volume);
    }
    // It waits for Enter as before, and has kept its values.
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(),
              (Fakes::Log{"selection mode changed", "view updated", m_facts.selected, "dialog"}));
    expectEnd(m_volume, true);
    Fakes::expectMaterials(*m_volume, m_facts.after);
}

TEST_F(SimpleSiOxidationOperationTest, EndNeedsTheThicknessOrTheTime)
{
    const std::vector<Setter> values = {thickness(8.0), time(2.0), temperature(1273.0),
                                        pressure(1.0), conversion(1.0)};
    const unsigned thicknessOrTime = 3;
    for (unsigned given = 0; given < 1U << values.size(); ++given)
        for (const bool backwards : {false, true}) {
            SCOPED_TRACE(::testing::Message()
                         << "values " << given << (backwards ? ", backwards" : ""));
            const Volume volume = addSample();
            activateOn(volume);
            for (std::size_t i = 0; i < values.size(); ++i) {
                const std::size_t value = backwards ? values.size() - 1 - i : i;
                if (given >> value & 1U)
                    values[value](*current());
            }
            if ((given & thicknessOrTime) != 0) {
                expectEnd(volume, true);
            } else {
                expectSilentEnd(volume);
                workspace().cancelCurrent();
            }
        }
}

TEST_F(SimpleSiOxidationOperationTest, OneThatEndedInSilenceCanStillRun)
{
    activateOn(m_volume);
    expectSilentEnd(m_volume);
    current()->setThickness(8.0);
    expectEnd(m_volume, true);
    Fakes::expectMaterials(*m_volume, m_facts.after);
}

TEST_F(SimpleSiOxidationOperationTest, OneThatEndedInSilenceIsCanceledByEscape)
{
    activateOn(m_volume);
    expectSilentEnd(m_volume);
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), cancelLog());
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(SimpleSiOxidationOperationTest, ThicknessIsInCellUnitsWhateverTheConversionIs)
{
    for (const double units : {0.0, 0.01, 1.0, 100.0})
        expectResult(acceptThickness(8.0, units), wafer(3, 4));
    expectResult(endAfter({thickness(8.0)}), wafer(3, 4));
    expectResult(acceptThickness(12.0, 100.0), wafer(4, 6));
    // Units of the drawing, which cells need not be as large as.
    const Support::Grid half{3, 4, 20, 0.5f, 0.5f, 0.5f};
    const auto volume = Support::makeVolume(half, wafer(0, 0));
    run(volume, acceptThickness(4.0, 100.0));
    Fakes::expectMaterials(*volume, wafer(3, 4));
}

TEST_F(SimpleSiOxidationOperationTest, ThicknessGoesBeforeTheTime)
{
    const std::vector<Setter> furnace = {conversion(100.0), time(2.0), pressure(1.0),
                                         temperature(1273.0)};
    std::vector<Setter> last = furnace;
    last.push_back(thickness(8.0));
    expectResult(endAfter(last), wafer(3, 4));
    std::vector<Setter> first = {thickness(8.0)};
    first.insert(first.end(), furnace.begin(), furnace.end());
    expectResult(endAfter(first), wafer(3, 4));
    // Also one of nothing.
    last.back() = thickness(0.0);
    expectResult(endAfter(last), wafer(0, 0));
}

TEST_F(SimpleSiOxidationOperationTest, FurnaceGrowsByTimeTemperatureAndPressure)
{
    // In microns: 0.1055, 0.1587, 0.1914, 0.1267, 0.0820.
    expectResult(acceptFurnace(2.0, 1273.0, 1.0, 100.0), wafer(4, 5));
    expectResult(acceptFurnace(4.0, 1273.0, 1.0, 100.0), wafer(5, 8));
    expectResult(acceptFurnace(2.0, 1373.0, 1.0, 100.0), wafer(6, 10));
    expectResult(acceptFurnace(2.0, 1273.0, 2.0, 100.0), wafer(4, 7));
    expectResult(acceptFurnace(1.0, 1273.0, 2.0, 100.0), wafer(3, 4));
}

TEST_F(SimpleSiOxidationOperationTest, NoTimeGivesTheInitialOxide)
{
    // 0.025 microns.
    expectResult(acceptFurnace(0.0, 1273.0, 1.0, 100.0), wafer(1, 1));
    expectResult(acceptFurnace(0.0, 1273.0, 1.0, 320.0), wafer(3, 4));
}

TEST_F(SimpleSiOxidationOperationTest, ConversionIsOneCellUnitAMicronUnlessItIsSet)
{
    const Support::Grid fine{3, 4, 20, 0.01f, 0.01f, 0.01f};
    const auto expectFine = [&](const std::vector<Setter> &calls, const auto &expected) {
        const auto volume = Support::makeVolume(fine, wafer(0, 0));
        run(volume, endAfter(calls));
        Fakes::expectMaterials(*volume, expected);
    };
    const Setter kelvin = temperature(1273.0);
    expectFine({time(2.0), pressure(1.0), kelvin}, wafer(4, 5));
    expectFine({time(2.0), pressure(1.0), kelvin, conversion(1.0)}, wafer(4, 5));
    // The flag tells, not the value.
    expectFine({time(2.0), pressure(1.0), kelvin, conversion(0.0)}, wafer(0, 0));
    expectFine({time(1.0), pressure(2.0), kelvin, conversion(1.0)}, wafer(3, 4));
}

TEST_F(SimpleSiOxidationOperationTest, LaterValueWins)
{
    expectResult(endAfter({thickness(16.0), thickness(8.0)}), wafer(3, 4));
    expectResult(endAfter({conversion(3.0), time(9.0), pressure(7.0), temperature(800.0),
                           conversion(100.0), time(2.0), pressure(1.0), temperature(1273.0)}),
                 wafer(4, 5));
}

TEST_F(SimpleSiOxidationOperationTest, ThicknessNotAboveTheSmallestCellChangesNoCellAndFinishes)
{
    for (const double value : {-3.0, 0.0, 0.5, 1.0}) {
        log().clear();
        expectResult(acceptThickness(value), wafer(0, 0));
        EXPECT_EQ(countOf(m_facts.finished), 1);
    }
    // Of a smaller one it does: 1.2 cells of the silicon, 2.24 of the void.
    const Support::Grid quarter{3, 4, 20, 1.0f, 1.0f, 0.25f};
    const auto volume = Support::makeVolume(quarter, wafer(0, 0));
    run(volume, acceptThickness(1.0));
    Fakes::expectMaterials(*volume, wafer(2, 2));
}

// The dialog lets them be 0, and they are 0 when they were never given.
TEST_F(SimpleSiOxidationOperationTest, ConditionsThatGiveNoThicknessChangeNoCellAndFinish)
{
    for (const auto &answer :
         {acceptFurnace(2.0, 0.0, 1.0, 100.0), acceptFurnace(2.0, 1273.0, 0.0, 100.0),
          acceptFurnace(2.0, 0.0, 0.0, 100.0), endAfter({conversion(100.0), time(2.0)})}) {
        log().clear();
        expectResult(answer, wafer(0, 0));
        EXPECT_EQ(countOf(m_facts.finished), 1);
    }
}

TEST_F(SimpleSiOxidationOperationTest, VolumeOfOneStripStaysAsItIsAndFinishes)
{
    const Support::PoolThreads pool(2);
    expectResult(acceptThickness(8.0), wafer(0, 0));
    EXPECT_EQ(countOf(m_facts.finished), 1);
}

TEST_F(SimpleSiOxidationOperationTest, LatticeBecomesStaleWhateverIsOxidized)
{
    expectLattice(acceptThickness(8.0), true);
    expectLattice(acceptFurnace(2.0, 1273.0, 1.0, 100.0), true);
    // Also where nothing is.
    expectLattice(acceptThickness(0.5), true);
    expectLattice(acceptFurnace(2.0, 0.0, 1.0, 1.0), true);
}
