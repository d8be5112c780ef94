#pragma once

class QString;
class QWidget;

namespace Core::Operations {
class MooreProcessOperation;
}

namespace Ui::Observers {

/// Asks for the film and the number of layers, which the dialog calls `valueLabel`, and runs the
/// operation; cancels it when the dialog is rejected. The caller keeps the operation alive.
void askForMooreLayers(Core::Operations::MooreProcessOperation &operation,
                       const QString &valueLabel, QWidget *dialogParent);

} // namespace Ui::Observers
