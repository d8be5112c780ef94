#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Core/Operations/Electrodeposition/Electrodeposition.h"
#include "Core/Operations/IonImplantation/IonImplantation.h"
#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"
#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"
#include "Core/Operations/Photolithography/Photolithography.h"
#include "Core/Operations/Planarization/Planarization.h"
#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"
#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"
#include "Core/Operations/SiEtching/ContinuosWetEtching.h"
#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"
#include "Core/Operations/SimpleDoping/SimpleDoping.h"
#include "Core/Operations/SpinCoating/SpinCoating.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using Core::Operations::AnisotropicFilmDeposition;
using Model::Automaton::TotalVolume;
using Run = std::function<void(TotalVolume *)>;

/// A document may bring a volume that has a size of 0 and is huge along the others.
class EmptyVolumeTest : public testing::TestWithParam<Run>
{};

TEST_P(EmptyVolumeTest, AProcessEndsWithoutTouchingAnything)
{
    for (const Support::Grid &grid :
         {Support::Grid{4294967295, 0, 4294967295}, Support::Grid{4294967295, 1, 0},
          Support::Grid{0, 4294967295, 9}, Support::Grid{0, 0, 0}}) {
        const auto volume = Support::makeVolume(grid, std::vector<std::uint32_t>());
        GetParam()(volume.get());
        // Both arrays were given back.
        EXPECT_TRUE(Support::materialsOf(*volume).empty());
        EXPECT_TRUE(Support::nextMaterialsOf(*volume).empty());
    }
}

const Run Runs[] = {
    [](TotalVolume *volume) {
        AnisotropicFilmDeposition(volume, 3, 4.0f, 0.5f, AnisotropicFilmDeposition::OnTop)
            .runDeposition();
    },
    [](TotalVolume *volume) {
        Core::Operations::Electrodeposition(volume, 3, 1, 4.0f).runDeposition();
    },
    [](TotalVolume *volume) {
        Core::Operations::IonImplantation(volume, 14, 4.0f, 4.0f).runImplantation();
    },
    [](TotalVolume *volume) {
        Core::Operations::IsotropicFilmDeposition(volume, 3, 4.0f).runDeposition();
    },
    [](TotalVolume *volume) {
        Core::Operations::IsotropicFilmEtching(volume, 3, 4.0f).runEtching();
    },
    [](TotalVolume *volume) {
        Core::Operations::MooreNeighborhoodDeposition(volume, 3, 4).runDeposition();
    },
    [](TotalVolume *volume) {
        Core::Operations::MooreNeighborhoodEtching(volume, 3, 4).runEtching();
    },
    [](TotalVolume *volume) {
        Core::Operations::Photolithography(volume, 3, {}, 0, 0, {}, 0, 0).runDevelopment();
    },
    [](TotalVolume *volume) { Core::Operations::Planarization(volume, 5, 1).runPlanarization(); },
    [](TotalVolume *volume) {
        Core::Operations::SimpleReactiveIonEtching(volume, 3, 4, 3).runEtching();
    },
    [](TotalVolume *volume) { Core::Operations::SimpleSiOxidation(volume, 100.0).oxidateTo(4.0); },
    [](TotalVolume *volume) { Core::Operations::SimpleDoping(volume, 14, 4.0f).runDoping(); },
    [](TotalVolume *volume) {
        Core::Operations::AtomicStructureSimpleSiWetEtch(volume, 4.0).runEtching();
    },
    [](TotalVolume *volume) {
        volume->rebuildSiLattice();
        Core::Operations::AtomicStructureSimpleSiWetEtch(volume, 4.0).runEtching();
    },
    [](TotalVolume *volume) { Core::Operations::ContinuosWetEtching(volume, 4.0).runEtching(); },
    [](TotalVolume *volume) {
        volume->rebuildSiLattice();
        Core::Operations::ContinuosWetEtching(volume, 4.0).runEtching();
    },
    [](TotalVolume *volume) { Core::Operations::SpinCoating(volume, 3, 5).runDeposition(); },
};

INSTANTIATE_TEST_SUITE_P(Processes, EmptyVolumeTest, testing::ValuesIn(Runs));

} // namespace
