#include "Core/Operations/SiEtching/AtomisticSiWetEtchingOperation.h"

#include "SiWetEtchSuite.h"

#include <cstddef>
#include <cstdint>
#include <vector>

using Core::Operations::AtomisticSiWetEtchingOperation;

namespace {

// Nothing holds the block. The uppermost of its atoms have no bonds upward, so two at the most, and
// go; so do the lowest: each step takes one plane from above and one from below, and what faces the
// void at the sides. A depth of its height is more than it has.
class AtomisticSiWetEtchingOperationTest
    : public Fakes::SiWetEtchSuite<AtomisticSiWetEtchingOperation>
{
protected:
    AtomisticSiWetEtchingOperationTest() : SiWetEtchSuite("BCA Wet Etch", 28, 4.0, block(2, 2)) {}

    /// The column of cells in the middle, which the sides are too far from.
    static std::vector<std::uint32_t> middle(const Volume &volume)
    {
        const std::vector<std::uint32_t> materials = Support::materialsOf(*volume);
        std::vector<std::uint32_t> column;
        for (std::uint32_t z = 0; z < grid().sizeZ; ++z)
            column.push_back(materials[grid().index(3, 3, z)]);
        return column;
    }
    using Column = std::vector<std::uint32_t>;
};

} // namespace

SI_WET_ETCH_TESTS(AtomisticSiWetEtchingOperationTest)

TEST_F(AtomisticSiWetEtchingOperationTest, UnitOfDepthTakesALayerFromAboveAndOneFromBelow)
{
    run(m_volume, accept(0.75));
    EXPECT_EQ(middle(m_volume), (Column{3, 0, 1, 1, 1, 1, 0, 0}));
    run(m_other, accept(1.0));
    EXPECT_EQ(middle(m_other), (Column{3, 0, 0, 1, 1, 0, 0, 0}));
}

TEST_F(AtomisticSiWetEtchingOperationTest, SecondRunHasTheAtomsThatTheFirstOneLeft)
{
    run(m_volume, accept(1.0));
    const Lattice lattice = m_volume->siLattice();
    const std::size_t cells = lattice->cells().size();
    const auto counts = atomCounts(*m_volume, false);
    EXPECT_EQ(counts[grid().index(3, 3, 5)], 0);
    EXPECT_GT(counts[grid().index(3, 3, 4)], 0);
    run(m_volume, accept(0.0));
    EXPECT_EQ(m_volume->siLattice(), lattice);
    EXPECT_EQ(middle(m_volume), (Column{3, 0, 0, 1, 1, 0, 0, 0}));
    EXPECT_EQ(atomCounts(*m_volume, false)[grid().index(3, 3, 4)], counts[grid().index(3, 3, 4)]);
    run(m_volume, accept(1.0));
    EXPECT_EQ(m_volume->siLattice(), lattice);
    EXPECT_EQ(lattice->cells().size(), cells);
    Fakes::expectMaterials(*m_volume, m_facts.after);
    std::size_t active = 0;
    forEachAtom(lattice, [&](SiAtom &atom) { active += atom.state() == SiAtom::Active; });
    EXPECT_EQ(active, 0U);
}

TEST_F(AtomisticSiWetEtchingOperationTest, MassesAreLeftAlone)
{
    run(m_volume, accept(1.0));
    for (const float mass : masses(*m_volume))
        ASSERT_EQ(mass, 0.0F);
}
