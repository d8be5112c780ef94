#pragma once

namespace LitharaTour {

class Stage;

/// A sacrificial oxide is patterned, poly-silicon laid over it, levelled and patterned in its turn,
/// plated with copper, and the oxide removed from under it.
void surfaceMicromachinedBridge(Stage &stage);

/// Resist is exposed through a mask, the oxide under it etched, the opening doped, the wafer
/// oxidized in a furnace, and ions implanted through the opening.
void dopedOpening(Stage &stage);

/// A square and a slanted slot in a resist mask let a wet etch into the silicon; the pits are seen
/// from above and cut open.
void wetEtchedPits(Stage &stage);

} // namespace LitharaTour
