#pragma once

#include "Util/IObserver.h"

#include <QPointer>
#include <QWidget>

#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

namespace Core {
class Workspace;
}
namespace Core::Operations {
class Operation;
}

namespace Ui::Observers {

/// Base of the observers that ask for the values of one class of operation in a modal dialog. Owns
/// neither the workspace nor the window that is the dialog's parent.
class OptionsObserver : public Util::IObserver
{
public:
    /// The window owns the workspace.
    OptionsObserver(Core::Workspace *workspace, QWidget *dialogParent);
    ~OptionsObserver() override;

protected:
    /// The operation in progress, if it is of this class; empty otherwise, and when the window is
    /// gone: operations that share one observer a class may be notified after that.
    template <typename Operation>
    boost::shared_ptr<Operation> current() const
    {
        return boost::dynamic_pointer_cast<Operation>(currentOperation());
    }
    QWidget *dialogParent() const { return m_dialogParent; }

private:
    boost::shared_ptr<Core::Operations::Operation> currentOperation() const;

    Core::Workspace *m_workspace;
    QPointer<QWidget> m_dialogParent;
};

} // namespace Ui::Observers
