#include "UI/OperationFactory.h"

#include "Core/Operations/CreateSubstrateOperation.h"
#include "UI/MainWindow.h"
#include "UI/MainWindowPresenter.h"
#include "UI/Observers/CreateSubstrateObserver.h"

#include <boost/make_shared.hpp>

namespace Ui {

using Core::Operations::Operation;

OperationFactory::OperationFactory(MainWindowPresenter *presenter) : m_presenter(presenter) {}

boost::shared_ptr<Operation> OperationFactory::create(std::uint32_t operationId)
{
    Core::Workspace *workspace = &m_presenter->workspace();
    QWidget *window = m_presenter->mainWindow();
    switch (operationId) {
    case 2: {
        const auto operation =
            boost::make_shared<Core::Operations::CreateSubstrateOperation>(workspace);
        operation->setObserver(
            boost::make_shared<Observers::CreateSubstrateObserver>(workspace, window));
        return operation;
    }
    default:
        return {};
    }
}

} // namespace Ui
