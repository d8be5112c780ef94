#include "UI/EditCompatibleMaterialsDialog.h"

#include "Model/Materials/MaterialFactory.h"
#include "Model/Process/ProcessFactory.h"
#include "ui_EditCompatibleMaterialsBaseDialog.h"

#include <QListWidget>
#include <QListWidgetItem>

#include <algorithm>
#include <cstdint>
#include <set>

namespace Ui {

using Model::Materials::Material;
using Model::Process::Process;

namespace {

void addItem(QListWidget &list, const Material &material)
{
    auto *item = new QListWidgetItem(material.name());
    item->setData(Qt::UserRole, material.id());
    list.addItem(item);
}

/// From top to bottom, whatever the order of the clicks.
std::vector<std::uint32_t> selectedIds(const QListWidget &list)
{
    std::vector<std::uint32_t> ids;
    for (int row = 0; row < list.count(); ++row)
        if (list.item(row)->isSelected())
            ids.push_back(list.item(row)->data(Qt::UserRole).toUInt());
    return ids;
}

} // namespace

EditCompatibleMaterialsDialog::EditCompatibleMaterialsDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<EditCompatibleMaterialsBaseDialog>()),
      m_processes(Model::Process::ProcessFactory::instance()->processes())
{
    m_form->setupUi(this);
    // The first item becomes the current one, which shows its process.
    for (const Process &process : m_processes)
        m_form->cbxProcess->addItem(process.name(), process.id());
}

EditCompatibleMaterialsDialog::~EditCompatibleMaterialsDialog() = default;

void EditCompatibleMaterialsDialog::on_cbxProcess_currentIndexChanged(int index)
{
    const std::uint32_t id = m_form->cbxProcess->itemData(index).toUInt();
    const auto found = std::find_if(m_processes.begin(), m_processes.end(),
                                    [id](const Process &process) { return process.id() == id; });
    m_process = found == m_processes.end() ? nullptr : &*found;
    refresh();
}

void EditCompatibleMaterialsDialog::on_btnInsert_clicked()
{
    if (!hasProcess())
        return;
    for (const std::uint32_t id : selectedIds(*m_form->lstAvailable))
        m_process->addCompatibleMaterial(id);
    clearSelections();
    refresh();
}

void EditCompatibleMaterialsDialog::on_btnRemove_clicked()
{
    if (!hasProcess())
        return;
    std::vector<std::uint32_t> ids = m_process->compatibleMaterialIds();
    for (const std::uint32_t id : selectedIds(*m_form->lstCompatible))
        ids.erase(std::remove(ids.begin(), ids.end(), id), ids.end());
    m_process->setCompatibleMaterialIds(ids);
    clearSelections();
    refresh();
}

void EditCompatibleMaterialsDialog::clearSelections()
{
    m_form->lstAvailable->clearSelection();
    m_form->lstCompatible->clearSelection();
}

void EditCompatibleMaterialsDialog::refresh()
{
    if (!hasProcess())
        return;
    std::set<std::uint32_t> compatible;
    m_form->lstCompatible->clear();
    for (const Material &material : m_process->compatibleMaterials()) {
        addItem(*m_form->lstCompatible, material);
        compatible.insert(material.id());
    }
    m_form->lstAvailable->clear();
    for (const Material &material : Model::Materials::MaterialFactory::instance()->materials())
        if (compatible.count(material.id()) == 0)
            addItem(*m_form->lstAvailable, material);
}

} // namespace Ui
