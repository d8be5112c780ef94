#include "UI/BatchRun/ProcessRunner.h"

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
#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"
#include "Core/Operations/SimpleDoping/SimpleDoping.h"
#include "Core/Operations/SpinCoating/SpinCoating.h"
#include "Core/Workspace.h"
#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "Support/WindowDriver.h"
#include "UI/BatchRun/ProcessData.h"
#include "UI/BatchRun/RunProcessesDialog.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace {

using Model::Automaton::TotalVolume;
using Ui::ProcessData;
using Volume = boost::shared_ptr<TotalVolume>;

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Oxide = 3;
constexpr std::uint32_t Gold = 9;
constexpr std::uint32_t Resist = 11;
constexpr std::uint32_t Doped = 14;

enum class Flag
{
    Kept,
    Set,
    Cleared
};

struct Parameter
{
    const char *name;
    QVariant value;
};

/// A step, and the run of its engine that has to come to the same.
struct Step
{
    std::int32_t type;
    std::vector<Parameter> parameters;
    std::function<void(TotalVolume &)> engine;
    std::uint32_t operation;
    Flag flag;
};

std::vector<bool> everyThird(std::size_t count)
{
    std::vector<bool> bits(count);
    for (std::size_t i = 0; i < count; i += 3)
        bits[i] = true;
    return bits;
}

/// All that change the cells of a volume.
std::vector<Step> allSteps()
{
    using namespace Core::Operations;
    const std::vector<bool> top = everyThird(12 * 8);
    const std::vector<bool> bottom = everyThird(5 * 4);
    return {
        {0,
         {{"MaterialId", Resist},
          {"Top Mask", QVariant::fromValue(top)},
          {"Top Mask Height", 8u},
          {"Top Mask Width", 12u},
          {"Bottom Mask", QVariant::fromValue(bottom)},
          {"Bottom Mask Height", 4u},
          {"Bottom Mask Width", 5u}},
         [=](TotalVolume &volume) {
             Photolithography(&volume, Resist, bottom, 5, 4, top, 12, 8).runDevelopment();
         },
         20,
         Flag::Set},
        {1,
         {{"Depth", 1.25}},
         [](TotalVolume &volume) {
             volume.rebuildSiLattice();
             AtomicStructureSimpleSiWetEtch(&volume, 1.25).runEtching();
         },
         28,
         Flag::Cleared},
        {2,
         {{"MaterialId", Gold}, {"Thickness", 2u}},
         [](TotalVolume &volume) { MooreNeighborhoodDeposition(&volume, Gold, 2).runDeposition(); },
         18,
         Flag::Set},
        {3,
         {{"MaterialId", Silicon}, {"Depth", 2u}},
         [](TotalVolume &volume) { MooreNeighborhoodEtching(&volume, Silicon, 2).runEtching(); },
         19,
         Flag::Set},
        {4,
         {{"MaterialId", Oxide}, {"Thickness", 2.5}},
         [](TotalVolume &volume) { IsotropicFilmDeposition(&volume, Oxide, 2.5f).runDeposition(); },
         13,
         Flag::Kept},
        {5,
         {{"MaterialId", Silicon}, {"Depth", 2.5}},
         [](TotalVolume &volume) { IsotropicFilmEtching(&volume, Silicon, 2.5f).runEtching(); },
         14,
         Flag::Set},
        {6,
         {{"Maximum Height", 7u}, {"Minimum Height", 2u}},
         [](TotalVolume &volume) { Planarization(&volume, 7, 2).runPlanarization(); },
         22,
         Flag::Set},
        {7,
         {{"DepositedMaterialId", Gold},
          {"ConductingMaterialId", Silicon},
          {"Film Thickness", 2.0}},
         [](TotalVolume &volume) {
             Electrodeposition(&volume, Gold, Silicon, 2.0f).runDeposition();
         },
         15,
         Flag::Kept},
        {8,
         {{"DopedMaterialId", Doped}, {"Doping Depth", QVariant::fromValue(2.0f)}},
         [](TotalVolume &volume) { SimpleDoping(&volume, Doped, 2.0f).runDoping(); },
         17,
         Flag::Set},
        {9,
         {{"MaterialId", Resist}, {"Maximum Height", 11u}},
         [](TotalVolume &volume) { SpinCoating(&volume, Resist, 11).runDeposition(); },
         23,
         Flag::Kept},
        {12,
         {{"MaterialId", Gold},
          {"Thickness", 2.0},
          {"Horizontal to Vertical Ratio", 0.5},
          {"DepositOn", 2}},
         [](TotalVolume &volume) {
             AnisotropicFilmDeposition(&volume, Gold, 2.0f, 0.5f, 2).runDeposition();
         },
         27,
         Flag::Kept},
        {13,
         {{"MaterialId", Silicon}, {"Etch Depth", 2u}, {"EtchDirectionValue", 2}},
         [](TotalVolume &volume) {
             SimpleReactiveIonEtching(&volume, Silicon, 2, SimpleReactiveIonEtching::FromBelow)
                 .runEtching();
         },
         30,
         Flag::Kept},
        {14,
         {{"DopedMaterialId", Doped},
          {"Implantation Depth", QVariant::fromValue(4.0f)},
          {"Annealing Distance", QVariant::fromValue(1.5f)}},
         [](TotalVolume &volume) { IonImplantation(&volume, Doped, 4.0f, 1.5f).runImplantation(); },
         3,
         Flag::Kept},
        {15,
         {{"OxidationTimeSet", true},
          {"Micron Conversion", 20.0},
          {"Oxidation Pressure", 0.75},
          {"Oxidation Temperature", 1200.0},
          {"Oxidation Time", 1.5}},
         [](TotalVolume &volume) {
             SimpleSiOxidation(&volume, 20.0).oxidateFor(1.5, 1200.0, 0.75);
         },
         26,
         Flag::Kept},
        {15,
         {{"OxidationTimeSet", false}, {"Micron Conversion", 20.0}, {"Oxidation Thickness", 4.0}},
         [](TotalVolume &volume) { SimpleSiOxidation(&volume, 20.0).oxidateTo(4.0); },
         26,
         Flag::Kept},
    };
}

/// A box of silicon in a volume of 20 x 10 x 12 cells.
const std::vector<Parameter> Box = {
    {"MaterialId", Gold},
    {"Lower Left Front Corner", QVariant::fromValue(Util::Vector3D(1.5, -2.0, 3.0))},
    {"Volume Size X", 20u},
    {"Volume Size Y", 10u},
    {"Volume Size Z", 12u},
    {"SphericalSubstrate", false},
    {"Substrate Size X", 7u},
    {"Substrate Size Y", 6u},
    {"Substrate Size Z", 5u},
    {"Substrate Delta X", 4u},
    {"Substrate Delta Y", 3u},
    {"Substrate Delta Z", 2u},
};
const std::vector<Parameter> Sphere = {
    {"MaterialId", Gold},       {"Lower Left Front Corner", QVariant::fromValue(Util::Vector3D())},
    {"Volume Size X", 20u},     {"Volume Size Y", 10u},
    {"Volume Size Z", 12u},     {"SphericalSubstrate", true},
    {"Substrate Center X", 9u}, {"Substrate Center Y", 4u},
    {"Substrate Center Z", 6u}, {"Substrate Radius", 3u},
};

ProcessData stepOf(std::int32_t type, const std::vector<Parameter> &parameters)
{
    ProcessData step(type);
    for (const Parameter &parameter : parameters)
        step.setParameter(QLatin1String(parameter.name), parameter.value, false);
    return step;
}

class ProcessRunnerTest : public testing::Test
{
protected:
    /// Silicon with a step in it, resist on half of it, room above and below.
    static Volume wafer()
    {
        return Support::makeVolume(
            Support::Grid{12, 8, 14}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                const std::uint32_t top = x < 6 ? 8 : 6;
                return z < 2 ? 0u : z < top ? Silicon : z == top && y < 4 ? Resist : 0u;
            });
    }
    int run(const ProcessData &step, const Volume &volume)
    {
        return Ui::ProcessRunner(&step, volume, &m_dialog, &m_driver.workspace()).run();
    }
    Core::ObjectRecords &records() { return m_driver.workspace().objectRecords(); }

    const Support::PoolThreads m_threads{1};
    Support::WindowDriver m_driver;
    Ui::RunProcessesDialog m_dialog{&m_driver.window(), {}, &m_driver.workspace()};
};

TEST_F(ProcessRunnerTest, EachStepComesToTheSameAsItsEngine)
{
    for (const Step &step : allSteps()) {
        const Volume ran = wafer();
        const Volume wanted = wafer();
        const auto before = Support::materialsOf(*ran);
        EXPECT_EQ(run(stepOf(step.type, step.parameters), ran), 0) << step.type;
        step.engine(*wanted);
        EXPECT_TRUE(Support::materialsOf(*ran) == Support::materialsOf(*wanted)) << step.type;
        EXPECT_TRUE(Support::nextMaterialsOf(*ran) == Support::nextMaterialsOf(*wanted))
            << step.type;
        EXPECT_FALSE(Support::materialsOf(*ran) == before) << step.type;
    }
}

TEST_F(ProcessRunnerTest, EachStepRecordsItsOperation)
{
    for (const Step &step : allSteps()) {
        const Volume volume = wafer();
        records().setLastOperation(volume->id(), 1000);
        run(stepOf(step.type, step.parameters), volume);
        EXPECT_EQ(records().lastOperation(volume->id()), step.operation) << step.type;
    }
}

TEST_F(ProcessRunnerTest, SomeStepsMakeTheLatticeStaleAndWetEtchingFreshensIt)
{
    for (const Step &step : allSteps()) {
        for (const bool stale : {false, true}) {
            const Volume volume = wafer();
            volume->rebuildSiLattice();
            records().setLatticeStale(volume->id(), stale);
            run(stepOf(step.type, step.parameters), volume);
            const bool wanted = step.flag == Flag::Kept ? stale : step.flag == Flag::Set;
            EXPECT_EQ(records().isLatticeStale(volume->id()), wanted) << step.type << stale;
        }
    }
}

TEST_F(ProcessRunnerTest, AMissingParameterLeavesEverythingAsItIs)
{
    for (const Step &step : allSteps()) {
        for (std::size_t left = 0; left < step.parameters.size(); ++left) {
            auto parameters = step.parameters;
            const char *name = parameters[left].name;
            parameters.erase(parameters.begin() + std::ptrdiff_t(left));
            const Volume volume = wafer();
            const auto before = Support::materialsOf(*volume);
            EXPECT_EQ(run(stepOf(step.type, parameters), volume), 1) << step.type << name;
            EXPECT_TRUE(Support::materialsOf(*volume) == before) << step.type << name;
            EXPECT_EQ(records().lastOperation(volume->id()), 0u) << step.type << name;
        }
    }
}

TEST_F(ProcessRunnerTest, AParameterThatDoesNotConvertLeavesEverythingAsItIs)
{
    for (const Step &step : allSteps()) {
        for (std::size_t bad = 0; bad < step.parameters.size(); ++bad) {
            auto parameters = step.parameters;
            const char *name = parameters[bad].name;
            const bool mask = parameters[bad].value.canConvert<std::vector<bool>>();
            parameters[bad].value =
                mask ? QVariant(QColor(1, 2, 3)) : QVariant::fromValue(std::vector<bool>(3));
            const Volume volume = wafer();
            const auto before = Support::materialsOf(*volume);
            EXPECT_EQ(run(stepOf(step.type, parameters), volume), 2) << step.type << name;
            EXPECT_TRUE(Support::materialsOf(*volume) == before) << step.type << name;
            EXPECT_EQ(records().lastOperation(volume->id()), 0u) << step.type << name;
        }
    }
}

TEST_F(ProcessRunnerTest, TextThatIsNoNumberDoesNotConvert)
{
    EXPECT_EQ(run(stepOf(4, {{"MaterialId", "three"}, {"Thickness", 2.5}}), wafer()), 2);
    EXPECT_EQ(run(stepOf(4, {{"MaterialId", 3u}, {"Thickness", "thin"}}), wafer()), 2);
}

TEST_F(ProcessRunnerTest, NumbersAsTextAndNumbersOfOtherTypesDo)
{
    const Volume volume = wafer();
    const Volume wanted = wafer();
    EXPECT_EQ(run(stepOf(4, {{"MaterialId", "3"}, {"Thickness", 2}}), volume), 0);
    Core::Operations::IsotropicFilmDeposition(wanted.get(), Oxide, 2.0f).runDeposition();
    EXPECT_TRUE(Support::materialsOf(*volume) == Support::materialsOf(*wanted));
}

TEST_F(ProcessRunnerTest, AMissingParameterCountsBeforeOneThatDoesNotConvert)
{
    EXPECT_EQ(run(stepOf(4, {{"MaterialId", QColor(1, 2, 3)}}), wafer()), 1);
    auto box = Box;
    box[0].value = QColor(1, 2, 3);
    box.pop_back();
    EXPECT_EQ(run(stepOf(11, box), {}), 1);
}

TEST_F(ProcessRunnerTest, OxidationNeedsTheParametersOfItsFormAlone)
{
    // Both runs of the table lack the other form's; with them nothing changes.
    for (const Step &step : allSteps()) {
        if (step.type != 15)
            continue;
        auto parameters = step.parameters;
        for (const char *name : {"Oxidation Pressure", "Oxidation Temperature", "Oxidation Time",
                                 "Oxidation Thickness"}) {
            bool present = false;
            for (const Parameter &parameter : step.parameters)
                present = present || QLatin1String(parameter.name) == QLatin1String(name);
            if (!present)
                parameters.push_back({name, "no number"});
        }
        parameters.push_back({"OxidationThicknessSet", "ignored"});
        const Volume volume = wafer();
        const Volume wanted = wafer();
        EXPECT_EQ(run(stepOf(15, parameters), volume), 0);
        step.engine(*wanted);
        EXPECT_TRUE(Support::materialsOf(*volume) == Support::materialsOf(*wanted));
    }
}

TEST_F(ProcessRunnerTest, LayersOfTheMooreNeighbourhoodAreTruncatedToCells)
{
    const auto filled = [this](const QVariant &thickness) {
        const Volume volume = wafer();
        EXPECT_EQ(run(stepOf(2, {{"MaterialId", Gold}, {"Thickness", thickness}}), volume), 0);
        return Support::materialsOf(*volume);
    };
    const auto expectLayers = [&](const QVariant &thickness, std::int32_t layers) {
        const Volume wanted = wafer();
        Core::Operations::MooreNeighborhoodDeposition(wanted.get(), Gold, layers).runDeposition();
        EXPECT_TRUE(filled(thickness) == Support::materialsOf(*wanted)) << layers;
    };
    expectLayers(2.999, 2);
    expectLayers(0.5, 0);
    expectLayers(-3.5, 0);
    expectLayers(std::numeric_limits<double>::quiet_NaN(), 0);
    expectLayers(-1e30, 0);
    // More layers than the volume has.
    expectLayers(1e30, 100);
}

TEST_F(ProcessRunnerTest, EtchingFromBelowAloneReachesItsEngine)
{
    const Volume volume = wafer();
    EXPECT_EQ(
        run(stepOf(13, {{"MaterialId", Silicon}, {"Etch Depth", 2u}, {"EtchDirectionValue", 2}}),
            volume),
        0);
    const Support::Grid grid{12, 8, 14};
    const auto cells = Support::materialsOf(*volume);
    EXPECT_EQ(cells[grid.index(8, 6, 2)], 0u);
    EXPECT_EQ(cells[grid.index(8, 6, 3)], 0u);
    EXPECT_EQ(cells[grid.index(8, 6, 4)], Silicon);
    EXPECT_EQ(cells[grid.index(8, 6, 5)], Silicon);
}

TEST_F(ProcessRunnerTest, OtherBitsThanThoseOfTheDirectionsMeanNothing)
{
    const auto cellsFor = [this](int directions) {
        const Volume volume = wafer();
        EXPECT_EQ(run(stepOf(13, {{"MaterialId", Silicon},
                                  {"Etch Depth", 2u},
                                  {"EtchDirectionValue", directions}}),
                      volume),
                  0);
        return Support::materialsOf(*volume);
    };
    EXPECT_TRUE(cellsFor(4) == Support::materialsOf(*wafer()));
    EXPECT_TRUE(cellsFor(256) == Support::materialsOf(*wafer()));
    EXPECT_TRUE(cellsFor(256 + 4 + 1) == cellsFor(1));
    EXPECT_TRUE(cellsFor(-1) == cellsFor(3));
    EXPECT_FALSE(cellsFor(1) == cellsFor(3));
}

TEST_F(ProcessRunnerTest, PvdDepositsWhereTheListSays)
{
    const auto cellsFor = [this](int mode) {
        const Volume volume = wafer();
        EXPECT_EQ(run(stepOf(12, {{"MaterialId", Gold},
                                  {"Thickness", 1.0},
                                  {"Horizontal to Vertical Ratio", 0.5},
                                  {"DepositOn", mode}}),
                      volume),
                  0);
        return Support::materialsOf(*volume);
    };
    const Support::Grid grid{12, 8, 14};
    EXPECT_EQ(cellsFor(1)[grid.index(8, 6, 6)], Gold);
    EXPECT_EQ(cellsFor(1)[grid.index(8, 6, 1)], 0u);
    EXPECT_EQ(cellsFor(2)[grid.index(8, 6, 6)], 0u);
    EXPECT_TRUE(cellsFor(0) == Support::materialsOf(*wafer()));
    EXPECT_TRUE(cellsFor(-1) == Support::materialsOf(*wafer()));
}

TEST_F(ProcessRunnerTest, WetEtchingGoesOnWithALatticeThatIsFresh)
{
    const Volume volume = wafer();
    const ProcessData step = stepOf(1, {{"Depth", 0.5}});
    EXPECT_EQ(run(step, volume), 0);
    const auto lattice = volume->siLattice();
    ASSERT_TRUE(lattice);
    EXPECT_EQ(run(step, volume), 0);
    EXPECT_EQ(volume->siLattice(), lattice);
    // Any process that takes silicon away or makes it makes it stale.
    EXPECT_EQ(run(stepOf(6, {{"Maximum Height", 7u}, {"Minimum Height", 0u}}), volume), 0);
    EXPECT_EQ(run(step, volume), 0);
    EXPECT_NE(volume->siLattice(), lattice);
}

TEST_F(ProcessRunnerTest, TypesOutsideTheTableDoNothing)
{
    for (const std::int32_t type : {-1, 16, 17, 99, std::numeric_limits<std::int32_t>::max(),
                                    std::numeric_limits<std::int32_t>::min()}) {
        const Volume volume = wafer();
        const auto before = Support::materialsOf(*volume);
        EXPECT_EQ(
            run(stepOf(type, {{"MaterialId", Gold}, {"Depth", 2u}, {"Thickness", 2u}}), volume), 0);
        EXPECT_TRUE(Support::materialsOf(*volume) == before);
        EXPECT_EQ(records().lastOperation(volume->id()), 0u);
    }
}

TEST_F(ProcessRunnerTest, WithoutAVolumeNoStepButCreateSubstrateRuns)
{
    for (const Step &step : allSteps())
        EXPECT_EQ(run(stepOf(step.type, step.parameters), {}), 1) << step.type;
    EXPECT_EQ(run(stepOf(10, {{"Filename", QDir::current().filePath("none.png")}}), {}), 1);
    EXPECT_FALSE(QFile::exists("none.png"));
    EXPECT_EQ(run(stepOf(11, Box), {}), 0);
}

TEST_F(ProcessRunnerTest, ABoxSubstrateIsBuiltAndAddedToTheDocument)
{
    EXPECT_EQ(run(stepOf(11, Box), {}), 0);
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    TotalVolume &volume = *m_driver.volumes().front();
    const Util::Vector3D position = volume.position();
    EXPECT_EQ(position[0], 1.5);
    EXPECT_EQ(position[1], -2.0);
    EXPECT_EQ(position[2], 3.0);
    const auto wanted = Support::materialsBy(
        Support::Grid{20, 10, 12}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return x >= 4 && x < 11 && y >= 3 && y < 9 && z >= 2 && z < 7 ? Gold : 0u;
        });
    EXPECT_EQ(volume.sizeX(), 20u);
    EXPECT_EQ(volume.sizeY(), 10u);
    EXPECT_EQ(volume.sizeZ(), 12u);
    EXPECT_TRUE(Support::materialsOf(volume) == wanted);
    EXPECT_EQ(records().lastOperation(volume.id()), 0u);
    EXPECT_TRUE(records().isLatticeStale(volume.id()));
}

TEST_F(ProcessRunnerTest, ASphericalSubstrateIsBuiltAndAddedToTheDocument)
{
    EXPECT_EQ(run(stepOf(11, Sphere), wafer()), 0);
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    const auto wanted = Support::materialsBy(
        Support::Grid{20, 10, 12}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            const int dx = int(x) - 9;
            const int dy = int(y) - 4;
            const int dz = int(z) - 6;
            return dx * dx + dy * dy + dz * dz <= 9 ? Gold : 0u;
        });
    EXPECT_TRUE(m_driver.materials() == wanted);
}

TEST_F(ProcessRunnerTest, ASubstrateNeedsEachParameterOfItsShape)
{
    for (const auto &all : {Box, Sphere}) {
        for (std::size_t left = 0; left < all.size(); ++left) {
            auto parameters = all;
            parameters.erase(parameters.begin() + std::ptrdiff_t(left));
            EXPECT_EQ(run(stepOf(11, parameters), {}), 1) << all[left].name;
            parameters = all;
            parameters[left].value = QVariant::fromValue(std::vector<bool>(2));
            EXPECT_EQ(run(stepOf(11, parameters), {}), 2) << all[left].name;
        }
    }
    EXPECT_TRUE(m_driver.volumes().empty());
}

TEST_F(ProcessRunnerTest, AVolumeOfMoreCellsThanCanBeCountedIsNotBuilt)
{
    auto huge = Box;
    huge[2].value = 65536u;
    huge[3].value = 65536u;
    huge[4].value = 1u;
    EXPECT_EQ(run(stepOf(11, huge), {}), 2);
    huge[2].value = 4294967295u;
    huge[3].value = 4294967295u;
    huge[4].value = 4294967295u;
    EXPECT_EQ(run(stepOf(11, huge), {}), 2);
    EXPECT_TRUE(m_driver.volumes().empty());
}

TEST_F(ProcessRunnerTest, AVolumeWithoutCellsIsBuiltAndEveryStepRunsOnIt)
{
    auto empty = Box;
    empty[4].value = 0u;
    EXPECT_EQ(run(stepOf(11, empty), {}), 0);
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    for (const Step &step : allSteps())
        EXPECT_EQ(run(stepOf(step.type, step.parameters), m_driver.volumes().front()), 0)
            << step.type;
}

TEST_F(ProcessRunnerTest, APictureShowsTheVolumeOfTheMoment)
{
    EXPECT_EQ(run(stepOf(11, Box), {}), 0);
    const QString file = QDir::current().filePath("moment.png");
    EXPECT_EQ(run(stepOf(10, {{"Filename", file}}), m_driver.volumes().front()), 0);
    EXPECT_EQ(QImage(file), m_driver.picture().convertToFormat(QImage(file).format()));
    EXPECT_GT(m_driver.volumes().front()->painter().opaqueFaces().size(), 0u);
    EXPECT_EQ(records().lastOperation(m_driver.volumes().front()->id()), 0u);
}

TEST_F(ProcessRunnerTest, APictureNeedsAName)
{
    const QStringList before = QDir::current().entryList({"*.png"});
    EXPECT_EQ(run(stepOf(10, {}), wafer()), 1);
    EXPECT_EQ(run(stepOf(10, {{"Filename", QVariant::fromValue(std::vector<bool>(2))}}), wafer()),
              2);
    // An empty one saves none, and asks nobody.
    EXPECT_EQ(run(stepOf(10, {{"Filename", ""}}), wafer()), 0);
    EXPECT_EQ(QDir::current().entryList({"*.png"}), before);
}

} // namespace
