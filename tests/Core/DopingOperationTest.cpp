#include "Core/Operations/SimpleDoping/DopingOperation.h"

#include "UndoableProcessSuite.h"

#include "Support/Volumes.h"

#include <cstdint>
#include <vector>

using Core::Operations::DopingOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};
constexpr std::uint32_t doped = 14;

/// Five layers of silicon, the upper ones of which are doped.
std::vector<std::uint32_t> wafer(std::uint32_t material, std::uint32_t count)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z > 4 ? 0U : z + count > 4 ? material : 1U;
    });
}

class DopingOperationTest : public Fakes::UndoableProcessSuite<DopingOperation>
{
protected:
    DopingOperationTest()
        : UndoableProcessSuite({"Doping", 17, "Doping: Cell volume selected.",
                                "Doping: Select a cell volume and press Enter/Return.",
                                "Doping: Operation finished.", "Doping: Operation canceled.", grid,
                                wafer(doped, 0), wafer(doped, 3)},
                               "Doping", accept(3.0F, doped))
    {}

    static Answer accept(float depth, std::uint32_t material)
    {
        return [=](DopingOperation &operation) {
            operation.setDepth(depth);
            operation.setMaterial(material);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(DopingOperationTest)
UNDOABLE_PROCESS_TESTS(DopingOperationTest)

TEST_F(DopingOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const DopingOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Doping");
    EXPECT_EQ(operation.id(), 17U);
    EXPECT_TRUE(isUndoable);
    EXPECT_FALSE(isObserverClassWide);
}

TEST_F(DopingOperationTest, EndNeedsTheVolumeTheMaterialAndTheDepth)
{
    expectAllNeeded({[](auto &operation) { operation.setDepth(3.0F); },
                     [](auto &operation) { operation.setMaterial(doped); }});
}

TEST_F(DopingOperationTest, ValuesOfNothingStandForAValueToo)
{
    expectAllNeeded({[](auto &operation) { operation.setDepth(0.0F); },
                     [](auto &operation) { operation.setMaterial(0); }});
}

TEST_F(DopingOperationTest, ValuesMayComeInEitherOrder)
{
    expectResult(
        [](DopingOperation &operation) {
            operation.setMaterial(doped);
            operation.setDepth(2.0F);
            operation.end();
        },
        wafer(doped, 2));
}

TEST_F(DopingOperationTest, LaterValueWins)
{
    expectResult(
        [](DopingOperation &operation) {
            operation.setDepth(5.0F);
            operation.setMaterial(16);
            accept(1.0F, doped)(operation);
        },
        wafer(doped, 1));
}

TEST_F(DopingOperationTest, DepthIsInDrawingUnits)
{
    const Support::Grid flat{3, 4, 8, 1.0f, 1.0f, 0.5f};
    const auto volume = Support::makeVolume(flat, wafer(doped, 0));
    run(volume, accept(1.5F, doped));
    Fakes::expectMaterials(*volume, wafer(doped, 3));
}

TEST_F(DopingOperationTest, DepthOfNothingChangesNoCellAndCanBeUndone)
{
    expectResult(accept(0.0F, doped), wafer(doped, 0));
    EXPECT_EQ(workspace().history().undoName(), "Doping");
}

TEST_F(DopingOperationTest, AnyMaterialMayBeTheDopedOne)
{
    // It needs not be one that can be doped.
    for (const std::uint32_t material : {5U, 15U, 77U})
        expectResult(accept(2.0F, material), wafer(material, 2));
}

TEST_F(DopingOperationTest, OtherMaterialsAreNotDoped)
{
    const auto layers = Support::materialsBy(grid, [](auto, auto y, auto z) {
        return z > 4 ? 0U : y < 2 ? oxide : 5U;
    });
    const auto volume = Support::makeVolume(grid, layers);
    run(volume, accept(2.0F, doped));
    Fakes::expectMaterials(*volume, layers);
    EXPECT_EQ(workspace().history().undoName(), "Doping");
}

TEST_F(DopingOperationTest, LatticeBecomesStaleWhateverIsDoped)
{
    for (const std::uint32_t material : {0U, silicon, oxide, doped})
        expectLattice(accept(1.0F, material), true);
    // Also where nothing is.
    expectLattice(accept(0.0F, doped), true);
}
