#pragma once

namespace Core::Operations {
class MooreProcessOperation;
}
namespace Ui::Operations {
class MooreOptionsDialog;
}

namespace Ui::Observers {

/// Asks for the film and the number of layers in the dialog, and runs the operation; cancels it when
/// the dialog is rejected. The caller keeps the operation alive.
void askForMooreLayers(Core::Operations::MooreProcessOperation &operation,
                       Operations::MooreOptionsDialog &dialog);

} // namespace Ui::Observers
