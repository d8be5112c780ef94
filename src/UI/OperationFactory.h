#pragma once

#include "Core/Operations/IOperationFactory.h"

namespace Ui {

class MainWindowPresenter;

/// Builds each operation with its options observer. Keeps no state.
class OperationFactory final : public Core::Operations::IOperationFactory
{
public:
    /// Not owned: the presenter's workspace owns the factory.
    explicit OperationFactory(MainWindowPresenter *presenter);

    boost::shared_ptr<Core::Operations::Operation> create(std::uint32_t operationId) override;

private:
    MainWindowPresenter *m_presenter;
};

} // namespace Ui
