#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtchingOperation.h"

#include "PlainProcessSuite.h"

#include "Support/Volumes.h"

#include <array>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

using Core::Operations::SimpleReactiveIonEtchingOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};
constexpr std::uint32_t film = 3;

/// Layers of the film from one height up to and including another, in the air.
std::vector<std::uint32_t> layers(std::uint32_t first, std::uint32_t last)
{
    return Support::materialsBy(
        grid, [=](auto, auto, auto z) { return z >= first && z <= last ? film : 0U; });
}

/// What one cell of depth leaves of the film, by the directions: 1 from the top, 2 from below.
std::vector<std::uint32_t> etchedOnce(unsigned directions)
{
    return layers(directions & 2U ? 3 : 2, directions & 1U ? 4 : 5);
}

class SimpleReactiveIonEtchingOperationTest
    : public Fakes::PlainProcessSuite<SimpleReactiveIonEtchingOperation>
{
protected:
    SimpleReactiveIonEtchingOperationTest()
        : PlainProcessSuite({"Simple RIE", 30, "Simple RIE: Cell volume selected.",
                             "Simple RIE: Select a cell volume and press Enter/Return.",
                             "Simple RIE: Operation finished.", "Simple RIE: Operation canceled.",
                             grid, layers(2, 5), layers(2, 3)},
                            accept(2.0, film))
    {}

    /// As the dialog does it.
    static Answer accept(double depth, std::uint32_t material, bool fromBelow = false,
                         bool fromTop = true)
    {
        return [=](SimpleReactiveIonEtchingOperation &operation) {
            operation.setDepth(depth);
            operation.setMaterial(material);
            operation.setEtchFromBelow(fromBelow);
            operation.setEtchFromTop(fromTop);
            operation.end();
        };
    }

    using Setter = std::function<void(SimpleReactiveIonEtchingOperation &)>;
    /// Expects these directions after the calls.
    void expectDirections(const std::vector<Setter> &calls, unsigned directions)
    {
        expectResult(
            [&](SimpleReactiveIonEtchingOperation &operation) {
                operation.setDepth(1.0);
                operation.setMaterial(film);
                for (const Setter &call : calls)
                    call(operation);
                operation.end();
            },
            etchedOnce(directions));
    }
    static Setter fromTop(bool etch)
    {
        return [=](auto &operation) { operation.setEtchFromTop(etch); };
    }
    static Setter fromBelow(bool etch)
    {
        return [=](auto &operation) { operation.setEtchFromBelow(etch); };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(SimpleReactiveIonEtchingOperationTest)
PLAIN_PROCESS_TESTS(SimpleReactiveIonEtchingOperationTest)

TEST_F(SimpleReactiveIonEtchingOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const SimpleReactiveIonEtchingOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Simple RIE");
    EXPECT_EQ(operation.id(), 30U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(SimpleReactiveIonEtchingOperationTest, EachOneTellsItsOwnObserver)
{
    ASSERT_FALSE(isObserverClassWide);
    observerTold();
}

TEST_F(SimpleReactiveIonEtchingOperationTest, EndNeedsTheVolumeTheMaterialAndTheDepth)
{
    expectAllNeeded({[](auto &operation) { operation.setDepth(2.0); },
                     [](auto &operation) { operation.setMaterial(film); }});
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DirectionsDoNotStandForAValue)
{
    activateOn(m_volume);
    current()->setDepth(2.0);
    current()->setEtchFromBelow(true);
    current()->setEtchFromTop(true);
    expectEnd(m_volume, false);
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DialogEtchesFromBothSides)
{
    expectResult(accept(1.0, film, true, true), etchedOnce(3));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DialogEtchesFromTheTop)
{
    expectResult(accept(1.0, film, false, true), etchedOnce(1));
}

// Each of the two takes both directions away when it is not wanted, and the top comes last.
TEST_F(SimpleReactiveIonEtchingOperationTest, DialogEtchesNothingFromBelowAlone)
{
    expectResult(accept(1.0, film, true, false), layers(2, 5));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DialogEtchesNothingFromNowhere)
{
    expectResult(accept(1.0, film, false, false), layers(2, 5));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DirectionsStartAsFromTheTop)
{
    expectDirections({}, 1);
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DirectionThatIsWantedIsAdded)
{
    expectDirections({fromTop(true)}, 1);
    expectDirections({fromBelow(true)}, 3);
    expectDirections({fromBelow(true), fromBelow(true)}, 3);
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DirectionThatIsNotWantedTakesBothAway)
{
    expectDirections({fromTop(false)}, 0);
    expectDirections({fromBelow(false)}, 0);
    expectDirections({fromBelow(true), fromBelow(false)}, 0);
}

TEST_F(SimpleReactiveIonEtchingOperationTest, TopBeforeBelowGivesOtherDirectionsThanTheDialog)
{
    expectDirections({fromTop(true), fromBelow(true)}, 3);
    expectDirections({fromTop(true), fromBelow(false)}, 0);
    expectDirections({fromTop(false), fromBelow(true)}, 2);
    expectDirections({fromTop(false), fromBelow(false)}, 0);
}

TEST_F(SimpleReactiveIonEtchingOperationTest, LaterValueWins)
{
    expectResult(
        [](SimpleReactiveIonEtchingOperation &operation) {
            operation.setDepth(4.0);
            operation.setMaterial(silicon);
            accept(1.0, film)(operation);
        },
        layers(2, 4));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, FractionOfTheDepthIsCutOff)
{
    expectResult(accept(2.0, film), layers(2, 3));
    expectResult(accept(2.999, film), layers(2, 3));
    expectResult(accept(0.999, film), layers(2, 5));
    expectResult(accept(0.0, film), layers(2, 5));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DepthThatIsNoDepthEtchesNothing)
{
    using Limits = std::numeric_limits<double>;
    for (const double depth : {-0.5, -1.0, -1e300, -Limits::infinity(), Limits::quiet_NaN()})
        expectResult(accept(depth, film), layers(2, 5));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DepthIsInCellsWhateverTheirSize)
{
    const Support::Grid flat{3, 4, 8, 1.0f, 2.0f, 0.35f};
    const auto volume = Support::makeVolume(flat, layers(2, 5));
    run(volume, accept(3.0, film));
    Fakes::expectMaterials(*volume, layers(2, 2));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, DepthBeyondTheFilmRemovesIt)
{
    const auto volume = Support::makeVolume(grid, [](auto, auto, auto z) {
        return z < 2 ? 2U : z < 6 ? film : 0U;
    });
    run(volume, accept(20.0, film));
    Fakes::expectMaterials(
        *volume, Support::materialsBy(grid, [](auto, auto, auto z) { return z < 2 ? 2U : 0U; }));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, MaterialThatIsNotThereChangesNoCell)
{
    expectResult(accept(3.0, 7), layers(2, 5));
}

// What the dialog hands over when there is no material to choose.
TEST_F(SimpleReactiveIonEtchingOperationTest, MaterialOfNothingChangesNoCell)
{
    expectResult(accept(3.0, 0), layers(2, 5));
}

TEST_F(SimpleReactiveIonEtchingOperationTest, SiliconAloneMakesTheLatticeStale)
{
    for (const std::uint32_t material : {0U, 2U, film, 11U})
        expectLattice(accept(1.0, material), false);
    // Whether or not there is any, and whether or not it is etched.
    expectLattice(accept(1.0, silicon), true);
    expectLattice(accept(1.0, silicon, true, false), true);
}
