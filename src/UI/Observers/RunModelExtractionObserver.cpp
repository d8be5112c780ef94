#include "UI/Observers/RunModelExtractionObserver.h"

#include "Core/Operations/ModelExtraction/RunModelExtraction.h"
#include "UI/Observers/DestroyModelExtractionDialogObserver.h"
#include "UI/Operations/ExtractModelDialog.h"

#include <boost/make_shared.hpp>

namespace Ui::Observers {

using Core::Operations::RunModelExtraction;

RunModelExtractionObserver::RunModelExtractionObserver(Core::Workspace *workspace,
                                                       QWidget *dialogParent,
                                                       RunModelExtraction *operation)
    : OptionsObserver(workspace, dialogParent),
      m_closeObserver(boost::make_shared<DestroyModelExtractionDialogObserver>())
{
    operation->setCloseObserver(m_closeObserver);
}

RunModelExtractionObserver::~RunModelExtractionObserver() = default;

void RunModelExtractionObserver::update()
{
    const auto operation = current<RunModelExtraction>();
    if (!operation)
        return;
    // It deletes itself.
    auto *dialog = new Operations::ExtractModelDialog(operation, dialogParent());
    m_closeObserver->setDialog(dialog);
    dialog->show();
}

} // namespace Ui::Observers
