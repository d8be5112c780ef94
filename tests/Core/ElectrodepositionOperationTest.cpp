#include "Core/Operations/Electrodeposition/ElectrodepositionOperation.h"

#include "UndoableProcessSuite.h"

#include "Support/Volumes.h"

#include <cstdint>
#include <vector>

using Core::Operations::ElectrodepositionOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};
constexpr std::uint32_t conductor = 2;
constexpr std::uint32_t metal = 11;

/// Two layers of the conductor, then some of a film.
std::vector<std::uint32_t> layers(std::uint32_t film, std::uint32_t count)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z < 2 ? conductor : z < 2 + count ? film : 0U;
    });
}

class ElectrodepositionOperationTest
    : public Fakes::UndoableProcessSuite<ElectrodepositionOperation>
{
protected:
    ElectrodepositionOperationTest()
        : UndoableProcessSuite({"Electroplating", 15, "Electroplating: Cell volume selected.",
                                "Electroplating: Select a cell volume and press Enter/Return.",
                                "Electroplating: Operation finished.",
                                "Electroplating: Operation canceled.", grid, layers(0, 0),
                                layers(metal, 3)},
                               "Electroplating", accept(3.0F, metal, conductor))
    {}

    static Answer accept(float thickness, std::uint32_t material, std::uint32_t conducting)
    {
        return [=](ElectrodepositionOperation &operation) {
            operation.setThickness(thickness);
            operation.setMaterial(material);
            operation.setConductingMaterial(conducting);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(ElectrodepositionOperationTest)
UNDOABLE_PROCESS_TESTS(ElectrodepositionOperationTest)

TEST_F(ElectrodepositionOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const ElectrodepositionOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Electroplating");
    EXPECT_EQ(operation.id(), 15U);
}

TEST_F(ElectrodepositionOperationTest, EndRunsFromTheFourthStepOnAndCancelsBefore)
{
    expectStepsNeeded(4, {[](auto &operation) { operation.setThickness(1.0F); },
                          [](auto &operation) { operation.setMaterial(metal); },
                          [](auto &operation) { operation.setConductingMaterial(conductor); }});
}

TEST_F(ElectrodepositionOperationTest, ValuesGivenAtThePromptAreStepsToo)
{
    activate();
    current()->setThickness(1.0F);
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), Fakes::Log{});
    current()->setMaterial(metal);
    current()->setConductingMaterial(conductor);
    expectEnd(m_volume, false);
}

TEST_F(ElectrodepositionOperationTest, ValuesMayComeInAnyOrder)
{
    expectResult(
        [](ElectrodepositionOperation &operation) {
            operation.setConductingMaterial(conductor);
            operation.setMaterial(metal);
            operation.setThickness(2.0F);
            operation.end();
        },
        layers(metal, 2));
}

TEST_F(ElectrodepositionOperationTest, LaterValueWins)
{
    expectResult(
        [](ElectrodepositionOperation &operation) {
            operation.setThickness(5.0F);
            operation.setMaterial(silicon);
            operation.setConductingMaterial(oxide);
            accept(1.0F, metal, conductor)(operation);
        },
        layers(metal, 1));
}

TEST_F(ElectrodepositionOperationTest, FilmGrowsOnTheConductingMaterialAlone)
{
    const auto floor = [](std::uint32_t y) { return y < 2 ? conductor : oxide; };
    const auto volume =
        Support::makeVolume(grid, [&](auto, auto y, auto z) { return z < 2 ? floor(y) : 0U; });
    run(volume, accept(1.0F, metal, oxide));
    Fakes::expectMaterials(*volume, Support::materialsBy(grid, [&](auto, auto y, auto z) {
        return z < 2 ? floor(y) : z == 2 && y >= 2 ? metal : 0U;
    }));
}

TEST_F(ElectrodepositionOperationTest, ThicknessIsInDrawingUnits)
{
    const Support::Grid flat{3, 4, 8, 1.0f, 1.0f, 0.5f};
    const auto volume = Support::makeVolume(flat, layers(0, 0));
    run(volume, accept(1.5F, metal, conductor));
    Fakes::expectMaterials(*volume, layers(metal, 3));
}

TEST_F(ElectrodepositionOperationTest, ThicknessOfNothingChangesNoCellAndCanBeUndone)
{
    expectResult(accept(0.0F, metal, conductor), layers(0, 0));
    EXPECT_EQ(workspace().history().undoName(), "Electroplating");
}

TEST_F(ElectrodepositionOperationTest, ConductingMaterialThatIsNotThereChangesNoCell)
{
    expectResult(accept(3.0F, metal, 7), layers(0, 0));
    EXPECT_EQ(workspace().history().undoName(), "Electroplating");
}

// What the dialog hands over when there is no material to choose.
TEST_F(ElectrodepositionOperationTest, MaterialsOfNothingChangeNoCell)
{
    expectResult(accept(3.0F, 0, 0), layers(0, 0));
    expectResult(accept(3.0F, 0, conductor), layers(0, 0));
}

TEST_F(ElectrodepositionOperationTest, LatticeNeverBecomesStale)
{
    for (const std::uint32_t material : {silicon, conductor, metal})
        for (const std::uint32_t conducting : {silicon, conductor})
            expectLattice(accept(1.0F, material, conducting), false);
}
