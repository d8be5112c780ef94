#pragma once

namespace LitharaTour {

class Stage;

/// Two wafers are bonded, the upper one turned over.
void bondedWafers(Stage &stage);

/// A film is lifted from its wafer.
void liftedFilm(Stage &stage);

/// A cantilever becomes boxes, a beam and a netlist.
void netlistOfACantilever(Stage &stage);

/// A material is added, coloured, and made compatible with a process that then deposits it.
void materialOfOnesOwn(Stage &stage);

} // namespace LitharaTour
