#include "Core/Operations/SiEtching/CrystalFront.h"

#include "Core/Operations/CellularProcess/TakenVoxels.h"
#include "Core/Operations/SiEtching/MissingNeighbor.h"
#include "Model/Automaton/TotalVolume.h"

#include <QDebug>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <set>
#include <unordered_map>

namespace Core::Operations {

using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using Model::Automaton::SiLattice;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

namespace {

using ByAddress = std::less<SiAtom *>;

/// Steps in one unit of the crystal: its (100) planes lie a quarter apart.
constexpr double PlanesInUnit = 4.0;

std::uint64_t stepsFor(double depth)
{
    const double steps = std::floor(depth * PlanesInUnit + 0.5);
    // Also false for what is not a number.
    if (!(steps > 0.0))
        return 0;
    constexpr double Most = 9e18;
    return static_cast<std::uint64_t>(std::min(steps, Most));
}

/// Tells where in its lattice an atom stands. The table is made when it is first asked.
class LatticePlaces final
{
public:
    explicit LatticePlaces(const SiLattice &lattice) : m_lattice(lattice) {}

    std::size_t of(const SiAtom &atom)
    {
        if (m_cells.empty())
            for (std::size_t cell = 0; cell < m_lattice.cells().size(); ++cell)
                m_cells.emplace(m_lattice.cells()[cell].second.get(), cell);
        return m_cells.at(atom.owner()) * SiCell::Atoms + atom.owner()->rankOf(atom);
    }

private:
    const SiLattice &m_lattice;
    std::unordered_map<const SiCell *, std::size_t> m_cells;
};

} // namespace

CrystalFront::CrystalFront(TotalVolume *volume, double depth)
    : m_volume(volume),
      m_lattice(volume->siLattice()),
      m_steps(stepsFor(depth)),
      // Only a strip without any layer is too narrow.
      m_strips(StripRun::layersOf(*volume), 1),
      m_cellsInLayer(volume->sizeY() * volume->sizeZ()),
      m_newAtoms(m_strips.strips()),
      m_surfaceAtoms(m_strips.strips()),
      m_findings(m_strips.strips()),
      m_candidates(m_strips.strips())
{
    for (Findings &findings : m_findings) {
        findings.removed.resize(m_strips.strips());
        findings.masses.resize(m_strips.strips());
    }
}

void CrystalFront::run(const StripFunction &initialize, const StripFunction &step)
{
    qDebug().nospace() << "Running etching";
    if (!m_lattice)
        return;
    const TakenVoxels taken(*m_volume, m_voxels, m_nextVoxels);
    clearMaskAtoms();
    runPhase(initialize);
    findSurface();
    for (std::uint64_t i = 0; i < m_steps; ++i) {
        runPhase(step);
        runPhase([this](std::uint32_t strip) { commitStrip(strip); });
    }
    for (SiLattice::MaskAtoms &atoms : m_newAtoms)
        m_lattice->maskAtoms().splice(m_lattice->maskAtoms().end(), atoms);
}

void CrystalFront::runPhase(const StripFunction &function) const
{
    m_strips.runPhase(
        [&function](std::int32_t, std::int32_t, std::uint32_t strip) { function(strip); });
}

void CrystalFront::clearMaskAtoms()
{
    // Bonds are plain pointers and must not outlive what they lead to; and what an earlier run has
    // held in place must not be held for ever.
    for (const boost::shared_ptr<SiAtom> &mask : m_lattice->maskAtoms())
        for (unsigned position = 0; position < SiAtom::Bonds; ++position)
            if (SiAtom *held = mask->link(position))
                held->setLink(SiAtom::Bonds - 1 - position, nullptr);
    m_lattice->maskAtoms().clear();
}

std::size_t CrystalFront::shareStart(std::uint32_t strip) const
{
    return m_lattice->cells().size() * strip / m_strips.strips();
}

SiAtom &CrystalFront::atomAt(std::size_t place) const
{
    return m_lattice->cells()[place / SiCell::Atoms].second->atom(place % SiCell::Atoms);
}

bool CrystalFront::isOfSilicon(const SiAtom &atom) const
{
    return atom.cellIndex() >= 0 && m_voxels[atom.cellIndex()].material() == Voxel::Silicon;
}

void CrystalFront::restore(SiAtom &atom)
{
    atom.setState(SiAtom::Active);
    Voxel &voxel = m_voxels[atom.cellIndex()];
    voxel.setAtoms(voxel.atoms() + 1);
    m_nextVoxels[atom.cellIndex()].setAtoms(voxel.atoms());
}

void CrystalFront::findSurface()
{
    std::vector<std::size_t> candidates;
    for (std::vector<std::size_t> &share : m_candidates) {
        candidates.insert(candidates.end(), share.begin(), share.end());
        share.clear();
    }
    for (const std::size_t place : candidates)
        if (atomAt(place).state() != SiAtom::Active)
            restore(atomAt(place));

    // An atom that is found to be gone uncovers its neighbours, and those that come later in the
    // lattice are candidates too.
    LatticePlaces places(*m_lattice);
    std::set<std::size_t> uncovered;
    auto next = candidates.begin();
    while (next != candidates.end() || !uncovered.empty()) {
        const bool isUncovered =
            next == candidates.end() || (!uncovered.empty() && *uncovered.begin() < *next);
        const std::size_t place = isUncovered ? *uncovered.begin() : *next++;
        uncovered.erase(place);
        SiAtom &atom = atomAt(place);
        if (atom.bondCount() >= SiAtom::Bonds)
            continue;
        const std::uint32_t strip = stripOf(atom);
        Atoms gone;
        if (treatMissingNeighbors(atom, strip, gone))
            m_surfaceAtoms[strip].push_back(&atom);
        for (const SiAtom *neighbor : gone)
            for (unsigned position = 0; position < SiAtom::Bonds; ++position) {
                const SiAtom *candidate = neighbor->link(position);
                if (candidate && isOfSilicon(*candidate) && places.of(*candidate) > place)
                    uncovered.insert(places.of(*candidate));
            }
    }
    for (std::uint32_t strip = 0; strip < m_strips.strips(); ++strip)
        settleList(m_surfaceAtoms[strip], strip);
}

bool CrystalFront::treatMissingNeighbors(SiAtom &atom, std::uint32_t thread, Atoms &gone)
{
    bool isSurface = false;
    for (unsigned position = 0; position < SiAtom::Bonds; ++position) {
        SiAtom *neighbor = atom.link(position);
        if (!neighbor) {
            isSurface |= treatMissingNeighbor(atom, position, thread);
            continue;
        }
        if (neighbor->cellIndex() < 0) {
            qDebug().nospace() << "This wasn't suppose to happen.";
            continue;
        }
        const std::uint32_t material = m_voxels[neighbor->cellIndex()].material();
        if (material == 0) {
            if (neighbor->state() != SiAtom::Removed)
                gone.push_back(neighbor);
            neighbor->setState(SiAtom::Removed);
            isSurface = true;
        } else if (material != Voxel::Silicon) {
            neighbor->setState(SiAtom::Mask);
        }
    }
    return isSurface;
}

bool CrystalFront::treatMissingNeighbor(SiAtom &atom, unsigned position, std::uint32_t thread)
{
    const MissingNeighbor missing = missingNeighbor(*m_volume, atom, position);
    if (missing.cell) {
        const std::uint32_t material = m_voxels[*missing.cell].material();
        if (material == 0)
            return true;
        if (material == Voxel::Silicon)
            return false;
    }
    const auto mask = boost::make_shared<SiAtom>(missing.place, nullptr, true);
    atom.linkTo(*mask, position);
    m_newAtoms[thread].push_back(mask);
    return false;
}

void CrystalFront::settleList(Atoms &atoms, std::uint32_t strip) const
{
    std::sort(atoms.begin(), atoms.end(), ByAddress());
    atoms.erase(std::unique(atoms.begin(), atoms.end()), atoms.end());
    qDebug().nospace() << "Surface list size for thread " << strip << ": " << atoms.size();
}

void CrystalFront::openStep(std::uint32_t strip)
{
    Findings &findings = m_findings[strip];
    findings.kept.clear();
    findings.neighbors.clear();
    findings.left.clear();
    findings.right.clear();
    for (Atoms &atoms : findings.removed)
        atoms.clear();
    for (std::vector<Mass> &masses : findings.masses)
        masses.clear();
}

void CrystalFront::handOn(const SiAtom &removed, std::uint32_t strip)
{
    Findings &findings = m_findings[strip];
    for (unsigned position = 0; position < SiAtom::Bonds; ++position) {
        SiAtom *neighbor = removed.link(position);
        if (!neighbor || neighbor->state() == SiAtom::Removed)
            continue;
        // The place in the world stands for the column, whatever the place of the volume and the
        // width of its cells.
        const double column = std::trunc(neighbor->position()[0]);
        if (column < m_strips.start(strip))
            findings.left.push_back(neighbor);
        else if (column < m_strips.end(strip))
            findings.neighbors.push_back(neighbor);
        else
            findings.right.push_back(neighbor);
    }
}

void CrystalFront::commitStrip(std::uint32_t strip)
{
    for (const Findings &findings : m_findings) {
        for (const Mass &mass : findings.masses[strip])
            mass.atom->setMass(mass.mass);
        // An atom at a border of strips may stand in the lists of both.
        for (SiAtom *atom : findings.removed[strip])
            if (atom->state() == SiAtom::Active)
                remove(*atom);
    }
    Atoms added = m_findings[strip].neighbors;
    if (strip > 0) {
        const Atoms &handed = m_findings[strip - 1].right;
        added.insert(added.end(), handed.begin(), handed.end());
    }
    if (strip + 1 < m_strips.strips()) {
        const Atoms &handed = m_findings[strip + 1].left;
        added.insert(added.end(), handed.begin(), handed.end());
    }
    // What was kept is in order already.
    std::sort(added.begin(), added.end(), ByAddress());
    added.erase(std::unique(added.begin(), added.end()), added.end());
    const Atoms &kept = m_findings[strip].kept;
    Atoms &surface = m_surfaceAtoms[strip];
    surface.clear();
    std::set_union(kept.begin(), kept.end(), added.begin(), added.end(),
                   std::back_inserter(surface), ByAddress());
    qDebug().nospace() << "Surface list size for thread " << strip << ": " << surface.size();
}

void CrystalFront::remove(SiAtom &atom)
{
    atom.setState(SiAtom::Removed);
    const std::int32_t index = atom.cellIndex();
    if (index < 0)
        return;
    Voxel &next = m_nextVoxels[index];
    const std::int32_t before = next.atoms();
    next.setAtoms(before - 1);
    if (before < 2)
        next.setMaterial(0);
    if (before < 1)
        qDebug().nospace() << "Negative atom count reached for index: " << index
                           << " count is: " << next.atoms();
    m_voxels[index].setAtoms(next.atoms());
    m_voxels[index].setMaterial(next.material());
}

std::uint32_t CrystalFront::stripOf(const SiAtom &atom) const
{
    if (m_strips.isSingle() || atom.cellIndex() < 0)
        return 0;
    const std::uint32_t x = static_cast<std::uint32_t>(atom.cellIndex()) / m_cellsInLayer;
    return std::min(x / m_strips.stripWidth(), m_strips.strips() - 1);
}

} // namespace Core::Operations
