#include "Core/Operations/SiEtching/ContinousWetEtchOperation.h"

#include "SiWetEtchSuite.h"

#include <algorithm>
#include <vector>

using Core::Operations::ContinousWetEtchOperation;

namespace {

// One step changes no cell: at the highest rate, 7, it takes 0.7 of an atom.
class ContinousWetEtchOperationTest : public Fakes::SiWetEtchSuite<ContinousWetEtchOperation>
{
protected:
    ContinousWetEtchOperationTest() : SiWetEtchSuite("Continuous Wet Etch", 29, 0.25, block()) {}
};

} // namespace

SI_WET_ETCH_TESTS(ContinousWetEtchOperationTest)

TEST_F(ContinousWetEtchOperationTest, RunOfNoStepGivesEachAtomOfSiliconItsMass)
{
    run(m_volume, accept(0.0));
    const std::vector<float> found = masses(*m_volume);
    EXPECT_GT(found.size(), 500U);
    for (const float mass : found)
        ASSERT_EQ(mass, 1.0F);
}

TEST_F(ContinousWetEtchOperationTest, StepTakesMassFromAtomsAtTheSurfaceAlone)
{
    run(m_volume, accept(0.25));
    const std::vector<float> found = masses(*m_volume);
    const auto [least, most] = std::minmax_element(found.begin(), found.end());
    EXPECT_LT(*least, 1.0F);
    EXPECT_GE(*least, 0.3F);
    EXPECT_EQ(*most, 1.0F);
    EXPECT_GT(std::count(found.begin(), found.end(), 1.0F), 250);
}

TEST_F(ContinousWetEtchOperationTest, SecondRunGivesAllAtomsTheirMassAgain)
{
    run(m_volume, accept(0.25));
    const Lattice lattice = m_volume->siLattice();
    forEachAtom(lattice, [](SiAtom &atom) { atom.setMass(0.5F); });
    run(m_volume, accept(0.0));
    EXPECT_EQ(m_volume->siLattice(), lattice);
    for (const float mass : masses(*m_volume))
        ASSERT_EQ(mass, 1.0F);
}
