#include "Model/Automaton/SiAtom.h"

#include "Model/Automaton/SiCell.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <utility>
#include <vector>

using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using Util::Vector3D;

namespace {

using Atoms = std::vector<std::unique_ptr<SiAtom>>;
using Counts = std::pair<std::uint32_t, std::uint32_t>;

Atoms makeAtoms(std::size_t count)
{
    Atoms atoms;
    for (std::size_t i = 0; i < count; ++i)
        atoms.push_back(std::make_unique<SiAtom>());
    return atoms;
}

/// One atom with four neighbours, each with three more: atoms[0] is the middle, 1 + d its
/// neighbour at d, and 5 + 3 * d to 7 + 3 * d the others of that.
Atoms makeTwoShells()
{
    Atoms atoms = makeAtoms(17);
    for (unsigned d = 0; d < 4; ++d) {
        SiAtom &neighbour = *atoms[1 + d];
        atoms[0]->linkTo(neighbour, d);
        unsigned next = 5 + 3 * d;
        for (unsigned e = 0; e < 4; ++e)
            if (e != 3 - d)
                neighbour.linkTo(*atoms[next++], e);
    }
    return atoms;
}

/// Gives the atom a bond wherever it has none.
void completeBonds(SiAtom &atom, Atoms &more)
{
    for (unsigned d = 0; d < 4; ++d)
        if (atom.link(d) == nullptr) {
            more.push_back(std::make_unique<SiAtom>());
            atom.linkTo(*more.back(), d);
        }
}

Counts firstCounts(const SiAtom &atom)
{
    Counts counts(77, 78);
    atom.firstNeighbourCounts(counts.first, counts.second);
    return counts;
}

Counts secondCounts(const SiAtom &atom)
{
    Counts counts(77, 78);
    atom.secondNeighbourCounts(counts.first, counts.second);
    return counts;
}

std::uint32_t goodLinks(const SiAtom &atom)
{
    std::uint32_t count = 0;
    for (unsigned d = 0; d < 4; ++d)
        if (atom.link(d) != nullptr && atom.link(d)->state() != 0)
            ++count;
    return count;
}

std::uint32_t bondsByRule(const SiAtom &atom)
{
    return atom.state() == 3 ? 4 : goodLinks(atom);
}

std::uint32_t secondByRule(const SiAtom &atom)
{
    std::uint32_t sum = 0;
    for (unsigned d = 0; d < 4; ++d) {
        const SiAtom *other = atom.link(d);
        if (other != nullptr && other->state() == 1)
            sum += bondsByRule(*other) - 1;
        else if (other != nullptr && other->state() == 3)
            sum += 3;
    }
    return sum;
}

void countByRule(const SiAtom &atom, Counts &counts)
{
    if (atom.state() == 3 || goodLinks(atom) == 4)
        ++counts.second;
    else
        ++counts.first;
}

Counts firstCountsByRule(const SiAtom &atom)
{
    Counts counts(0, 0);
    for (unsigned d = 0; d < 4; ++d)
        if (atom.link(d) != nullptr)
            countByRule(*atom.link(d), counts);
    return counts;
}

Counts secondCountsByRule(const SiAtom &atom)
{
    Counts counts(0, 0);
    for (unsigned d = 0; d < 4; ++d) {
        const SiAtom *first = atom.link(d);
        if (first == nullptr)
            continue;
        for (unsigned e = 0; e < 4; ++e) {
            const SiAtom *second = e == 3 - d ? nullptr : first->link(e);
            if (second != nullptr && second->state() != 0)
                countByRule(*second, counts);
        }
    }
    return counts;
}

} // namespace

TEST(SiAtomTest, StartsActiveOutsideTheGridAndUnbonded)
{
    SiCell cell(Vector3D(0, 0, 0));
    const SiAtom atom(Vector3D(1, -2, 3.5), &cell);
    EXPECT_EQ(atom.state(), 1U);
    EXPECT_EQ(atom.cellIndex(), -1);
    EXPECT_EQ(atom.owner(), &cell);
    EXPECT_EQ(atom.position()[0], 1);
    EXPECT_EQ(atom.position()[1], -2);
    EXPECT_EQ(atom.position()[2], 3.5);
    for (unsigned d = 0; d < 4; ++d)
        EXPECT_EQ(atom.link(d), nullptr);
}

TEST(SiAtomTest, MaskStartsInStateThree)
{
    const SiAtom mask(Vector3D(1, 2, 3), nullptr, true);
    EXPECT_EQ(mask.state(), 3U);
    EXPECT_EQ(mask.cellIndex(), -1);
    EXPECT_EQ(mask.owner(), nullptr);
    for (unsigned d = 0; d < 4; ++d)
        EXPECT_EQ(mask.link(d), nullptr);
}

TEST(SiAtomTest, BondAtAPositionIsTheOthersAtThreeMinusIt)
{
    for (unsigned d = 0; d < 4; ++d) {
        SCOPED_TRACE(d);
        SiAtom a;
        SiAtom b;
        a.linkTo(b, d);
        for (unsigned e = 0; e < 4; ++e) {
            EXPECT_EQ(a.link(e), e == d ? &b : nullptr);
            EXPECT_EQ(b.link(e), e == 3 - d ? &a : nullptr);
        }
    }
}

TEST(SiAtomTest, PositionAboveThreeBondsNothing)
{
    for (const unsigned position : {4U, 5U, 7U, ~0U}) {
        SCOPED_TRACE(position);
        SiAtom a;
        SiAtom b;
        a.linkTo(b, position);
        for (unsigned e = 0; e < 4; ++e) {
            EXPECT_EQ(a.link(e), nullptr);
            EXPECT_EQ(b.link(e), nullptr);
        }
    }
}

TEST(SiAtomTest, BondsAreThoseToAtomsThatAreNotRemoved)
{
    SiAtom atom;
    EXPECT_EQ(atom.bondCount(), 0U);
    Atoms others = makeAtoms(4);
    for (unsigned d = 0; d < 4; ++d) {
        atom.linkTo(*others[d], d);
        EXPECT_EQ(atom.bondCount(), d + 1);
    }
    others[2]->setState(3);
    EXPECT_EQ(atom.bondCount(), 4U);
    others[0]->setState(0);
    EXPECT_EQ(atom.bondCount(), 3U);
    others[2]->setState(0);
    EXPECT_EQ(atom.bondCount(), 2U);
    atom.setState(0);
    EXPECT_EQ(atom.bondCount(), 2U);
}

TEST(SiAtomTest, MaskHasFourBondsWhateverItIsLinkedTo)
{
    SiAtom mask(Vector3D(), nullptr, true);
    EXPECT_EQ(mask.bondCount(), 4U);
    SiAtom removed;
    removed.setState(0);
    mask.linkTo(removed, 1);
    EXPECT_EQ(mask.bondCount(), 4U);
}

TEST(SiAtomTest, SecondNeighboursAreTheBondsOfNeighboursWithoutTheBondBack)
{
    const Atoms atoms = makeTwoShells();
    EXPECT_EQ(atoms[0]->secondNeighbourCount(), 12U);
    atoms[5]->setState(0);
    EXPECT_EQ(atoms[0]->secondNeighbourCount(), 11U);
    atoms[6]->setState(3);
    EXPECT_EQ(atoms[0]->secondNeighbourCount(), 11U);
    // A mask counts 3 and a removed one nothing, whatever lies behind.
    atoms[1]->setState(3);
    EXPECT_EQ(atoms[0]->secondNeighbourCount(), 12U);
    atoms[2]->setState(0);
    EXPECT_EQ(atoms[0]->secondNeighbourCount(), 9U);
    EXPECT_EQ(SiAtom().secondNeighbourCount(), 0U);
}

TEST(SiAtomTest, AtomOfA111PlaneHasNineSecondNeighbours)
{
    const Atoms atoms = makeTwoShells();
    atoms[4]->setState(0);
    EXPECT_EQ(atoms[0]->bondCount(), 3U);
    EXPECT_EQ(atoms[0]->secondNeighbourCount(), 9U);
    atoms[5]->setState(0);
    EXPECT_EQ(atoms[0]->secondNeighbourCount(), 8U);
}

TEST(SiAtomTest, FirstNeighboursWithFourGoodBondsAreBulk)
{
    const Atoms atoms = makeTwoShells();
    EXPECT_EQ(firstCounts(*atoms[0]), Counts(0, 4));
    atoms[5]->setState(3);
    EXPECT_EQ(firstCounts(*atoms[0]), Counts(0, 4));
    atoms[5]->setState(0);
    EXPECT_EQ(firstCounts(*atoms[0]), Counts(1, 3));
    atoms[8]->setState(0);
    atoms[9]->setState(0);
    EXPECT_EQ(firstCounts(*atoms[0]), Counts(2, 2));
    EXPECT_EQ(firstCounts(SiAtom()), Counts(0, 0));
}

TEST(SiAtomTest, MaskNeighbourIsBulkWithoutBondsOfItsOwn)
{
    SiAtom atom;
    SiAtom mask(Vector3D(), nullptr, true);
    SiAtom active;
    atom.linkTo(mask, 0);
    atom.linkTo(active, 2);
    EXPECT_EQ(firstCounts(atom), Counts(1, 1));
}

TEST(SiAtomTest, RemovedNeighbourStaysCountedByItsOwnBonds)
{
    const Atoms atoms = makeTwoShells();
    atoms[1]->setState(0);
    EXPECT_EQ(firstCounts(*atoms[0]), Counts(0, 4));
    atoms[6]->setState(0);
    EXPECT_EQ(firstCounts(*atoms[0]), Counts(1, 3));
}

TEST(SiAtomTest, FirstNeighboursAreAsManyAsThereAreLinks)
{
    for (unsigned links = 0; links <= 4; ++links) {
        SiAtom atom;
        Atoms others = makeAtoms(4);
        for (unsigned d = 0; d < links; ++d) {
            others[d]->setState(d % 2 == 0 ? 0 : 1);
            atom.linkTo(*others[d], d);
        }
        EXPECT_EQ(firstCounts(atom), Counts(links, 0));
    }
}

TEST(SiAtomTest, SecondNeighboursAreSurfaceUntilTheirBondsAreFour)
{
    const Atoms atoms = makeTwoShells();
    EXPECT_EQ(secondCounts(*atoms[0]), Counts(12, 0));
    Atoms more;
    completeBonds(*atoms[5], more);
    EXPECT_EQ(secondCounts(*atoms[0]), Counts(11, 1));
    completeBonds(*atoms[16], more);
    EXPECT_EQ(secondCounts(*atoms[0]), Counts(10, 2));
    more.front()->setState(0);
    EXPECT_EQ(secondCounts(*atoms[0]), Counts(11, 1));
}

TEST(SiAtomTest, SecondNeighbourThatIsAMaskIsBulkAndARemovedOneIsNothing)
{
    const Atoms atoms = makeTwoShells();
    atoms[7]->setState(3);
    EXPECT_EQ(secondCounts(*atoms[0]), Counts(11, 1));
    atoms[10]->setState(0);
    EXPECT_EQ(secondCounts(*atoms[0]), Counts(10, 1));
}

TEST(SiAtomTest, MissingSecondLinksCountNothing)
{
    SiAtom atom;
    EXPECT_EQ(secondCounts(atom), Counts(0, 0));
    SiAtom mask(Vector3D(), nullptr, true);
    SiAtom active;
    SiAtom behind;
    atom.linkTo(mask, 0);
    atom.linkTo(active, 3);
    EXPECT_EQ(secondCounts(atom), Counts(0, 0));
    active.linkTo(behind, 1);
    EXPECT_EQ(secondCounts(atom), Counts(1, 0));
}

TEST(SiAtomTest, NeighboursBehindRemovedAndMaskedOnesAreSecondNeighboursToo)
{
    const Atoms atoms = makeTwoShells();
    atoms[1]->setState(0);
    atoms[2]->setState(3);
    EXPECT_EQ(secondCounts(*atoms[0]), Counts(12, 0));
}

TEST(SiAtomTest, SurfaceIsAMissingBondOrOneToARemovedAtom)
{
    EXPECT_TRUE(SiAtom().isSurface());
    const Atoms atoms = makeTwoShells();
    EXPECT_FALSE(atoms[0]->isSurface());
    EXPECT_TRUE(atoms[5]->isSurface());
    atoms[3]->setState(3);
    EXPECT_FALSE(atoms[0]->isSurface());
    for (unsigned d = 0; d < 4; ++d) {
        const std::uint32_t state = atoms[1 + d]->state();
        atoms[1 + d]->setState(0);
        EXPECT_TRUE(atoms[0]->isSurface());
        atoms[1 + d]->setState(state);
        atoms[0]->setLink(d, nullptr);
        EXPECT_TRUE(atoms[0]->isSurface());
        atoms[0]->setLink(d, atoms[1 + d].get());
        EXPECT_FALSE(atoms[0]->isSurface());
    }
}

TEST(SiAtomTest, CountsOfRandomBondsFollowTheRule)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const Atoms atoms = makeAtoms(30);
        const std::uint32_t states[] = {1, 1, 1, 1, 1, 3, 0};
        for (const auto &atom : atoms)
            atom->setState(states[random() % 7]);
        std::set<std::pair<std::size_t, std::size_t>> pairs;
        for (unsigned attempt = 0; attempt < 400; ++attempt) {
            const std::size_t a = random() % atoms.size();
            const std::size_t b = random() % atoms.size();
            const unsigned d = random() % 4;
            if (a == b || atoms[a]->link(d) != nullptr || atoms[b]->link(3 - d) != nullptr ||
                !pairs.insert(std::minmax({a, b})).second)
                continue;
            atoms[a]->linkTo(*atoms[b], d);
        }
        for (std::size_t i = 0; i < atoms.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "atom " << i);
            const SiAtom &atom = *atoms[i];
            EXPECT_EQ(atom.bondCount(), bondsByRule(atom));
            if (atom.state() != 0) {
                EXPECT_EQ(atom.secondNeighbourCount(), secondByRule(atom));
            }
            EXPECT_EQ(firstCounts(atom), firstCountsByRule(atom));
            EXPECT_EQ(secondCounts(atom), secondCountsByRule(atom));
            EXPECT_EQ(atom.isSurface(), goodLinks(atom) < 4);
        }
    }
}
