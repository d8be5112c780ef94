#include "Model/Automaton/MarchingCubeTables.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

using Tables = Model::Automaton::MarchingCubeTables;

namespace {

/// In half cells, so that midpoints are whole.
using Point = std::array<int, 3>;
using Line = std::pair<Point, Point>;

std::vector<std::array<unsigned, 3>> trianglesOf(unsigned number)
{
    std::vector<std::array<unsigned, 3>> triangles;
    const auto &row = Tables::triangles[number];
    for (std::size_t i = 0; row[i] >= 0; i += 3)
        triangles.push_back({static_cast<unsigned>(row[i]), static_cast<unsigned>(row[i + 1]),
                             static_cast<unsigned>(row[i + 2])});
    return triangles;
}

Point midpoint(unsigned edge)
{
    const auto &first = Tables::corners[Tables::edgeCorners[edge][0]];
    const auto &second = Tables::corners[Tables::edgeCorners[edge][1]];
    return {first[0] + second[0], first[1] + second[1], first[2] + second[2]};
}

/// How often each directed line of a set of triangles is left over after it has met its reverse.
class OpenLines
{
public:
    void add(const Line &line)
    {
        const auto reverse = m_counts.find({line.second, line.first});
        if (reverse == m_counts.end())
            ++m_counts[line];
        else if (--reverse->second == 0)
            m_counts.erase(reverse);
    }
    const std::map<Line, int> &counts() const { return m_counts; }

private:
    std::map<Line, int> m_counts;
};

std::set<Line> openLinesOf(unsigned number)
{
    OpenLines lines;
    for (const auto &triangle : trianglesOf(number))
        for (unsigned i = 0; i < 3; ++i)
            lines.add({midpoint(triangle[i]), midpoint(triangle[(i + 1) % 3])});
    std::set<Line> result;
    for (const auto &line : lines.counts())
        result.insert(line.first);
    return result;
}

/// The open lines in one side of the cube, along `axis`, with the place along it left out.
std::set<Line> linesInSide(unsigned number, unsigned axis, int place)
{
    std::set<Line> result;
    for (Line line : openLinesOf(number)) {
        if (line.first[axis] != place || line.second[axis] != place)
            continue;
        line.first[axis] = 0;
        line.second[axis] = 0;
        result.insert(line);
    }
    return result;
}

/// The corners of one side as bits, by their place in it.
unsigned patternOfSide(unsigned number, unsigned axis, unsigned place)
{
    unsigned pattern = 0;
    for (unsigned corner = 0; corner < 8; ++corner) {
        const auto &offset = Tables::corners[corner];
        if (offset[axis] == place && (number >> corner & 1))
            pattern |= 1u << (2 * offset[(axis + 1) % 3] + offset[(axis + 2) % 3]);
    }
    return pattern;
}

/// All triangles of cubes over a field of corners, `isFilled` for 0 to side - 1 on each axis.
struct Body
{
    OpenLines lines;
    /// Six times the volume, in half cells, that the triangles enclose if they look outward.
    long volume = 0;
};

Body bodyOf(unsigned side, const std::function<bool(unsigned, unsigned, unsigned)> &isFilled)
{
    Body body;
    for (unsigned x = 0; x + 1 < side; ++x)
        for (unsigned y = 0; y + 1 < side; ++y)
            for (unsigned z = 0; z + 1 < side; ++z) {
                unsigned number = 0;
                for (unsigned corner = 0; corner < 8; ++corner) {
                    const auto &offset = Tables::corners[corner];
                    if (isFilled(x + offset[0], y + offset[1], z + offset[2]))
                        number |= 1u << corner;
                }
                for (const auto &triangle : trianglesOf(number)) {
                    std::array<Point, 3> p;
                    for (unsigned i = 0; i < 3; ++i) {
                        const Point middle = midpoint(triangle[i]);
                        p[i] = {static_cast<int>(2 * x) + middle[0],
                                static_cast<int>(2 * y) + middle[1],
                                static_cast<int>(2 * z) + middle[2]};
                    }
                    for (unsigned i = 0; i < 3; ++i) {
                        body.lines.add({p[i], p[(i + 1) % 3]});
                        const Point &a = p[0];
                        const Point &b = p[1];
                        const Point &c = p[2];
                        const unsigned j = (i + 1) % 3;
                        const unsigned k = (i + 2) % 3;
                        body.volume += long{a[i]} * (b[j] * c[k] - b[k] * c[j]);
                    }
                }
            }
    return body;
}

/// The bit of a case at an offset of 0 or 1 on each axis.
bool isFilledIn(unsigned number, unsigned x, unsigned y, unsigned z)
{
    for (unsigned corner = 0; corner < 8; ++corner) {
        const auto &offset = Tables::corners[corner];
        if (offset[0] == x && offset[1] == y && offset[2] == z)
            return number >> corner & 1;
    }
    return false;
}

} // namespace

TEST(MarchingCubeTablesTest, EdgeMaskNamesTheEdgesBetweenFilledAndVoid)
{
    EXPECT_EQ(Tables::edges[0x00], 0x000);
    EXPECT_EQ(Tables::edges[0x01], 0x109);
    EXPECT_EQ(Tables::edges[0x02], 0x203);
    EXPECT_EQ(Tables::edges[0x0f], 0xf00);
    EXPECT_EQ(Tables::edges[0x80], 0x8c0);
    EXPECT_EQ(Tables::edges[0xff], 0x000);
    for (unsigned number = 0; number < Tables::Cases; ++number)
        for (unsigned edge = 0; edge < 12; ++edge) {
            const auto &ends = Tables::edgeCorners[edge];
            const bool differs = (number >> ends[0] & 1) != (number >> ends[1] & 1);
            EXPECT_EQ(Tables::edges[number] >> edge & 1, differs ? 1 : 0)
                << "case " << number << " edge " << edge;
        }
}

TEST(MarchingCubeTablesTest, EdgesJoinCornersOneCellApart)
{
    for (const auto &ends : Tables::edgeCorners) {
        int distance = 0;
        for (unsigned axis = 0; axis < 3; ++axis)
            distance += std::abs(Tables::corners[ends[0]][axis] - Tables::corners[ends[1]][axis]);
        EXPECT_EQ(distance, 1);
    }
}

TEST(MarchingCubeTablesTest, RowUsesTheEdgesOfItsMaskAndNoOther)
{
    for (unsigned number = 0; number < Tables::Cases; ++number) {
        unsigned used = 0;
        std::size_t length = 0;
        for (const auto &triangle : trianglesOf(number)) {
            EXPECT_NE(triangle[0], triangle[1]) << "case " << number;
            EXPECT_NE(triangle[1], triangle[2]) << "case " << number;
            EXPECT_NE(triangle[2], triangle[0]) << "case " << number;
            for (const unsigned edge : triangle)
                used |= 1u << edge;
            length += 3;
        }
        EXPECT_EQ(used, Tables::edges[number]) << "case " << number;
        for (; length < 16; ++length)
            EXPECT_EQ(Tables::triangles[number][length], -1) << "case " << number;
    }
}

TEST(MarchingCubeTablesTest, OpenLinesLieInTheSidesOfTheCube)
{
    for (unsigned number = 0; number < Tables::Cases; ++number)
        for (const Line &line : openLinesOf(number)) {
            bool isInSide = false;
            for (unsigned axis = 0; axis < 3; ++axis)
                isInSide =
                    isInSide || (line.first[axis] == line.second[axis] && line.first[axis] != 1);
            EXPECT_TRUE(isInSide) << "case " << number;
        }
}

TEST(MarchingCubeTablesTest, CubesThatShareASideMeetInIt)
{
    for (unsigned axis = 0; axis < 3; ++axis)
        for (unsigned lower = 0; lower < Tables::Cases; ++lower)
            for (unsigned upper = 0; upper < Tables::Cases; ++upper) {
                if (patternOfSide(lower, axis, 1) != patternOfSide(upper, axis, 0))
                    continue;
                std::set<Line> reversed;
                for (const Line &line : linesInSide(upper, axis, 0))
                    reversed.insert({line.second, line.first});
                ASSERT_EQ(linesInSide(lower, axis, 2), reversed)
                    << "axis " << axis << ", cases " << lower << " and " << upper;
            }
}

TEST(MarchingCubeTablesTest, EveryCaseInVoidIsClosedAndLooksOutward)
{
    for (unsigned number = 1; number < Tables::Cases; ++number) {
        const Body body = bodyOf(4, [&](unsigned x, unsigned y, unsigned z) {
            return x % 3 != 0 && y % 3 != 0 && z % 3 != 0 &&
                   isFilledIn(number, x - 1, y - 1, z - 1);
        });
        EXPECT_TRUE(body.lines.counts().empty()) << "case " << number;
        EXPECT_GT(body.volume, 0) << "case " << number;
    }
}

TEST(MarchingCubeTablesTest, EveryCaseInASolidIsAClosedHoleThatTakesFromIt)
{
    const auto isInside = [](unsigned x, unsigned y, unsigned z) {
        return x % 5 != 0 && y % 5 != 0 && z % 5 != 0;
    };
    const long solid = bodyOf(6, isInside).volume;
    for (unsigned number = 0; number < Tables::Cases - 1; ++number) {
        const Body body = bodyOf(6, [&](unsigned x, unsigned y, unsigned z) {
            const bool isCore = x / 2 == 1 && y / 2 == 1 && z / 2 == 1;
            return isInside(x, y, z) && (!isCore || isFilledIn(number, x - 2, y - 2, z - 2));
        });
        EXPECT_TRUE(body.lines.counts().empty()) << "case " << number;
        EXPECT_LT(body.volume, solid) << "case " << number;
        EXPECT_GT(body.volume, 0) << "case " << number;
    }
}
