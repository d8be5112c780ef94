#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Core::Operations {
class RunModelExtraction;
}

namespace Ui::Observers {

class DestroyModelExtractionDialogObserver;

/// Opens the dialog of a model extraction, which stays open when update() returns.
class RunModelExtractionObserver final : public OptionsObserver
{
public:
    /// Gives the operation, which is not kept, the observer that closes the dialog.
    RunModelExtractionObserver(Core::Workspace *workspace, QWidget *dialogParent,
                               Core::Operations::RunModelExtraction *operation);
    ~RunModelExtractionObserver() override;

    void update() override;

private:
    boost::shared_ptr<DestroyModelExtractionDialogObserver> m_closeObserver;
};

} // namespace Ui::Observers
