#include "Model/ModelExtraction/CantileverModelRule.h"

#include "Model/ModelExtraction/CantileverStructure.h"
#include "Model/ModelExtraction/CuboidDecomposer.h"
#include "Model/ModelExtraction/ExtractedModel.h"
#include "Model/ModelExtraction/IStructure.h"
#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <ostream>
#include <random>
#include <vector>

using Model::ModelExtraction::CantileverModelRule;
using Model::ModelExtraction::CantileverStructure;
using Model::ModelExtraction::CuboidDecomposer;
using Model::ModelExtraction::EnvelopeList;
using Model::ModelExtraction::ExtractedModel;
using Model::ModelExtraction::IStructure;
using Model::ModelExtraction::RectangularCuboidEnvelope;

namespace {

using Shared = boost::shared_ptr<RectangularCuboidEnvelope>;

constexpr int silicon = 1;
constexpr int oxide = 3;
constexpr int metal = 2;

struct Beam
{
    int x;
    int y;
    int z;
    int width;
    int depth;
    int height;
    int material;

    bool operator==(const Beam &other) const
    {
        return x == other.x && y == other.y && z == other.z && width == other.width &&
               depth == other.depth && height == other.height && material == other.material;
    }
};
using Beams = std::vector<Beam>;

std::ostream &operator<<(std::ostream &stream, const Beam &beam)
{
    return stream << "material " << beam.material << " at (" << beam.x << ", " << beam.y << ", "
                  << beam.z << "), " << beam.width << " x " << beam.depth << " x " << beam.height;
}

Beam beamOf(const RectangularCuboidEnvelope &envelope)
{
    return {envelope.x(),     envelope.y(),      envelope.z(),       envelope.width(),
            envelope.depth(), envelope.height(), envelope.material()};
}

Beams beamsOf(const EnvelopeList &envelopes)
{
    Beams beams;
    for (const Shared &envelope : envelopes)
        beams.push_back(beamOf(*envelope));
    return beams;
}

Shared box(const Beam &beam)
{
    return boost::make_shared<RectangularCuboidEnvelope>(beam.x, beam.y, beam.z, beam.width,
                                                         beam.depth, beam.height, beam.material);
}

/// Makes `other` the neighbour on that face, and the other way round.
void join(const Shared &envelope, unsigned face, const Shared &other)
{
    envelope->setNeighbour(face, other.get());
    other->setNeighbour(face ^ 1U, envelope.get());
}

/// The beams by the rule, stated plainly.
Beams ruleOf(const EnvelopeList &envelopes)
{
    Beams beams;
    for (const Shared &tip : envelopes) {
        const bool isTip = tip->material() != silicon && tip->neighbourCount() == 1 &&
                           !tip->neighbour(4) && !tip->neighbour(5);
        if (!isTip)
            continue;
        unsigned direction = 3;
        if (tip->neighbour(0))
            direction = 0;
        else if (tip->neighbour(1))
            direction = 1;
        else if (tip->neighbour(2))
            direction = 2;
        Beam beam = beamOf(*tip);
        const RectangularCuboidEnvelope *next = tip->neighbour(direction);
        while (next && next->material() == beam.material && next->neighbourCount() == 2 &&
               next->neighbour(direction)) {
            beam.width += std::abs(next->x() - beam.x);
            beam.depth += std::abs(next->y() - beam.y);
            beam.height += std::abs(next->z() - beam.z);
            beam.x = std::min(beam.x, next->x());
            beam.y = std::min(beam.y, next->y());
            beam.z = std::min(beam.z, next->z());
            next = next->neighbour(direction);
        }
        beams.push_back(beam);
    }
    return beams;
}

/// Expects these beams, and a structure of them if there are any.
void expectBeams(const EnvelopeList &envelopes, const Beams &expected)
{
    const ExtractedModel model(envelopes);
    CantileverModelRule rule;
    const boost::shared_ptr<IStructure> structure = rule.extract(model);
    EXPECT_EQ(beamsOf(rule.beams()), expected);
    EXPECT_EQ(ruleOf(envelopes), expected);
    for (const Shared &beam : rule.beams())
        EXPECT_EQ(beam->neighbourCount(), 0U);
    if (expected.empty()) {
        EXPECT_EQ(structure, nullptr);
    } else {
        const auto cantilever = boost::dynamic_pointer_cast<CantileverStructure>(structure);
        ASSERT_NE(cantilever, nullptr);
        EXPECT_EQ(cantilever->netlist(), CantileverStructure(rule.beams()).netlist());
    }
}

/// A row of boxes along an axis, each two cells long, joined one to the next.
EnvelopeList row(unsigned axis, const std::vector<int> &materials)
{
    EnvelopeList boxes;
    for (std::size_t i = 0; i < materials.size(); ++i) {
        std::array<int, 3> at = {10, 20, 30};
        std::array<int, 3> size = {5, 6, 7};
        at[axis] += 2 * int(i);
        size[axis] = 2;
        boxes.push_back(box({at[0], at[1], at[2], size[0], size[1], size[2], materials[i]}));
        if (i > 0)
            join(boxes[i - 1], 2 * axis + 1, boxes[i]);
    }
    return boxes;
}

/// The boxes of a volume, with their neighbours.
EnvelopeList boxesOf(const Support::Grid &grid, const Support::MaterialRule &rule)
{
    const auto volume = Support::makeVolume(grid, rule);
    CuboidDecomposer decomposer(volume.get());
    decomposer.run();
    return decomposer.envelopes();
}

TEST(CantileverModelRuleTest, ModelWithoutBoxesHasNoBeam)
{
    expectBeams({}, {});
    expectBeams(boxesOf({4, 4, 4}, [](auto, auto, auto) { return 0U; }), {});
}

TEST(CantileverModelRuleTest, VolumeOfOneMaterialHasNoTipAndNoBeam)
{
    for (const std::uint32_t material : {1U, 3U})
        expectBeams(boxesOf({4, 4, 4}, [=](auto, auto, auto) { return material; }), {});
}

TEST(CantileverModelRuleTest, AnchorsAreTheBoxesOfSiliconInOrder)
{
    const EnvelopeList boxes = row(0, {silicon, oxide, silicon, metal, 0, silicon});
    const ExtractedModel model(boxes);
    CantileverModelRule rule;
    rule.extract(model);
    EXPECT_EQ(rule.anchors(), (EnvelopeList{boxes[0], boxes[2], boxes[5]}));
    EXPECT_EQ(beamsOf(rule.beams()), Beams());
}

TEST(CantileverModelRuleTest, TipThatLeadsStraightIntoAnotherMaterialIsTheWholeBeam)
{
    for (const int material : {silicon, metal})
        for (const unsigned axis : {0U, 1U}) {
            const EnvelopeList rising = row(axis, {oxide, material, silicon});
            expectBeams(rising, {beamOf(*rising[0])});
            const EnvelopeList falling = row(axis, {silicon, material, oxide});
            expectBeams(falling, {beamOf(*falling[2])});
        }
}

TEST(CantileverModelRuleTest, SiliconNeverStartsABeam)
{
    for (const unsigned axis : {0U, 1U})
        expectBeams(row(axis, {silicon, silicon, silicon, metal, silicon}), {});
}

TEST(CantileverModelRuleTest, AnyOtherMaterialStartsABeam)
{
    for (const int material : {0, 2, 15, 16, -1}) {
        const EnvelopeList boxes = row(0, {material, silicon});
        expectBeams(boxes, {beamOf(*boxes[0])});
    }
}

TEST(CantileverModelRuleTest, BoxHeldAboveOrBelowIsNoTip)
{
    for (const unsigned face : {4U, 5U}) {
        const Shared piece = box({0, 0, 0, 4, 5, 6, oxide});
        const Shared holder = box({0, 0, 6, 4, 5, 6, silicon});
        join(piece, face, holder);
        expectBeams({piece, holder}, {});
    }
}

TEST(CantileverModelRuleTest, BoxWithoutNeighboursIsNoTip)
{
    expectBeams({box({0, 0, 0, 4, 5, 6, oxide}), box({9, 0, 0, 4, 5, 6, metal})}, {});
}

TEST(CantileverModelRuleTest, BoxWithTwoNeighboursIsNoTip)
{
    for (unsigned first = 0; first < 6; ++first)
        for (unsigned second = first + 1; second < 6; ++second) {
            const Shared piece = box({0, 0, 0, 4, 5, 6, oxide});
            const Shared one = box({0, 0, 0, 4, 5, 6, silicon});
            const Shared other = box({0, 0, 0, 4, 5, 6, silicon});
            join(piece, first, one);
            join(piece, second, other);
            expectBeams({piece, one, other}, {});
        }
}

TEST(CantileverModelRuleTest, TipPointsTheWayOfItsOneNeighbour)
{
    // A cross: a tip on each side of a box that belongs to none of them, since it has four.
    const Shared center = box({10, 10, 10, 2, 2, 2, oxide});
    const Shared high = box({12, 10, 10, 3, 2, 2, oxide});
    const Shared low = box({7, 10, 10, 3, 2, 2, oxide});
    const Shared back = box({10, 12, 10, 2, 3, 2, oxide});
    const Shared front = box({10, 7, 10, 2, 3, 2, oxide});
    join(center, 1, high);
    join(center, 0, low);
    join(center, 3, back);
    join(center, 2, front);
    expectBeams({high, center, low, back, front},
                {beamOf(*high), beamOf(*low), beamOf(*back), beamOf(*front)});
}

TEST(CantileverModelRuleTest, WalkDownAnAxisAddsTheLengthsOfTheBoxes)
{
    // The box at the silicon belongs to the beam: it has two neighbours, one of them further on.
    EnvelopeList alongX = row(0, {silicon, oxide, oxide, oxide, oxide});
    expectBeams(alongX, {{12, 20, 30, 8, 6, 7, oxide}});
    EnvelopeList alongY = row(1, {silicon, oxide, oxide, oxide, oxide});
    expectBeams(alongY, {{10, 22, 30, 5, 8, 7, oxide}});
}

TEST(CantileverModelRuleTest, WalkUpAnAxisAddsTheWayFromTheTipForEachBox)
{
    expectBeams(row(0, {oxide, oxide, silicon}), {{10, 20, 30, 4, 6, 7, oxide}});
    expectBeams(row(0, {oxide, oxide, oxide, silicon}), {{10, 20, 30, 8, 6, 7, oxide}});
    expectBeams(row(0, {oxide, oxide, oxide, oxide, silicon}), {{10, 20, 30, 14, 6, 7, oxide}});
    expectBeams(row(1, {oxide, oxide, oxide, silicon}), {{10, 20, 30, 5, 8, 7, oxide}});
    expectBeams(row(1, {oxide, oxide, oxide, oxide, silicon}), {{10, 20, 30, 5, 14, 7, oxide}});
}

TEST(CantileverModelRuleTest, LengthOfTheWalkedBoxesThemselvesPlaysNoPart)
{
    // Tip 3 long, then 5, then 1: upward the ways from the tip count.
    const Shared tip = box({0, 0, 0, 3, 2, 2, oxide});
    const Shared middle = box({3, 0, 0, 5, 2, 2, oxide});
    const Shared last = box({8, 0, 0, 1, 2, 2, oxide});
    const Shared anchor = box({9, 0, 0, 9, 2, 2, silicon});
    join(tip, 1, middle);
    join(middle, 1, last);
    join(last, 1, anchor);
    expectBeams({tip, middle, last, anchor}, {{0, 0, 0, 3 + 3 + 8, 2, 2, oxide}});
}

TEST(CantileverModelRuleTest, WalkStopsBeforeABoxWithoutNeighbourInItsDirection)
{
    // The last box of the material is an end itself: it is left out, and is a tip of its own.
    const EnvelopeList floating = row(0, {oxide, oxide, oxide});
    expectBeams(floating, {{10, 20, 30, 4, 6, 7, oxide}, {12, 20, 30, 4, 6, 7, oxide}});
    // Two boxes: each is a beam alone.
    const EnvelopeList pair = row(1, {oxide, oxide});
    expectBeams(pair, {beamOf(*pair[0]), beamOf(*pair[1])});
}

TEST(CantileverModelRuleTest, WalkStopsBeforeABend)
{
    const Shared tip = box({0, 0, 0, 3, 2, 2, oxide});
    const Shared middle = box({3, 0, 0, 3, 2, 2, oxide});
    const Shared corner = box({6, 0, 0, 2, 2, 2, oxide});
    const Shared after = box({6, 2, 0, 2, 4, 2, oxide});
    const Shared anchor = box({6, 6, 0, 2, 4, 2, silicon});
    join(tip, 1, middle);
    join(middle, 1, corner);
    join(corner, 3, after);
    join(after, 3, anchor);
    expectBeams({tip, middle, corner, after, anchor}, {{0, 0, 0, 6, 2, 2, oxide}});
}

TEST(CantileverModelRuleTest, WalkStopsBeforeABoxWithThreeNeighbours)
{
    for (const unsigned face : {2U, 3U, 4U, 5U}) {
        const EnvelopeList boxes = row(0, {oxide, oxide, oxide, oxide, silicon});
        const Shared load = box({0, 0, 0, 1, 1, 1, silicon});
        join(boxes[2], face, load);
        expectBeams(boxes, {{10, 20, 30, 4, 6, 7, oxide}});
    }
}

TEST(CantileverModelRuleTest, WalkStopsBeforeAnotherMaterial)
{
    expectBeams(row(0, {oxide, oxide, metal, oxide, silicon}), {{10, 20, 30, 4, 6, 7, oxide}});
    expectBeams(row(1, {silicon, oxide, metal, oxide, oxide}), {{10, 26, 30, 5, 4, 7, oxide}});
}

TEST(CantileverModelRuleTest, WalkStopsAtAnyBoxWithTwoNeighboursOnOtherSides)
{
    // Two neighbours, one of which is the tip, the other above.
    const Shared tip = box({0, 0, 0, 3, 2, 2, oxide});
    const Shared next = box({3, 0, 0, 3, 2, 2, oxide});
    const Shared above = box({3, 0, 2, 3, 2, 2, silicon});
    join(tip, 1, next);
    join(next, 5, above);
    expectBeams({tip, next, above}, {beamOf(*tip)});
}

TEST(CantileverModelRuleTest, WalkAsksForTwoNeighboursAndNotForTheOneItCameFrom)
{
    // Links of one side only: the count is right, though the tip is not among the neighbours.
    const Shared tip = box({0, 0, 0, 3, 2, 2, oxide});
    const Shared next = box({3, 0, 0, 3, 2, 2, oxide});
    const Shared other = box({6, 0, 0, 3, 2, 2, silicon});
    tip->setNeighbour(1, next.get());
    next->setNeighbour(1, other.get());
    next->setNeighbour(5, other.get());
    expectBeams({tip, next, other}, {{0, 0, 0, 6, 2, 2, oxide}});
}

TEST(CantileverModelRuleTest, CornersOfAllAxesTakePart)
{
    const Shared tip = box({10, 10, 10, 3, 2, 2, oxide});
    const Shared next = box({13, 7, 14, 9, 9, 9, oxide});
    const Shared last = box({16, 9, 8, 9, 9, 9, oxide});
    const Shared anchor = box({19, 0, 0, 9, 9, 9, silicon});
    join(tip, 1, next);
    join(next, 1, last);
    join(last, 1, anchor);
    // x: 3 + 3 + 6; y: 2 + 3 + 2, from 10 to 7; z: 2 + 4 + 2, from 10 to 8.
    expectBeams({tip, next, last, anchor}, {{10, 7, 8, 12, 7, 8, oxide}});
}

TEST(CantileverModelRuleTest, BeamsStandInTheOrderOfTheirTips)
{
    const EnvelopeList first = row(0, {silicon, oxide, oxide});
    const EnvelopeList second = row(1, {metal, silicon});
    EnvelopeList boxes = {second[0], first[2], first[0], first[1], second[1]};
    expectBeams(boxes, {beamOf(*second[0]), {12, 20, 30, 4, 6, 7, oxide}});
    std::reverse(boxes.begin(), boxes.end());
    expectBeams(boxes, {{12, 20, 30, 4, 6, 7, oxide}, beamOf(*second[0])});
}

TEST(CantileverModelRuleTest, BoxesOfTheModelStayAsTheyAre)
{
    const EnvelopeList boxes = row(0, {oxide, oxide, oxide, silicon});
    const Beams before = beamsOf(boxes);
    const ExtractedModel model(boxes);
    CantileverModelRule rule;
    rule.extract(model);
    EXPECT_EQ(beamsOf(boxes), before);
    EXPECT_EQ(model.envelopes(), boxes);
    for (std::size_t i = 0; i < boxes.size(); ++i)
        EXPECT_EQ(boxes[i]->neighbourCount(), i == 0 || i == 3 ? 1U : 2U);
    EXPECT_EQ(std::count(boxes.begin(), boxes.end(), rule.beams().front()), 0);
}

TEST(CantileverModelRuleTest, NextModelReplacesAnchorsAndBeams)
{
    CantileverModelRule rule;
    rule.extract(ExtractedModel(row(0, {silicon, oxide, oxide})));
    EXPECT_EQ(rule.beams().size(), 1U);
    EXPECT_NE(rule.extract(ExtractedModel(row(1, {silicon, metal}))), nullptr);
    EXPECT_EQ(beamsOf(rule.beams()), (Beams{{10, 22, 30, 5, 2, 7, metal}}));
    EXPECT_EQ(rule.anchors().size(), 1U);
    EXPECT_EQ(rule.extract(ExtractedModel(row(1, {silicon, silicon}))), nullptr);
    EXPECT_TRUE(rule.beams().empty());
    EXPECT_EQ(rule.anchors().size(), 2U);
}

TEST(CantileverModelRuleTest, BarOnABlockInAVolumeIsFound)
{
    // A block of silicon to the floor and a bar of oxide at its side, with room all around.
    const EnvelopeList boxes =
        boxesOf({20, 9, 9}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            if (x < 4 && y < 8 && z < 8)
                return 1U;
            return x >= 4 && x < 17 && y >= 3 && y < 5 && z >= 5 && z < 7 ? 3U : 0U;
        });
    expectBeams(boxes, {{4, 3, 5, 13, 2, 2, oxide}});
}

TEST(CantileverModelRuleTest, BarThatIsCutByAnotherBodyIsFoundWithTheWayOfItsBoxes)
{
    // A free plate of metal cuts the bar at x 8 and x 10, and is no tip, having no neighbour.
    const auto rule = [](bool left) {
        return [=](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            const std::uint32_t way = left ? x : 19 - x;
            if (y < 7 && z < 8 && (left ? x < 4 : x >= 16 && x < 20))
                return 1U;
            if (y == 8 && z == 1 && way >= 8 && way < 10)
                return 2U;
            return way >= 4 && way < 17 && y >= 3 && y < 5 && z >= 5 && z < 7 ? 3U : 0U;
        };
    };
    // From the tip at x 10 down: 7 + 2 + 4. From the tip at x 3 up: 7, then 7, then 9 more.
    expectBeams(boxesOf({21, 10, 9}, rule(true)), {{4, 3, 5, 13, 2, 2, oxide}});
    expectBeams(boxesOf({21, 10, 9}, rule(false)), {{3, 3, 5, 23, 2, 2, oxide}});
}

TEST(CantileverModelRuleTest, RandomBoxesFollowTheRule)
{
    unsigned walks = 0;
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        EnvelopeList boxes;
        const auto number = [&](int limit) { return int(random() % unsigned(limit)); };
        for (int i = 0; i < 40; ++i)
            boxes.push_back(box({number(60), number(60), number(60), 1 + number(9), 1 + number(9),
                                 1 + number(9), number(10) == 0 ? number(4) : oxide}));
        // Links lead to later boxes only, so that every walk ends.
        const unsigned favourite = random() % 4;
        for (std::size_t i = 0; i + 1 < boxes.size(); ++i) {
            const unsigned links = random() % 4;
            for (unsigned link = 0; link < links; ++link) {
                const unsigned face = link == 0 ? favourite : random() % 6;
                const std::size_t to = i + 1 + random() % (boxes.size() - i - 1);
                boxes[i]->setNeighbour(face, boxes[to].get());
            }
        }
        const Beams expected = ruleOf(boxes);
        for (const Beam &beam : expected)
            walks += beam.width > 9 ? 1 : 0;
        expectBeams(boxes, expected);
    }
    EXPECT_GT(walks, 100U);
}

TEST(CantileverModelRuleTest, RandomVolumesFollowTheRule)
{
    unsigned found = 0;
    for (std::uint32_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const std::uint32_t dense = 1 + random() % 6;
        const EnvelopeList boxes = boxesOf({7, 6, 4}, [&](auto, auto, auto) -> std::uint32_t {
            return random() % 6 < dense ? 1 + 2 * (random() % 2) : 0;
        });
        const Beams expected = ruleOf(boxes);
        found += unsigned(expected.size());
        expectBeams(boxes, expected);
    }
    EXPECT_GT(found, 100U);
}

} // namespace
