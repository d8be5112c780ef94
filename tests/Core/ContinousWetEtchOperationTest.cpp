#include "Core/Operations/SiEtching/ContinousWetEtchOperation.h"

#include "SiWetEtchSuite.h"

#include <algorithm>
#include <cstddef>
#include <vector>

using Core::Operations::ContinousWetEtchOperation;

namespace {

// One step changes no cell: at the highest rate, 7, it takes 0.7 of an atom.
class ContinousWetEtchOperationTest : public Fakes::SiWetEtchSuite<ContinousWetEtchOperation>
{
protected:
    ContinousWetEtchOperationTest() : SiWetEtchSuite("Continuous Wet Etch", 29, 0.25, block()) {}

    static bool isSilicon(const SiAtom &atom, const Volume &volume)
    {
        return atom.cellIndex() >= 0 &&
               Support::materialsOf(*volume)[std::size_t(atom.cellIndex())] == 1;
    }
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

// Along the edge of a step that runs along x lies a row of atoms that lack one bond, with one of
// three neighbours, and two of theirs, at the surface: of rate 3.932. All others stay as they are.
TEST_F(ContinousWetEtchOperationTest, EdgeOfAStepLosesItsMassInThreeSteps)
{
    const Support::Grid cells{8, 8, 6};
    const Volume volume = Support::makeVolume(
        cells, [](auto, auto y, auto z) { return z < 2 || (z < 4 && y < 4) ? 1U : 0U; });
    const auto expectMasses = [&](double depth, float left) {
        run(volume, accept(depth));
        std::vector<float> found = masses(*volume);
        std::sort(found.begin(), found.end());
        EXPECT_EQ(std::count(found.begin(), found.end(), left), 10) << depth;
        found.erase(std::remove(found.begin(), found.end(), left), found.end());
        EXPECT_EQ(std::count(found.begin(), found.end(), 1.0F), std::ptrdiff_t(found.size()));
    };
    const auto once = static_cast<float>(1.0 - 3.932 * 0.1);
    expectMasses(0.25, once);
    // The atoms start anew in each run.
    expectMasses(0.5, static_cast<float>(static_cast<double>(once) - 3.932 * 0.1));
    expectMasses(0.75, 0.0F);
    std::ptrdiff_t removed = 0;
    forEachAtom(volume->siLattice(), [&](SiAtom &atom) {
        removed +=
            atom.state() == SiAtom::Removed && atom.mass() == 0.0F && isSilicon(atom, volume);
    });
    EXPECT_EQ(removed, 10);
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
