#pragma once

#include <QDialog>
#include <QDir>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <memory>

class QCloseEvent;
class QEvent;

namespace Core::Operations {
class RunModelExtraction;
}

namespace Ui {
class ExtractModelForm;
}

namespace Ui::Operations {

/// The three steps of a model extraction, in a tool window that leaves the rest of the program
/// usable. Deletes itself on close. It does not own the operation: once that is gone, the steps and
/// closing have no effect on anything else.
class ExtractModelDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit ExtractModelDialog(
        const boost::shared_ptr<Core::Operations::RunModelExtraction> &operation,
        QWidget *parent = nullptr);
    ~ExtractModelDialog() override;

    /// Escape: cancels the operation, which closes the dialog. A slot already, of QDialog's.
    void reject() override;

private Q_SLOTS:
    void runStepOneClicked();
    void runStepTwoClicked();
    /// Asks for a file and writes the netlist to it. The dialog stays open, so that it can be
    /// written again.
    void runStepThreeClicked();

protected:
    /// Keeps Return and Enter for its buttons: the shortcuts of the main window reach into its tool
    /// windows.
    bool event(QEvent *event) override;
    /// Ends the operation.
    void closeEvent(QCloseEvent *event) override;

private:
    /// Where the last netlist was saved; its path ends with the name of that file.
    static QDir s_lastPath;

    std::unique_ptr<ExtractModelForm> m_form;
    boost::weak_ptr<Core::Operations::RunModelExtraction> m_operation;
};

} // namespace Ui::Operations
