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
    /// What a strip has found out in the first part of a step. The lists by strip are for the
    /// strips that the cells of the atoms lie in.
    struct Findings
    {
        /// Stay in the list of this strip: first those that were in it, in their order, then the
        /// neighbours of what is removed.
        Atoms kept;
        std::size_t keptFromList = 0;
        /// Neighbours that lie to the left and to the right of the strip.
        Atoms left;
        Atoms right;
        std::vector<Atoms> removed;
        std::vector<std::vector<Mass>> masses;
    };

    void clearMaskAtoms();
    /// Of unit cells; the share of one strip in finding the first surface.
    std::size_t shareStart(std::uint32_t strip) const;
    void listSurface();
    void restore(SiAtom &atom);
    bool isOfSilicon(const SiAtom &atom) const;
    bool treatMissingNeighbors(SiAtom &atom, std::uint32_t strip, Atoms &uncovered);
    void remove(SiAtom &atom);
    void handOn(const SiAtom &removed, std::uint32_t strip);
    void commitStrip(std::uint32_t strip);
    /// Of the atom's cell.
    std::uint32_t stripOf(const SiAtom &atom) const;

    Model::Automaton::TotalVolume *m_volume;
    /// Keeps the atoms.
    boost::shared_ptr<Model::Automaton::SiLattice> m_lattice;
    std::uint64_t m_steps;
    StripRun m_strips;
    Model::Automaton::Voxel *m_voxels = nullptr;
    Model::Automaton::Voxel *m_nextVoxels = nullptr;
    /// By strip: mask atoms that its atoms were given.
    std::vector<Model::Automaton::SiLattice::MaskAtoms> m_newAtoms;
    /// By strip: the atoms to examine in the next step, by address.
    std::vector<Atoms> m_surfaceAtoms;
    std::vector<Findings> m_findings;
    /// By share of the unit cells, in the order of the lattice.
    std::vector<Atoms> m_candidates;
};

} // namespace Core::Operations
