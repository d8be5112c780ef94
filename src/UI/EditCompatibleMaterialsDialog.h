#pragma once

#include "Model/Process/Process.h"

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {

class EditCompatibleMaterialsBaseDialog;

/// Assigns materials to processes. Works on a copy of the registry of processes, which stays as it
/// is.
class EditCompatibleMaterialsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Shows the first process.
    explicit EditCompatibleMaterialsDialog(QWidget *parent = nullptr);
    ~EditCompatibleMaterialsDialog() override;

    /// All processes, with what was edited in any of them, in ascending id order.
    const std::vector<Model::Process::Process> &processes() const { return m_processes; }

private Q_SLOTS:
    void on_cbxProcess_currentIndexChanged(int index);
    void on_btnInsert_clicked();
    void on_btnRemove_clicked();

private:
    bool hasProcess() const { return m_process && m_process->id() != 0; }
    void clearSelections();
    void refresh();

    std::unique_ptr<EditCompatibleMaterialsBaseDialog> m_form;
    /// The one that is shown, in the list.
    Model::Process::Process *m_process = nullptr;
    std::vector<Model::Process::Process> m_processes;
};

} // namespace Ui
