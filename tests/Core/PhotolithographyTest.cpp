#include "Core/Operations/Photolithography/Photolithography.h"

#include "PassRuns.h"
#include "PhotolithographyRule.h"
#include "PhotolithographyRuns.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <utility>
#include <vector>

using namespace PhotolithographyRule;

TEST(PhotolithographyTest, NegativeResistIsTheMaterialOfNumberTwelve)
{
    EXPECT_EQ(Core::Operations::Photolithography::NegativeResist, 12U);
}

TEST(PhotolithographyTest, PositiveResistWithoutMasksGoesAsAWhole)
{
    for (const std::uint32_t top : {3U, 7U, 11U})
        expectMaterials(lithographyOf(positive, coated(positive, top)), coated(positive, 2));
    expectMaterials(lithographyOf(positive, plate(positive, 3, 8)),
                    [](auto, auto, auto) { return 0U; });
    expectMaterials(lithographyOf(positive, plate(positive, 0, 11)),
                    [](auto, auto, auto) { return 0U; });
    expectMaterials(lithographyOf(positive, plate(positive, 1, 12)),
                    [](auto, auto, auto) { return 0U; });
}

TEST(PhotolithographyTest, FilmOnAFaceOfTheVolumeStaysWithNothingOpenOnTheOtherSide)
{
    // Up to the top face on a floor, down to the bottom face under a lid, and from face to face.
    const auto lid = [](auto, auto, auto z) { return z < 9 ? positive : other; };
    for (const Mask &mask : {Mask(), clear}) {
        expectUnchanged(lithographyOf(positive, coated(positive, 12), mask, mask));
        expectUnchanged(lithographyOf(positive, lid, mask, mask));
        expectUnchanged(lithographyOf(positive, plate(positive, 0, 12), mask, mask));
    }
    for (const Mask &mask : {opaque, plainMask(9, 9, true)}) {
        expectUnchanged(lithographyOf(negative, coated(negative, 12), mask, mask));
        expectUnchanged(lithographyOf(negative, plate(negative, 0, 12), mask, mask));
    }
}

TEST(PhotolithographyTest, FaceIsNoVoidForTheLightOfItsSideAlone)
{
    // Void is on the other side only, where it is dark.
    expectUnchanged(lithographyOf(positive, plate(positive, 4, 12), opaque, {}));
    expectUnchanged(lithographyOf(positive, plate(positive, 0, 8), {}, opaque));
}

TEST(PhotolithographyTest, FilmFromFaceToFaceStaysBesideVoidColumns)
{
    // The cell before the lowest one and that after the highest are those of other columns.
    const auto pillar = [](auto x, auto y, auto) { return x == 2 && y == 2 ? positive : 0U; };
    expectUnchanged(lithographyOf(positive, pillar));
    const auto upper = [](auto x, auto y, auto z) {
        return x == 2 && y == 2 && z > 5 ? positive : x == 2 && y == 2 ? other : 0U;
    };
    expectUnchanged(lithographyOf(positive, upper));
}

TEST(PhotolithographyTest, DevelopmentOfAColumnDoesNotGoOnInTheNext)
{
    // One column is film from face to face, the ones before and after it end where it begins.
    const auto before = [](auto, auto y, auto z) {
        return y == 1 || (y == 0 && z > 6) || (y == 2 && z < 5) ? positive : 0U;
    };
    expectMaterials(lithographyOf(positive, before),
                    [](auto, auto y, auto) { return y == 1 ? positive : 0U; });
}

TEST(PhotolithographyTest, NegativeResistWithoutMasksStays)
{
    for (const std::uint32_t top : {3U, 7U, 11U})
        expectUnchanged(lithographyOf(negative, coated(negative, top)));
    expectUnchanged(lithographyOf(negative, plate(negative, 3, 8)));
    // An extent without the other is no mask either.
    for (const Mask &none : {Mask{{}, 5, 0}, Mask{{}, 0, 4}, Mask{{}, 0xFFFFFFFFU, 0}})
        expectUnchanged(lithographyOf(negative, plate(negative, 3, 8), none, none));
}

TEST(PhotolithographyTest, ExtentOfNothingIsNoMaskForPositiveResistToo)
{
    for (const Mask &none : {Mask{{}, 5, 0}, Mask{{}, 0, 4}, Mask{{}, 0, 0xFFFFFFFFU}})
        expectMaterials(lithographyOf(positive, coated(positive, 8), none, none),
                        coated(positive, 2));
}

TEST(PhotolithographyTest, ClearMaskRemovesPositiveResistAndAnOpaqueOneKeepsIt)
{
    expectMaterials(lithographyOf(positive, coated(positive, 8), {}, clear), coated(positive, 2));
    expectUnchanged(lithographyOf(positive, coated(positive, 8), {}, opaque));
    expectUnchanged(lithographyOf(positive, plate(positive, 3, 8), opaque, opaque));
}

TEST(PhotolithographyTest, OpaqueMaskRemovesNegativeResistAndAClearOneKeepsIt)
{
    expectMaterials(lithographyOf(negative, coated(negative, 8), {}, opaque), coated(negative, 2));
    expectUnchanged(lithographyOf(negative, coated(negative, 8), {}, clear));
    expectUnchanged(lithographyOf(negative, plate(negative, 3, 8), clear, clear));
}

TEST(PhotolithographyTest, OpaquePixelsProtectTheirColumnsOfAPositiveResist)
{
    const auto before = coated(positive, 8);
    expectMaterials(lithographyOf(positive, before, {}, maskOf(5, 4, figure)),
                    leftWhere(figure, positive, before));
    expectMaterials(lithographyOf(positive, plate(positive, 3, 12), maskOf(5, 4, figure), {}),
                    leftWhere(figure, positive, plate(positive, 3, 12)));
}

TEST(PhotolithographyTest, OpaquePixelsMarkWhatGoesOfANegativeResist)
{
    const auto before = coated(negative, 8);
    const auto stays = [](auto x, auto y) { return !figure(x, y); };
    expectMaterials(lithographyOf(negative, before, {}, maskOf(5, 4, figure)),
                    leftWhere(stays, negative, before));
    expectMaterials(lithographyOf(negative, plate(negative, 3, 12), maskOf(5, 4, figure), {}),
                    leftWhere(stays, negative, plate(negative, 3, 12)));
}

TEST(PhotolithographyTest, AllOtherMaterialsBehaveAsPositiveResist)
{
    for (const std::uint32_t film : {1U, 3U, 11U, 13U, 12U + 65536U, 0x8000000CU, 0xFFFFFFFFU}) {
        const auto before = coated(film, 8);
        expectMaterials(lithographyOf(film, before, {}, maskOf(5, 4, figure)),
                        leftWhere(figure, film, before));
        expectMaterials(lithographyOf(film, before), coated(film, 2));
    }
}

TEST(PhotolithographyTest, MaskSmallerThanTheFootprintLeavesItsMarginToTheResist)
{
    const auto isOnIt = [](auto x, auto y) { return x < 3 && y < 2; };
    for (const bool isOpaque : {false, true}) {
        const Mask mask = plainMask(3, 2, isOpaque);
        // The margin of a positive resist goes, that of a negative one stays.
        expectMaterials(lithographyOf(positive, coated(positive, 8), {}, mask),
                        leftWhere([=](auto x, auto y) { return isOnIt(x, y) && isOpaque; },
                                  positive, coated(positive, 8)));
        expectMaterials(lithographyOf(negative, coated(negative, 8), {}, mask),
                        leftWhere([=](auto x, auto y) { return !isOnIt(x, y) || !isOpaque; },
                                  negative, coated(negative, 8)));
    }
    for (const auto &[width, height] : {std::pair(1U, 1U), std::pair(2U, 4U), std::pair(5U, 3U),
                                        std::pair(1U, 9U), std::pair(9U, 1U)})
        for (const std::uint32_t film : {positive, negative})
            expectRule(lithographyOf(film, coated(film, 8), {}, maskOf(width, height, figure)));
}

TEST(PhotolithographyTest, MaskLargerThanTheFootprintIsCut)
{
    // Rows of the mask are as far apart as the mask is high, not the volume.
    for (const auto &[width, height] : {std::pair(9U, 4U), std::pair(5U, 7U), std::pair(8U, 9U),
                                        std::pair(5U, 70000U), std::pair(70000U, 4U)}) {
        const Mask mask =
            maskOf(width, height, [](auto x, auto y) { return x > 4 || y > 3 || figure(x, y); });
        expectMaterials(lithographyOf(positive, coated(positive, 8), {}, mask),
                        leftWhere(figure, positive, coated(positive, 8)));
        expectMaterials(
            lithographyOf(negative, coated(negative, 8), {}, mask),
            leftWhere([](auto x, auto y) { return !figure(x, y); }, negative, coated(negative, 8)));
    }
}

TEST(PhotolithographyTest, MaskWhoseBitsDoNotFitItsExtentShadesNothing)
{
    for (const std::uint32_t film : {positive, negative})
        for (const bool isOpaque : {false, true})
            for (const std::size_t bits : {std::size_t{0}, std::size_t{1}, std::size_t{19},
                                           std::size_t{21}, std::size_t{40}}) {
                const Mask mask = {std::vector<bool>(bits, isOpaque), 5, 4};
                expectMaterials(lithographyOf(film, coated(film, 8), {}, mask), coated(film, 2));
                expectMaterials(lithographyOf(film, plate(film, 3, 12), mask, {}),
                                [](auto, auto, auto) { return 0U; });
            }
    // Bits with no extent, of the number of columns and others.
    for (const std::uint32_t film : {positive, negative})
        for (const std::size_t bits : {std::size_t{1}, std::size_t{20}}) {
            const Mask mask = {std::vector<bool>(bits, true), 0, 0};
            expectMaterials(lithographyOf(film, coated(film, 8), {}, mask), coated(film, 2));
        }
}

TEST(PhotolithographyTest, ExtentOfAMaskIsCountedBeyondThirtyTwoBits)
{
    // Each of these products is the number of bits again if it is cut off to 32 bits.
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> extents = {
        {65536, 65536},         {0x80000000U, 2}, {2, 0x80000000U},
        {0x10000, 0xFFFF0000U}, {65537, 65536},   {65536, 65537},
        {3, 0x55555557U},       {0x55555557U, 3}, {0xFFFFFFFFU, 0xFFFFFFFFU}};
    for (const auto &[width, height] : extents) {
        const std::uint32_t bits = width * height;
        for (const std::uint32_t film : {positive, negative})
            for (const bool isOpaque : {false, true}) {
                const Mask mask = {std::vector<bool>(bits, isOpaque), width, height};
                expectMaterials(lithographyOf(film, coated(film, 8), {}, mask), coated(film, 2));
                expectMaterials(lithographyOf(film, plate(film, 3, 12), mask, {}),
                                [](auto, auto, auto) { return 0U; });
            }
    }
}

TEST(PhotolithographyTest, EachSideHasItsMask)
{
    const auto stripe = [](auto x, auto) { return x < 2; };
    const auto edge = [](auto, auto y) { return y == 3; };
    // Open on both sides: what stays is dark from both. A floor or a lid takes one side away.
    const auto onFloor = coated(positive, 8);
    const auto underLid = [](auto, auto, auto z) { return z > 8 ? other : z > 4 ? positive : 0U; };
    const Mask bottom = maskOf(5, 4, stripe);
    const Mask top = maskOf(5, 4, edge);
    expectMaterials(lithographyOf(positive, plate(positive, 3, 8), bottom, top),
                    leftWhere([=](auto x, auto y) { return stripe(x, y) && edge(x, y); }, positive,
                              plate(positive, 3, 8)));
    expectMaterials(lithographyOf(positive, onFloor, bottom, top),
                    leftWhere(edge, positive, onFloor));
    expectMaterials(lithographyOf(positive, underLid, bottom, top),
                    leftWhere(stripe, positive, underLid));
}

TEST(PhotolithographyTest, EachSideHasItsMaskOfANegativeResist)
{
    const auto stripe = [](auto x, auto) { return x < 2; };
    const auto edge = [](auto, auto y) { return y == 3; };
    const Mask bottom = maskOf(5, 4, stripe);
    const Mask top = maskOf(5, 4, edge);
    expectMaterials(lithographyOf(negative, plate(negative, 3, 8), bottom, top),
                    leftWhere([=](auto x, auto y) { return !stripe(x, y) && !edge(x, y); },
                              negative, plate(negative, 3, 8)));
    expectMaterials(
        lithographyOf(negative, coated(negative, 8), bottom, top),
        leftWhere([=](auto x, auto y) { return !edge(x, y); }, negative, coated(negative, 8)));
}

TEST(PhotolithographyTest, MasksOfTheTwoSidesMayDifferInSize)
{
    for (const std::uint32_t film : {positive, negative}) {
        expectRule(
            lithographyOf(film, plate(film, 3, 8), maskOf(2, 3, figure), maskOf(7, 9, figure)));
        expectRule(lithographyOf(film, plate(film, 3, 8), maskOf(9, 2, figure), {}));
        expectRule(lithographyOf(film, plate(film, 3, 8), {}, maskOf(4, 4, figure)));
        // One of them does not fit its bits.
        expectRule(lithographyOf(film, plate(film, 3, 8), {{true}, 5, 4}, maskOf(5, 4, figure)));
    }
}

TEST(PhotolithographyTest, FrontIsNotStoppedByTheMaskOfTheOtherSide)
{
    for (const auto &[bottom, top] : {std::pair(opaque, clear), std::pair(clear, opaque)})
        for (const std::uint32_t height : {1U, 2U, 9U})
            expectMaterials(lithographyOf(positive, plate(positive, 1, 1 + height), bottom, top),
                            [](auto, auto, auto) { return 0U; });
    for (const auto &[bottom, top] : {std::pair(opaque, Mask()), std::pair(Mask(), opaque)})
        expectMaterials(lithographyOf(negative, plate(negative, 1, 10), bottom, top),
                        [](auto, auto, auto) { return 0U; });
}

TEST(PhotolithographyTest, HighestColumnGoesToItsEnd)
{
    for (const std::uint32_t sizeZ : {2U, 3U, 64U, 65U, 300U}) {
        const Grid high = {2, 2, sizeZ};
        const auto below = [=](auto, auto, auto z) { return z + 1 < sizeZ ? positive : 0U; };
        const auto above = [](auto, auto, auto z) { return z > 0 ? positive : 0U; };
        const auto nothing = [](auto, auto, auto) { return 0U; };
        expectMaterials({high, Support::materialsBy(high, below), positive, opaque, clear},
                        nothing);
        expectMaterials({high, Support::materialsBy(high, above), positive, clear, opaque},
                        nothing);
    }
}

TEST(PhotolithographyTest, FrontStopsAtAnotherMaterialAndFilmBehindItStays)
{
    const auto layers = [](auto, auto, auto z) {
        return z < 4 ? positive : z == 4 ? other : z < 9 ? positive : 0U;
    };
    expectMaterials(lithographyOf(positive, layers),
                    [=](auto x, auto y, auto z) { return z < 5 ? layers(x, y, z) : 0U; });
}

TEST(PhotolithographyTest, FilmBehindAGapIsDevelopedByTheLightOfTheGapAlone)
{
    // Two plates. The gap lies above the lower one and below the upper one, which stands on the
    // face of the volume.
    const auto plates = [](auto, auto, auto z) {
        return z < 3 || (z >= 5 && z < 12) ? positive : 0U;
    };
    expectMaterials(lithographyOf(positive, plates, opaque, clear), plate(positive, 5, 12));
    expectMaterials(lithographyOf(positive, plates, clear, opaque), plate(positive, 0, 3));
    expectMaterials(lithographyOf(positive, plates, clear, clear),
                    [](auto, auto, auto) { return 0U; });
    expectUnchanged(lithographyOf(positive, plates, opaque, opaque));
}

TEST(PhotolithographyTest, BuriedFilmIsNotLit)
{
    const auto buried = [](auto, auto, auto z) {
        return z < 2 ? 0U : z == 2 || z == 7 ? other : z < 7 ? positive : 0U;
    };
    expectUnchanged(lithographyOf(positive, buried));
    // Nor by void at its sides.
    const auto walled = [](auto x, auto, auto z) {
        return x % 2 == 0 ? 0U : z == 2 || z == 7 ? other : z > 2 && z < 7 ? positive : 0U;
    };
    expectUnchanged(lithographyOf(positive, walled));
}

TEST(PhotolithographyTest, WallsThatDevelopmentBaresAreNotDevelopedSideways)
{
    const auto chess = [](auto x, auto y) { return (x + y) % 2 == 0; };
    expectMaterials(lithographyOf(positive, coated(positive, 10), {}, maskOf(5, 4, chess)),
                    leftWhere(chess, positive, coated(positive, 10)));
}

TEST(PhotolithographyTest, FilmThatIsNotThereChangesNoCell)
{
    for (const std::uint32_t film : {positive, negative, 77U})
        for (const Mask &mask : {Mask(), clear, opaque}) {
            expectUnchanged({grid, randomMaterials(grid, 5, 60), film, mask, mask});
            expectUnchanged(lithographyOf(
                film, [](auto, auto, auto) { return 0U; }, mask, mask));
        }
}

TEST(PhotolithographyTest, VoidAsTheFilmChangesNoCell)
{
    Sample sample(grid, randomMaterials(grid, 5, 60));
    sample.run(2, engineOf({grid, {}, 0, {}, {}}));
    EXPECT_EQ(sample.materials(), randomMaterials(grid, 5, 60));
    EXPECT_EQ(sample.nextMaterials(), randomMaterials(grid, 5, 60));
}

TEST(PhotolithographyTest, CellSizesPlayNoPart)
{
    const Grid flat = {5, 4, 12, 1.0f, 1.0f, 0.35f};
    expectMaterials(
        {flat, Support::materialsBy(flat, coated(positive, 8)), positive, {}, maskOf(5, 4, figure)},
        leftWhere(figure, positive, coated(positive, 8)));
}

TEST(PhotolithographyTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const std::uint32_t film : {1U, negative}) {
        for (const Grid &thin :
             {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{1, 1, 14}, Grid{1, 9, 70}, Grid{2, 1, 3}}) {
            Materials materials = randomMaterials(thin, 11, 80);
            for (std::uint32_t &id : materials)
                id = id == 1 ? film : id;
            for (const Mask &mask : {Mask(), maskOf(3, 3, figure), maskOf(12, 12, figure)})
                expectRule({thin, materials, film, mask, mask});
        }
        // No cell is above or below another.
        for (const Grid &sheet : {Grid{1, 1, 1}, Grid{9, 12, 1}, Grid{1, 14, 1}, Grid{14, 1, 1}})
            expectUnchanged(
                {sheet,
                 Support::materialsBy(
                     sheet, [=](auto x, auto y, auto) { return (x + y) % 2 == 0 ? film : 0U; }),
                 film,
                 {{true}, 5, 4},
                 {{true}, 5, 4}});
    }
}

TEST(PhotolithographyTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 100; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto below = [&](std::uint32_t limit) { return std::uint32_t(random() % limit); };
        Grid any;
        any.sizeX = 1 + below(12);
        any.sizeY = 1 + below(8);
        any.sizeZ = below(5) == 0 ? 60 + below(80) : 1 + below(14);
        any.cellSizeZ = below(3) == 0 ? 0.35f : 1.0f;
        const std::vector<std::uint32_t> films = {1, positive, negative, negative};
        const std::uint32_t film = films[below(4)];
        const std::vector<std::uint32_t> percents = {3, 30, 70, 95, 100};
        Materials materials = randomMaterials(any, seed, percents[below(5)]);
        // Columns of one material, which a development takes many steps to go through.
        const bool isDense = below(2) == 0;
        for (std::uint32_t &id : materials)
            if (id == 1 || (id != 0 && isDense && random() % 8 != 0))
                id = film;
        const auto mask = [&]() -> Mask {
            if (below(4) == 0)
                return {};
            Mask drawn = maskOf(below(15), below(11), [&](auto, auto) { return below(2) == 0; });
            if (below(8) == 0)
                drawn.bits.push_back(true);
            return drawn;
        };
        const Mask bottom = mask();
        expectRule({any, materials, film, bottom, mask()});
    }
}

TEST(PhotolithographyTest, ManyStripsAreNoOtherThanOneOnLargerVolumes)
{
    const Grid large = {41, 20, 30};
    const Mask mask = maskOf(41, 20, [](auto x, auto y) { return (x / 3 + y / 2) % 2 == 0; });
    expectRule({large, randomMaterials(large, 23, 97), 1, mask, {}}, {1, 4, 8, 20, 40});
    expectRule({large, randomMaterials(large, 23, 97), 1, {}, mask}, {1, 4, 8, 20, 40});
}

TEST(PhotolithographyTest, FewerThanTwoLayersAThreadAreDevelopedByTheCallingThread)
{
    for (const int threads : {1, 2, 4})
        for (const int sizeX : {1, 2 * threads - 1}) {
            const Grid narrow = {std::uint32_t(sizeX), 3, 8};
            const Lithography given = {
                narrow, Support::materialsBy(narrow, coated(positive, 6)), positive, {}, {}};
            const auto volume = Support::makeVolume(narrow, given.materials);
            const int started =
                PassRuns::poolThreadsOf(threads, [&] { engineOf(given)(volume.get(), [] {}); });
            EXPECT_EQ(started, 0) << sizeX << " layers, " << threads << " threads";
            expectRule(given, {threads});
        }
}

TEST(PhotolithographyTest, TwoLayersAThreadAreDevelopedByThePool)
{
    for (const int threads : {1, 2, 4}) {
        const Grid wide = {std::uint32_t(2 * threads), 3, 8};
        const Lithography given = {
            wide, Support::materialsBy(wide, coated(positive, 6)), positive, {}, {}};
        const auto volume = Support::makeVolume(wide, given.materials);
        EXPECT_GT(PassRuns::poolThreadsOf(threads, [&] { engineOf(given)(volume.get(), [] {}); }),
                  0)
            << threads;
        expectRule(given, {threads});
    }
}

TEST(PhotolithographyTest, ConstructionLeavesTheVolumeAlone)
{
    const Materials materials = Support::materialsBy(grid, coated(positive, 8));
    LayerFrontRule::expectConstructionLeavesTheVolumeAlone(
        grid, materials, [](TotalVolume *volume, const std::function<void()> &whileItLives) {
            const Core::Operations::Photolithography engine(volume, positive, {}, 0, 0, {}, 0, 0);
            whileItLives();
        });
}

TEST(PhotolithographyTest, SecondDevelopmentTakesWhatTheFirstLeft)
{
    const auto before = coated(positive, 8);
    const auto volume = Support::makeVolume(grid, before);
    const Lithography masked = lithographyOf(positive, before, {}, maskOf(5, 4, figure));
    engineOf(masked)(volume.get(), [] {});
    engineOf(lithographyOf(positive, before))(volume.get(), [] {});
    const Materials floor = Support::materialsBy(grid, coated(positive, 2));
    EXPECT_EQ(Support::materialsOf(*volume), floor);
    EXPECT_EQ(Support::nextMaterialsOf(*volume), floor);
}

TEST(PhotolithographyTest, OverlaysOfTheVolumeArePictureAlone)
{
    const auto volume = Support::makeVolume(grid, coated(positive, 8));
    volume->setTopMask(opaque.bits, 5, 4);
    volume->setBottomMask(opaque.bits, 5, 4);
    engineOf(lithographyOf(positive, coated(positive, 8)))(volume.get(), [] {});
    EXPECT_EQ(Support::materialsOf(*volume), Support::materialsBy(grid, coated(positive, 2)));
    EXPECT_EQ(volume->topMask(), opaque.bits);
    EXPECT_EQ(volume->bottomMask(), opaque.bits);
}

TEST(PhotolithographyTest, RunWaitsForBothArrays)
{
    PassRuns::expectToWaitForBothArrays([](TotalVolume &volume) {
        engineOf(lithographyOf(positive, coated(positive, 8)))(&volume, [] {});
    });
}
