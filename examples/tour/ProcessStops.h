#pragma once

namespace LitharaTour {

class Stage;

/// A sacrificial oxide is patterned, poly-silicon laid over it, levelled and patterned in its turn,
/// plated with copper, and the oxide removed from under it.
void surfaceMicromachinedBridge(Stage &stage);

/// Resist is exposed through a mask, the oxide under it etched, the opening doped, the wafer oxidized
/// in a furnace, and ions implanted through the opening.
void dopedOpening(Stage &stage);

} // namespace LitharaTour
