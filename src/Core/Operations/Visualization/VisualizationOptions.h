#pragma once

#include <cstdint>

namespace Core::Operations {

/// How one cell volume is drawn.
struct VisualizationOptions
{
    bool renderAtoms = false;
    bool surfaceAtomsOnly = true;
    bool renderLinks = false;
    bool renderUnitCells = false;
    bool renderOutlines = false;
    bool showEmptyVoxels = false;
    /// A value of Model::Automaton::TotalVolumePainter::SurfaceAlgorithm.
    std::uint32_t surfaceAlgorithm = 0;
};

} // namespace Core::Operations
