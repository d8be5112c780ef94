#include "Model/Automaton/TotalVolume.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <set>
#include <utility>
#include <vector>

using Model::Automaton::CellTriple;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;
using Support::Grid;
using Support::makeVolume;
using Support::materialsOf;
using Support::nextMaterialsOf;
using Util::Vector3D;

namespace {

using Ids = std::vector<std::uint32_t>;
using Bits = std::vector<bool>;
using Extent = std::pair<std::uint32_t, std::uint32_t>;

constexpr std::chrono::milliseconds shortly(50);

void expectAt(const Vector3D &actual, double x, double y, double z)
{
    EXPECT_EQ(actual[0], x);
    EXPECT_EQ(actual[1], y);
    EXPECT_EQ(actual[2], z);
}

Extent topExtent(const TotalVolume &volume)
{
    Extent extent(77, 77);
    volume.topMaskExtent(extent.first, extent.second);
    return extent;
}

Extent bottomExtent(const TotalVolume &volume)
{
    Extent extent(77, 77);
    volume.bottomMaskExtent(extent.first, extent.second);
    return extent;
}

std::set<std::int32_t> atomsIn(TotalVolume &volume)
{
    std::set<std::int32_t> atoms;
    const std::size_t count = std::size_t{volume.sizeX()} * volume.sizeY() * volume.sizeZ();
    const Voxel *cells = volume.voxels();
    const Voxel *nextCells = volume.nextVoxels();
    for (std::size_t i = 0; i < count; ++i) {
        atoms.insert(cells[i].atoms());
        atoms.insert(nextCells[i].atoms());
    }
    volume.releaseNextVoxels();
    volume.releaseVoxels();
    return atoms;
}

/// Runs `act` on another thread and expects it to wait until `release` is called here.
void expectToWaitFor(const std::function<void()> &release, const std::function<void()> &act)
{
    std::future<void> waiting = std::async(std::launch::async, act);
    EXPECT_EQ(waiting.wait_for(shortly), std::future_status::timeout);
    release();
    waiting.get();
}

/// True if `act` gets done on another thread while this one waits. Where it does not, `release`
/// must let it go on.
bool getsDone(const std::function<void()> &release, const std::function<void()> &act)
{
    std::future<void> done = std::async(std::launch::async, act);
    const bool ready = done.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
    if (!ready)
        release();
    done.get();
    return ready;
}

} // namespace

TEST(TotalVolumeTest, KeepsItsSizesAndItsPlace)
{
    const TotalVolume volume(2, 3, 4, 0.5f, 0.25f, 0.35f, Vector3D(10, -20, 30), Ids(24, 1));
    EXPECT_EQ(volume.sizeX(), 2U);
    EXPECT_EQ(volume.sizeY(), 3U);
    EXPECT_EQ(volume.sizeZ(), 4U);
    EXPECT_EQ(volume.cellSizeX(), 0.5f);
    EXPECT_EQ(volume.cellSizeY(), 0.25f);
    EXPECT_EQ(volume.cellSizeZ(), 0.35f);
    expectAt(volume.position(), 10, -20, 30);
    EXPECT_EQ(volume.objectType(), 1U);
    EXPECT_FALSE(volume.isSelected());
}

TEST(TotalVolumeTest, PositionIsHandedOutAsACopy)
{
    const auto volume = makeVolume({}, Ids{1});
    volume->position()[0] = 5;
    Vector3D position = volume->position();
    position[1] = 6;
    expectAt(volume->position(), 0, 0, 0);
}

TEST(TotalVolumeTest, BothArraysStartWithTheIdsInIndexOrder)
{
    const Grid grid{3, 4, 5};
    Ids ids;
    for (std::uint32_t i = 0; i < 60; ++i)
        ids.push_back(i * 71000000U);
    const auto volume = makeVolume(grid, ids);
    EXPECT_EQ(materialsOf(*volume), ids);
    EXPECT_EQ(nextMaterialsOf(*volume), ids);
    EXPECT_EQ(atomsIn(*volume), (std::set<std::int32_t>{0}));
}

TEST(TotalVolumeTest, ArraysAreApartFromEachOther)
{
    const auto volume = makeVolume({2, 1, 1}, Ids{1, 2});
    Voxel *cells = volume->voxels();
    Voxel *nextCells = volume->nextVoxels();
    EXPECT_NE(cells, nextCells);
    cells[0].setMaterial(7);
    EXPECT_EQ(nextCells[0].material(), 1U);
    nextCells[1].setMaterial(8);
    EXPECT_EQ(cells[1].material(), 2U);
    volume->releaseNextVoxels();
    volume->releaseVoxels();
    EXPECT_EQ(materialsOf(*volume), (Ids{7, 2}));
    EXPECT_EQ(nextMaterialsOf(*volume), (Ids{1, 8}));
}

TEST(TotalVolumeTest, ZRunsFastestThenYThenX)
{
    const Grid grid{3, 4, 5};
    const auto volume = makeVolume(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return 1 + x * 100 + y * 10 + z;
    });
    const Voxel *cells = volume->voxels();
    for (std::uint32_t index = 0; index < 60; ++index) {
        const std::uint32_t x = index / 20;
        const std::uint32_t y = index % 20 / 5;
        const std::uint32_t z = index % 5;
        EXPECT_EQ(cells[index].material(), 1 + x * 100 + y * 10 + z) << "index " << index;
    }
    volume->releaseVoxels();
}

TEST(TotalVolumeTest, BuildsNoSurfaceByItself)
{
    const auto volume = makeVolume({2, 2, 2}, Ids(8, 1));
    EXPECT_TRUE(volume->painter().opaqueFaces().empty());
    EXPECT_TRUE(volume->painter().transparentFaces().empty());
    EXPECT_TRUE(volume->painter().emptyFaces().empty());
}

TEST(TotalVolumeTest, IdsAreStoredWhetherTheRegistryKnowsThemOrNot)
{
    const Ids ids{0, 2, 123456, 4294967295U};
    const auto volume = makeVolume({1, 1, 4}, ids);
    EXPECT_EQ(materialsOf(*volume), ids);
}

TEST(TotalVolumeTest, NumberOfCellsWrapsInThirtyTwoBits)
{
    // 2 * (2^31 + 1) is two cells more than fit.
    TotalVolume wrapped(2, 2147483649U, 1, 1, 1, 1, Vector3D(), Ids{7, 8});
    EXPECT_EQ(wrapped.sizeY(), 2147483649U);
    EXPECT_EQ(wrapped.voxels()[1].material(), 8U);
    wrapped.releaseVoxels();
    const std::unique_ptr<TotalVolume> copy(wrapped.clone());
    EXPECT_EQ(copy->sizeX(), 2U);
    EXPECT_EQ(copy->sizeY(), 2147483649U);
    EXPECT_EQ(copy->voxels()[1].material(), 8U);
    copy->releaseVoxels();

    // 2^16 * 2^16 leaves none.
    const TotalVolume none(65536, 65536, 1, 1, 1, 1, Vector3D(), Ids());
    EXPECT_EQ(none.sizeX(), 65536U);
    EXPECT_EQ(none.sizeY(), 65536U);
}

TEST(TotalVolumeTest, VolumesMayBeOneCellThick)
{
    for (const Grid &grid : {Grid{1, 4, 5}, Grid{4, 1, 5}, Grid{4, 5, 1}, Grid{1, 1, 1}}) {
        SCOPED_TRACE(testing::Message()
                     << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ);
        Ids ids;
        for (std::uint32_t i = 0; i < grid.cells(); ++i)
            ids.push_back(i + 1);
        const auto volume = makeVolume(grid, ids);
        EXPECT_EQ(materialsOf(*volume), ids);
        const std::unique_ptr<TotalVolume> copy(volume->clone());
        EXPECT_EQ(materialsOf(*copy), ids);
    }
}

TEST(TotalVolumeTest, SwapExchangesTheArrays)
{
    const auto volume = makeVolume({1, 1, 2}, Ids{1, 2});
    Voxel *cells = volume->voxels();
    Voxel *nextCells = volume->nextVoxels();
    nextCells[0].setMaterial(7);
    volume->swapVoxels();
    volume->releaseNextVoxels();
    volume->releaseVoxels();

    EXPECT_EQ(volume->voxels(), nextCells);
    volume->releaseVoxels();
    EXPECT_EQ(volume->nextVoxels(), cells);
    volume->releaseNextVoxels();
    EXPECT_EQ(materialsOf(*volume), (Ids{7, 2}));
    EXPECT_EQ(nextMaterialsOf(*volume), (Ids{1, 2}));
}

TEST(TotalVolumeTest, SwappingTwiceChangesNothing)
{
    const auto volume = makeVolume({1, 1, 2}, Ids{1, 2});
    const Voxel *cells = volume->voxels();
    volume->nextVoxels();
    volume->swapVoxels();
    volume->swapVoxels();
    volume->releaseNextVoxels();
    volume->releaseVoxels();
    EXPECT_EQ(volume->voxels(), cells);
    volume->releaseVoxels();
}

TEST(TotalVolumeTest, CellsAreHandedToOneAtATime)
{
    const auto volume = makeVolume({}, Ids{1});
    volume->voxels();
    expectToWaitFor([&] { volume->releaseVoxels(); },
                    [&] {
                        volume->voxels();
                        volume->releaseVoxels();
                    });
    volume->nextVoxels();
    expectToWaitFor([&] { volume->releaseNextVoxels(); },
                    [&] {
                        volume->nextVoxels();
                        volume->releaseNextVoxels();
                    });
}

TEST(TotalVolumeTest, EachArrayHasALockOfItsOwn)
{
    const auto volume = makeVolume({}, Ids{1});
    volume->voxels();
    EXPECT_TRUE(getsDone([&] { volume->releaseVoxels(); },
                         [&] {
                             volume->nextVoxels();
                             volume->releaseNextVoxels();
                         }));
    volume->releaseVoxels();
    volume->nextVoxels();
    EXPECT_TRUE(getsDone([&] { volume->releaseNextVoxels(); },
                         [&] {
                             volume->voxels();
                             volume->releaseVoxels();
                         }));
    volume->releaseNextVoxels();
}

TEST(TotalVolumeTest, LocksOfTwoVolumesAreApart)
{
    const auto first = makeVolume({}, Ids{1});
    const auto second = makeVolume({}, Ids{1});
    first->voxels();
    EXPECT_TRUE(getsDone([&] { first->releaseVoxels(); },
                         [&] {
                             second->voxels();
                             second->releaseVoxels();
                         }));
    first->releaseVoxels();
}

TEST(TotalVolumeTest, ThreadsThatTakeTurnsLoseNothing)
{
    const auto volume = makeVolume({}, Ids{0});
    std::vector<std::future<void>> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.push_back(std::async(std::launch::async, [&] {
            for (int i = 0; i < 500; ++i) {
                Voxel *cells = volume->voxels();
                cells[0].setMaterial(cells[0].material() + 1);
                volume->releaseVoxels();
            }
        }));
    }
    for (auto &thread : threads)
        thread.get();
    EXPECT_EQ(materialsOf(*volume), Ids{2000});
}

TEST(TotalVolumeTest, CloneHasTheSameSizesPlaceAndCells)
{
    Ids ids;
    for (std::uint32_t i = 0; i < 24; ++i)
        ids.push_back(i * 3);
    TotalVolume volume(2, 3, 4, 0.5f, 0.25f, 0.35f, Vector3D(10, -20, 30), ids);
    const std::unique_ptr<TotalVolume> copy(volume.clone());
    EXPECT_EQ(copy->sizeX(), 2U);
    EXPECT_EQ(copy->sizeY(), 3U);
    EXPECT_EQ(copy->sizeZ(), 4U);
    EXPECT_EQ(copy->cellSizeX(), 0.5f);
    EXPECT_EQ(copy->cellSizeY(), 0.25f);
    EXPECT_EQ(copy->cellSizeZ(), 0.35f);
    expectAt(copy->position(), 10, -20, 30);
    EXPECT_EQ(materialsOf(*copy), ids);
    EXPECT_EQ(nextMaterialsOf(*copy), ids);
    EXPECT_EQ(copy->objectType(), 1U);
}

TEST(TotalVolumeTest, CloneTakesThePresentCellsAndPlace)
{
    const auto volume = makeVolume({1, 1, 2}, Ids{1, 2});
    volume->voxels()[0].setMaterial(7);
    volume->releaseVoxels();
    volume->nextVoxels()[1].setMaterial(8);
    volume->releaseNextVoxels();
    volume->translate({1, 2, 3});
    const std::unique_ptr<TotalVolume> copy(volume->clone());
    EXPECT_EQ(materialsOf(*copy), (Ids{7, 2}));
    EXPECT_EQ(nextMaterialsOf(*copy), (Ids{7, 2}));
    expectAt(copy->position(), 1, 2, 3);
}

TEST(TotalVolumeTest, CloneIsANewObjectOfItsOwn)
{
    const auto volume = makeVolume({1, 1, 2}, Ids{1, 2});
    const std::unique_ptr<TotalVolume> copy(volume->clone());
    EXPECT_EQ(copy->id(), volume->id() + 1);
    copy->voxels()[0].setMaterial(7);
    copy->releaseVoxels();
    copy->translate({1, 1, 1});
    EXPECT_EQ(materialsOf(*volume), (Ids{1, 2}));
    expectAt(volume->position(), 0, 0, 0);
}

TEST(TotalVolumeTest, CloneOfAVolumeWithMasksHasNone)
{
    const auto volume = makeVolume({2, 2, 1}, Ids(4, 1));
    volume->setTopMask(Bits(6, true), 2, 3);
    volume->setBottomMask(Bits(4, true), 4, 1);
    const std::unique_ptr<TotalVolume> copy(volume->clone());
    EXPECT_TRUE(copy->topMask().empty());
    EXPECT_TRUE(copy->bottomMask().empty());
    EXPECT_EQ(topExtent(*copy), Extent(0, 0));
    EXPECT_EQ(bottomExtent(*copy), Extent(0, 0));
    EXPECT_EQ(volume->topMask(), Bits(6, true));
}

TEST(TotalVolumeTest, CloneHasNoAtomsNoSurfaceAndNoSettings)
{
    const auto volume = makeVolume({2, 2, 2}, Ids(8, 1));
    volume->voxels()[3].setAtoms(5);
    volume->releaseVoxels();
    volume->painter().setCutLimits({1, 1, 1}, {2, 2, 2});
    volume->painter().setShowEmptyVoxels(true);
    volume->painter().rebuild();
    volume->painter().setSurfaceAlgorithm(Model::Automaton::TotalVolumePainter::Octree);
    volume->setSelected(true);
    volume->setColor({0.1, 0.2, 0.3, 0.4});

    const std::unique_ptr<TotalVolume> copy(volume->clone());
    EXPECT_EQ(atomsIn(*copy), (std::set<std::int32_t>{0}));
    EXPECT_TRUE(copy->painter().opaqueFaces().empty());
    CellTriple lower{9, 9, 9};
    CellTriple upper{9, 9, 9};
    copy->painter().cutLimits(lower, upper);
    EXPECT_EQ(lower, (CellTriple{0, 0, 0}));
    EXPECT_EQ(upper, (CellTriple{2, 2, 2}));
    EXPECT_FALSE(copy->painter().showEmptyVoxels());
    EXPECT_EQ(copy->painter().surfaceAlgorithm(), 0U);
    EXPECT_FALSE(copy->isSelected());
    EXPECT_EQ(copy->color()[0], 0.0);
}

TEST(TotalVolumeTest, CloningWaitsForTheCells)
{
    const auto volume = makeVolume({}, Ids{1});
    std::unique_ptr<TotalVolume> copy;
    Voxel *cells = volume->voxels();
    expectToWaitFor(
        [&] {
            cells[0].setMaterial(7);
            volume->releaseVoxels();
        },
        [&] { copy.reset(volume->clone()); });
    EXPECT_EQ(materialsOf(*copy), Ids{7});
}

TEST(TotalVolumeTest, CloningGivesTheCellsBackAndLeavesTheWorkingBufferAlone)
{
    const auto volume = makeVolume({}, Ids{1});
    volume->nextVoxels();
    std::unique_ptr<TotalVolume> copy;
    EXPECT_TRUE(
        getsDone([&] { volume->releaseNextVoxels(); }, [&] { copy.reset(volume->clone()); }));
    EXPECT_TRUE(getsDone([&] { volume->releaseVoxels(); },
                         [&] {
                             volume->voxels();
                             volume->releaseVoxels();
                         }));
    volume->releaseNextVoxels();
}

TEST(TotalVolumeTest, TranslationAddsToThePositionAndLeavesTheCells)
{
    TotalVolume volume(1, 1, 2, 1, 1, 1, Vector3D(10, 20, 30), Ids{1, 2});
    volume.translate({1, -2, 0.5});
    expectAt(volume.position(), 11, 18, 30.5);
    volume.translate({1, -2, 0.5});
    expectAt(volume.position(), 12, 16, 31);
    EXPECT_EQ(materialsOf(volume), (Ids{1, 2}));
    EXPECT_EQ(nextMaterialsOf(volume), (Ids{1, 2}));
}

TEST(TotalVolumeTest, TranslationLeavesTheFacesAsTheyWereBuilt)
{
    const auto volume = makeVolume({}, Ids{1});
    volume->painter().rebuild();
    ASSERT_EQ(volume->painter().opaqueFaces().size(), 6U);
    volume->translate({100, 200, 300});
    std::set<float> coordinates;
    volume->painter().opaqueFaces().forEach([&](const Model::Geometry::QuadFace &face) {
        for (const auto &vertex : face.vertices)
            coordinates.insert(vertex, vertex + 3);
    });
    EXPECT_EQ(coordinates, (std::set<float>{0, 1}));
}

TEST(TotalVolumeTest, UnusedVectorPairDoesNothing)
{
    TotalVolume volume(1, 1, 1, 1, 1, 1, Vector3D(10, 20, 30), Ids{1});
    volume.unusedVectorPair({1, 2, 3}, {4, 5, 6});
    expectAt(volume.position(), 10, 20, 30);
    EXPECT_EQ(materialsOf(volume), Ids{1});
}

TEST(TotalVolumeTest, StartsWithoutMasks)
{
    const auto volume = makeVolume({3, 3, 1}, Ids(9, 1));
    EXPECT_TRUE(volume->topMask().empty());
    EXPECT_TRUE(volume->bottomMask().empty());
    EXPECT_EQ(topExtent(*volume), Extent(0, 0));
    EXPECT_EQ(bottomExtent(*volume), Extent(0, 0));
}

TEST(TotalVolumeTest, MasksAreCopiedWithTheirExtents)
{
    const auto volume = makeVolume({3, 3, 1}, Ids(9, 1));
    Bits top{true, false, true, true, false, false};
    volume->setTopMask(top, 2, 3);
    top[0] = false;
    EXPECT_EQ(volume->topMask(), (Bits{true, false, true, true, false, false}));
    EXPECT_EQ(topExtent(*volume), Extent(2, 3));
    EXPECT_TRUE(volume->bottomMask().empty());
    EXPECT_EQ(bottomExtent(*volume), Extent(0, 0));

    volume->setBottomMask(Bits{false, true, false, true}, 4, 1);
    EXPECT_EQ(volume->bottomMask(), (Bits{false, true, false, true}));
    EXPECT_EQ(bottomExtent(*volume), Extent(4, 1));
    EXPECT_EQ(volume->topMask(), (Bits{true, false, true, true, false, false}));
    EXPECT_EQ(topExtent(*volume), Extent(2, 3));
}

TEST(TotalVolumeTest, LaterMaskReplacesTheEarlier)
{
    const auto volume = makeVolume({3, 3, 1}, Ids(9, 1));
    volume->setTopMask(Bits(6, true), 2, 3);
    volume->setTopMask(Bits{false, true}, 1, 2);
    EXPECT_EQ(volume->topMask(), (Bits{false, true}));
    EXPECT_EQ(topExtent(*volume), Extent(1, 2));
}

TEST(TotalVolumeTest, ClearingAMaskKeepsItsLengthAndExtents)
{
    const auto volume = makeVolume({3, 3, 1}, Ids(9, 1));
    volume->setTopMask(Bits(6, true), 2, 3);
    volume->setBottomMask(Bits(4, true), 4, 1);
    volume->clearTopMask();
    EXPECT_EQ(volume->topMask(), Bits(6, false));
    EXPECT_EQ(topExtent(*volume), Extent(2, 3));
    EXPECT_EQ(volume->bottomMask(), Bits(4, true));

    volume->clearBottomMask();
    EXPECT_EQ(volume->bottomMask(), Bits(4, false));
    EXPECT_EQ(bottomExtent(*volume), Extent(4, 1));
    EXPECT_EQ(volume->topMask(), Bits(6, false));
}

TEST(TotalVolumeTest, ClearingAMaskThatIsNotThereDoesNothing)
{
    const auto volume = makeVolume({3, 3, 1}, Ids(9, 1));
    volume->clearTopMask();
    volume->clearBottomMask();
    EXPECT_TRUE(volume->topMask().empty());
    EXPECT_TRUE(volume->bottomMask().empty());
    EXPECT_EQ(topExtent(*volume), Extent(0, 0));
    EXPECT_EQ(bottomExtent(*volume), Extent(0, 0));
}

TEST(TotalVolumeTest, PainterIsPartOfTheVolume)
{
    const auto volume = makeVolume({}, Ids{1});
    EXPECT_EQ(&volume->painter(), &volume->painter());
    const auto *begin = reinterpret_cast<const char *>(volume.get());
    const auto *painter = reinterpret_cast<const char *>(&volume->painter());
    EXPECT_GE(painter, begin);
    EXPECT_LT(painter, begin + sizeof(TotalVolume));
}
