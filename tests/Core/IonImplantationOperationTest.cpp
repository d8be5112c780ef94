#include "Core/Operations/IonImplantation/IonImplantationOperation.h"

#include "PlainProcessSuite.h"

#include "Support/Volumes.h"

#include <cstdint>
#include <functional>
#include <vector>

using Core::Operations::IonImplantationOperation;

namespace {

constexpr Support::Grid grid{3, 4, 12};
constexpr std::uint32_t doped = 14;

/// Ten layers of silicon, of which those from one height up to and including another are doped.
std::vector<std::uint32_t> wafer(std::uint32_t material, std::uint32_t first, std::uint32_t last)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z > 9 ? 0U : z >= first && z <= last ? material : 1U;
    });
}

class IonImplantationOperationTest : public Fakes::PlainProcessSuite<IonImplantationOperation>
{
protected:
    // The depth counts from the first cell of void, which is in the eleventh layer.
    IonImplantationOperationTest()
        : PlainProcessSuite({"Ion Implantation", 3, "Ion Implantation: Cell volume selected.",
                             "Ion Implantation: Select a cell volume and press Enter/Return.",
                             "Ion Implantation: Operation finished.",
                             "Ion Implantation: Operation Canceled!", grid, wafer(doped, 1, 0),
                             wafer(doped, 6, 8)},
                            accept(3.0F, 1.0F, doped))
    {}

    static Answer accept(float depth, float annealing, std::uint32_t material)
    {
        return [=](IonImplantationOperation &operation) {
            operation.setImplantationDepth(depth);
            operation.setAnnealingDistance(annealing);
            operation.setMaterial(material);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(IonImplantationOperationTest)
PLAIN_PROCESS_TESTS(IonImplantationOperationTest)

TEST_F(IonImplantationOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const IonImplantationOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Ion Implantation");
    EXPECT_EQ(operation.id(), 3U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(IonImplantationOperationTest, AllOfTheClassTellTheObserverThatWasSetLast)
{
    ASSERT_TRUE(isObserverClassWide);
    observerTold();
}

TEST_F(IonImplantationOperationTest, ObserverStaysWithTheClassUntilItIsReplaced)
{
    replacedObserverIsReleased();
}

TEST_F(IonImplantationOperationTest, EndNeedsTheVolumeTheMaterialTheDepthAndTheDistance)
{
    expectAllNeeded({[](auto &operation) { operation.setImplantationDepth(3.0F); },
                     [](auto &operation) { operation.setAnnealingDistance(1.0F); },
                     [](auto &operation) { operation.setMaterial(doped); }});
}

TEST_F(IonImplantationOperationTest, ValuesOfNothingStandForAValueToo)
{
    expectAllNeeded({[](auto &operation) { operation.setImplantationDepth(0.0F); },
                     [](auto &operation) { operation.setAnnealingDistance(0.0F); },
                     [](auto &operation) { operation.setMaterial(0); }});
}

TEST_F(IonImplantationOperationTest, ValuesMayComeInAnyOrder)
{
    using Setter = std::function<void(IonImplantationOperation &)>;
    const Setter depth = [](auto &operation) { operation.setImplantationDepth(4.0F); };
    const Setter distance = [](auto &operation) { operation.setAnnealingDistance(1.0F); };
    const Setter material = [](auto &operation) { operation.setMaterial(doped); };
    for (const auto &order : {std::vector<Setter>{depth, distance, material},
                              {depth, material, distance},
                              {distance, depth, material},
                              {distance, material, depth},
                              {material, depth, distance},
                              {material, distance, depth}})
        expectResult(
            [&](IonImplantationOperation &operation) {
                for (const Setter &set : order)
                    set(operation);
                operation.end();
            },
            wafer(doped, 5, 7));
}

TEST_F(IonImplantationOperationTest, LaterValueWins)
{
    expectResult(
        [](IonImplantationOperation &operation) {
            operation.setImplantationDepth(7.0F);
            operation.setAnnealingDistance(3.0F);
            operation.setMaterial(16);
            accept(2.0F, 0.0F, doped)(operation);
        },
        wafer(doped, 8, 8));
}

TEST_F(IonImplantationOperationTest, LayerLiesAtItsDepth)
{
    expectResult(accept(1.0F, 0.0F, doped), wafer(doped, 9, 9));
    expectResult(accept(5.0F, 0.0F, doped), wafer(doped, 5, 5));
}

TEST_F(IonImplantationOperationTest, AnnealingSpreadsItUpAndDown)
{
    expectResult(accept(5.0F, 2.0F, doped), wafer(doped, 3, 7));
}

TEST_F(IonImplantationOperationTest, LengthsAreInDrawingUnits)
{
    const Support::Grid flat{3, 4, 12, 1.0f, 1.0f, 0.5f};
    const auto volume = Support::makeVolume(flat, wafer(doped, 1, 0));
    run(volume, accept(2.5F, 1.0F, doped));
    Fakes::expectMaterials(*volume, wafer(doped, 3, 7));
}

TEST_F(IonImplantationOperationTest, DepthBeyondTheWaferChangesNoCellAndFinishes)
{
    for (const float depth : {0.0F, 11.0F, 1000.0F}) {
        log().clear();
        expectResult(accept(depth, 2.0F, doped), wafer(doped, 1, 0));
        EXPECT_EQ(countOf(m_facts.finished), 1);
    }
}

TEST_F(IonImplantationOperationTest, OtherMaterialsAreNotDoped)
{
    const auto layers = Support::materialsBy(grid, [](auto, auto y, auto z) {
        return z > 9 ? 0U : y < 2 ? oxide : 5U;
    });
    const auto volume = Support::makeVolume(grid, layers);
    run(volume, accept(3.0F, 2.0F, doped));
    Fakes::expectMaterials(*volume, layers);
}

TEST_F(IonImplantationOperationTest, AnyMaterialMayBeTheDopedOne)
{
    // It needs not be one that can be doped.
    for (const std::uint32_t material : {5U, 15U, 77U})
        expectResult(accept(3.0F, 1.0F, material), wafer(material, 6, 8));
}

TEST_F(IonImplantationOperationTest, LatticeBecomesStaleWhateverIsImplanted)
{
    for (const std::uint32_t material : {silicon, oxide, doped})
        expectLattice(accept(3.0F, 1.0F, material), true);
    // Also where nothing is.
    expectLattice(accept(100.0F, 0.0F, doped), true);
}
