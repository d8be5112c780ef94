#pragma once

namespace LitharaTour {

class Stage;

/// Draws the selected volume as a smooth skin, and as cubes again.
void smoothSkin(Stage &stage);

/// Cuts the volume open at half its length.
void cutOpen(Stage &stage);

/// Etches a pit into a wafer small enough to see its atoms, and shows those of its walls through the
/// silicon.
void atomsOfAPit(Stage &stage);

} // namespace LitharaTour
