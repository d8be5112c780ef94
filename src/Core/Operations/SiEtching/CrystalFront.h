#pragma once

#include "Core/Operations/CellularProcess/StripRun.h"
#include "Model/Automaton/SiLattice.h"

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
class Voxel;
} // namespace Model::Automaton

namespace Core::Operations {

/// What the wet etchings of the silicon crystal share: strips with a list of surface atoms each,
/// the atoms that hold what lies at missing bonds, and the removal of atoms from their cells.
///
/// A step has two parts with a barrier after each. First every strip examines its atoms and writes
/// nothing that another could read; then each atom is changed by the strip that its cell lies in.
/// So all decisions of a step see the same atoms, and what a step does depends on no timing.
class CrystalFront final
{
public:
    using SiAtom = Model::Automaton::SiAtom;
    using StripFunction = boost::function<void(std::uint32_t)>;

    /// As for AtomicStructureSimpleSiWetEtch.
    CrystalFront(Model::Automaton::TotalVolume *volume, double depth);
    CrystalFront(const CrystalFront &) = delete;
    CrystalFront &operator=(const CrystalFront &) = delete;

    /// The whole run, with both arrays locked: `initialize` and, for each step, `step` are called
    /// once for every strip, from pool threads.
    void run(const StripFunction &initialize, const StripFunction &step);

    /// Within `initialize`. Finds the atoms of silicon cells that may lie on the surface or have
    /// to be brought back; calls `prepare` with every atom of a silicon cell. The unit cells are
    /// shared out among the strips for this, each is seen once.
    template <typename Prepare>
    void initializeStrip(std::uint32_t strip, Prepare prepare);

    /// Within `step`. Calls `removes(atom, mass)` with every listed atom that is active: whether
    /// it is removed; what it leaves in `mass`, which starts as the atom's own, becomes the
    /// atom's when the step is over.
    template <typename Removes>
    void stepStrip(std::uint32_t strip, Removes removes);

private:
    using Atoms = std::vector<SiAtom *>;
    struct Mass
    {
        SiAtom *atom;
        float mass;
    };
    /// What a strip has found out in the first part of a step. Neighbours go by the column that
    /// their place in the world stands for, changes by strip to where the atoms' cells lie: the
    /// two agree only where the columns of the volume are those of the world.
    struct Findings
    {
        /// Stay in the list of this strip, by address.
        Atoms kept;
        /// Neighbours of removed atoms: in this strip, to the left, and to the right of it.
        Atoms neighbors;
        Atoms left;
        Atoms right;
        std::vector<Atoms> removed;
        std::vector<std::vector<Mass>> masses;
    };

    void runPhase(const StripFunction &function) const;
    void clearMaskAtoms();
    /// Where the share of a strip in the unit cells begins.
    std::size_t shareStart(std::uint32_t strip) const;
    SiAtom &atomAt(std::size_t place) const;
    bool isOfSilicon(const SiAtom &atom) const;
    void restore(SiAtom &atom);
    void findSurface();
    bool treatMissingNeighbors(SiAtom &atom, std::uint32_t thread, Atoms &gone);
    bool treatMissingNeighbor(SiAtom &atom, unsigned position, std::uint32_t thread);
    /// By address, without duplicates, and logs how many there are.
    void settleList(Atoms &atoms, std::uint32_t strip) const;
    void openStep(std::uint32_t strip);
    void handOn(const SiAtom &removed, std::uint32_t strip);
    void commitStrip(std::uint32_t strip);
    void remove(SiAtom &atom);
    /// The strip that the atom's cell lies in.
    std::uint32_t stripOf(const SiAtom &atom) const;

    Model::Automaton::TotalVolume *m_volume;
    /// Kept for the run, whatever the volume gets meanwhile: it owns the atoms of all lists.
    boost::shared_ptr<Model::Automaton::SiLattice> m_lattice;
    std::uint64_t m_steps;
    StripRun m_strips;
    std::uint32_t m_cellsInLayer;
    Model::Automaton::Voxel *m_voxels = nullptr;
    Model::Automaton::Voxel *m_nextVoxels = nullptr;
    /// By strip: mask atoms that its atoms were given.
    std::vector<Model::Automaton::SiLattice::MaskAtoms> m_newAtoms;
    /// By strip: the atoms to examine in the next step, by address.
    std::vector<Atoms> m_surfaceAtoms;
    std::vector<Findings> m_findings;
    /// By share of the unit cells: places in the lattice of atoms that may lie on the surface or
    /// have to be brought back, ascending.
    std::vector<std::vector<std::size_t>> m_candidates;
};

template <typename Prepare>
void CrystalFront::initializeStrip(std::uint32_t strip, Prepare prepare)
{
    const std::size_t end = shareStart(strip + 1);
    for (std::size_t cell = shareStart(strip); cell < end; ++cell) {
        Model::Automaton::SiCell &atoms = *m_lattice->cells()[cell].second;
        for (unsigned rank = 0; rank < Model::Automaton::SiCell::Atoms; ++rank) {
            SiAtom &atom = atoms.atom(rank);
            if (!isOfSilicon(atom))
                continue;
            prepare(atom);
            if (atom.state() != SiAtom::Active || atom.bondCount() < SiAtom::Bonds)
                m_candidates[strip].push_back(cell * Model::Automaton::SiCell::Atoms + rank);
        }
    }
}

template <typename Removes>
void CrystalFront::stepStrip(std::uint32_t strip, Removes removes)
{
    openStep(strip);
    Findings &findings = m_findings[strip];
    for (SiAtom *atom : m_surfaceAtoms[strip]) {
        if (atom->state() != SiAtom::Active)
            continue;
        float mass = atom->mass();
        const bool isRemoved = removes(static_cast<const SiAtom &>(*atom), mass);
        if (mass != atom->mass())
            findings.masses[stripOf(*atom)].push_back({atom, mass});
        if (isRemoved) {
            findings.removed[stripOf(*atom)].push_back(atom);
            handOn(*atom, strip);
        } else {
            findings.kept.push_back(atom);
        }
    }
}

} // namespace Core::Operations
