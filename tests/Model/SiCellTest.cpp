#include "Model/Automaton/SiCell.h"

#include "SiLatticeRule.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>

using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using SiLatticeRule::Point;
using Util::Vector3D;

namespace {

void expectNear(const Vector3D &actual, const Point &expected, double tolerance = 1e-9)
{
    for (unsigned axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(actual[axis], expected[axis], tolerance) << "axis " << axis;
}

Point pointOf(const Vector3D &vector)
{
    return {vector[0], vector[1], vector[2]};
}

/// The cell's position and then its atoms'.
std::array<Point, 9> pointsOf(const SiCell &cell)
{
    std::array<Point, 9> points;
    points[0] = pointOf(cell.position());
    for (unsigned rank = 0; rank < 8; ++rank)
        points[1 + rank] = pointOf(cell.atom(rank).position());
    return points;
}

void expectPoints(const SiCell &cell, const std::array<Point, 9> &expected, double tolerance = 1e-9)
{
    expectNear(cell.position(), expected[0], tolerance);
    for (unsigned rank = 0; rank < 8; ++rank) {
        SCOPED_TRACE(testing::Message() << "rank " << rank);
        expectNear(cell.atom(rank).position(), expected[1 + rank], tolerance);
    }
}

} // namespace

TEST(SiCellTest, AtomsStandAtTheBasisByRank)
{
    const SiCell cell(Vector3D(10, -3, 2.5));
    expectNear(cell.position(), {10, -3, 2.5});
    for (unsigned rank = 0; rank < 8; ++rank) {
        SCOPED_TRACE(testing::Message() << "rank " << rank);
        const Point &place = SiLatticeRule::basis[rank];
        EXPECT_EQ(SiCell::basis()[rank], place);
        expectNear(cell.atom(rank).position(), {10 + place[0], -3 + place[1], 2.5 + place[2]});
    }
}

TEST(SiCellTest, AtomsStartActiveAndBelongToTheCell)
{
    const SiCell cell(Vector3D(1, 2, 3));
    for (unsigned rank = 0; rank < 8; ++rank) {
        EXPECT_EQ(cell.atom(rank).state(), 1U);
        EXPECT_EQ(cell.atom(rank).cellIndex(), -1);
        EXPECT_EQ(cell.atom(rank).owner(), &cell);
    }
}

TEST(SiCellTest, BondsInsideAreTheSevenAndNoOthers)
{
    SiCell cell(Vector3D(0, 0, 0));
    std::array<std::array<SiAtom *, 4>, 8> expected{};
    for (const SiLatticeRule::InnerLink &inner : SiLatticeRule::innerLinks) {
        expected[inner.from][inner.position] = &cell.atom(inner.to);
        expected[inner.to][3 - inner.position] = &cell.atom(inner.from);
    }
    for (unsigned rank = 0; rank < 8; ++rank)
        for (unsigned d = 0; d < 4; ++d)
            EXPECT_EQ(cell.atom(rank).link(d), expected[rank][d]) << rank << " at " << d;
}

TEST(SiCellTest, BondsInsidePointInTheDirectionsOfTheirPositions)
{
    const SiCell cell(Vector3D(0, 0, 0));
    unsigned bonds = 0;
    for (unsigned rank = 0; rank < 8; ++rank)
        for (unsigned d = 0; d < 4; ++d) {
            const SiAtom &atom = cell.atom(rank);
            if (atom.link(d) == nullptr)
                continue;
            ++bonds;
            const std::array<int, 3> direction = SiLatticeRule::bondDirection(rank, d);
            for (unsigned axis = 0; axis < 3; ++axis)
                EXPECT_EQ(atom.link(d)->position()[axis] - atom.position()[axis],
                          direction[axis] * 0.25);
        }
    EXPECT_EQ(bonds, 14U);
}

TEST(SiCellTest, SharedAtomsAreThoseOfTheCellAndKeepIt)
{
    auto cell = boost::make_shared<SiCell>(Vector3D(4, 5, 6));
    auto atoms = cell->atoms();
    for (unsigned rank = 0; rank < 8; ++rank)
        EXPECT_EQ(atoms[rank].get(), &cell->atom(rank));
    const boost::weak_ptr<SiCell> watch(cell);
    const boost::shared_ptr<SiAtom> kept = atoms[5];
    for (auto &atom : atoms)
        atom.reset();
    cell.reset();
    EXPECT_FALSE(watch.expired());
    EXPECT_EQ(kept->owner()->rankOf(*kept), 5U);
}

TEST(SiCellTest, RankIsThePlaceInTheCell)
{
    const SiCell cell(Vector3D(0, 0, 0));
    for (unsigned rank = 0; rank < 8; ++rank)
        EXPECT_EQ(cell.rankOf(cell.atom(rank)), rank);
}

TEST(SiCellTest, AtomOfAnotherCellHasNoRank)
{
    const SiCell cells[2] = {SiCell(Vector3D(0, 0, 0)), SiCell(Vector3D(0, 0, 0))};
    for (unsigned rank = 0; rank < 8; ++rank) {
        EXPECT_EQ(cells[0].rankOf(cells[1].atom(rank)), ~std::uint32_t{0});
        EXPECT_EQ(cells[1].rankOf(cells[0].atom(rank)), ~std::uint32_t{0});
    }
    EXPECT_EQ(cells[0].rankOf(SiAtom()), ~std::uint32_t{0});
}

TEST(SiCellTest, TranslateMovesTheCellAndItsAtoms)
{
    SiCell cell(Vector3D(1, 2, 3));
    std::array<Point, 9> expected = pointsOf(cell);
    for (Point &point : expected)
        point = {point[0] - 4.5, point[1] + 10, point[2] + 0.125};
    cell.translate(Vector3D(-4.5, 10, 0.125));
    expectPoints(cell, expected);
}

TEST(SiCellTest, RotateTurnsAboutEachAxisOfTheWorld)
{
    for (const double angle : {30.0, 45.0, -70.0, 180.0, 400.0}) {
        SCOPED_TRACE(testing::Message() << angle << " degrees");
        SiCell aboutX(Vector3D(3, -4, 5));
        SiCell aboutY(Vector3D(3, -4, 5));
        SiCell aboutZ(Vector3D(3, -4, 5));
        std::array<Point, 9> turnedX = pointsOf(aboutX);
        std::array<Point, 9> turnedY = turnedX;
        std::array<Point, 9> turnedZ = turnedX;
        for (unsigned i = 0; i < 9; ++i) {
            turnedX[i] = SiLatticeRule::turnedAboutX(turnedX[i], angle);
            turnedY[i] = SiLatticeRule::turnedAboutY(turnedY[i], angle);
            turnedZ[i] = SiLatticeRule::turnedAboutZ(turnedZ[i], angle);
        }
        aboutX.rotate(angle, 0, 0);
        aboutY.rotate(0, angle, 0);
        aboutZ.rotate(0, 0, angle);
        expectPoints(aboutX, turnedX);
        expectPoints(aboutY, turnedY);
        expectPoints(aboutZ, turnedZ);
    }
}

TEST(SiCellTest, QuarterTurnsGoFromYToZFromZToXAndFromXToY)
{
    SiCell aboutX(Vector3D(1, 2, 3));
    SiCell aboutY(Vector3D(1, 2, 3));
    SiCell aboutZ(Vector3D(1, 2, 3));
    aboutX.rotate(90, 0, 0);
    aboutY.rotate(0, 90, 0);
    aboutZ.rotate(0, 0, 90);
    expectNear(aboutX.position(), {1, -3, 2}, 1e-6);
    expectNear(aboutY.position(), {3, 2, -1}, 1e-6);
    expectNear(aboutZ.position(), {-2, 1, 3}, 1e-6);
}

TEST(SiCellTest, RotateTurnsAboutXFirstThenYThenZ)
{
    SiCell cell(Vector3D(3, -4, 5));
    std::array<Point, 9> expected = pointsOf(cell);
    for (Point &point : expected)
        point = SiLatticeRule::turnedAboutZ(
            SiLatticeRule::turnedAboutY(SiLatticeRule::turnedAboutX(point, 20), 50), -110);
    cell.rotate(20, 50, -110);
    expectPoints(cell, expected);
}

TEST(SiCellTest, AnglesOfAMillionthOfADegreeTurnNothing)
{
    SiCell cell(Vector3D(1e6, 2e6, 3e6));
    const std::array<Point, 9> before = pointsOf(cell);
    cell.rotate(1e-6, -1e-6, 1e-6);
    cell.rotate(-1e-6, 0.5e-6, 0);
    EXPECT_EQ(pointsOf(cell), before);
}

TEST(SiCellTest, AnglesAboveAMillionthOfADegreeTurn)
{
    for (const double angle : {1.5e-6, -1.5e-6}) {
        SiCell cell(Vector3D(1e6, 2e6, 3e6));
        const Point expected = SiLatticeRule::turnedAboutZ({1e6, 2e6, 3e6}, angle);
        ASSERT_GT(std::abs(expected[0] - 1e6), 0.01);
        cell.rotate(0, 0, angle);
        expectNear(cell.position(), expected, 1e-6);
    }
}

TEST(SiCellTest, DegreesTurnToRadiansInSinglePrecision)
{
    SiCell cell(Vector3D(1e6, 0, 0));
    const Point expected = SiLatticeRule::turnedAboutZ({1e6, 0, 0}, 90);
    // In double it would be some 1e-10.
    ASSERT_GT(std::abs(expected[0]), 0.001);
    cell.rotate(0, 0, 90);
    expectNear(cell.position(), expected, 1e-6);
}

TEST(SiCellTest, TurningKeepsTheBonds)
{
    SiCell cell(Vector3D(1, 2, 3));
    cell.rotate(10, 20, 30);
    cell.translate(Vector3D(5, 5, 5));
    for (const SiLatticeRule::InnerLink &inner : SiLatticeRule::innerLinks) {
        EXPECT_EQ(cell.atom(inner.from).link(inner.position), &cell.atom(inner.to));
        EXPECT_EQ(cell.atom(inner.to).link(3 - inner.position), &cell.atom(inner.from));
    }
}
