#include "UI/BatchRun/RunProcessesDialog.h"

#include "Core/Operations/SubstrateBuilder.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/BatchRun/ProcessListArchiver.h"
#include "UI/BatchRun/ProcessRunner.h"
#include "UI/BatchRun/StepComposer.h"
#include "UI/BatchRun/StepParameters.h"
#include "UI/MainWindow.h"
#include "ui_RunProcessesBaseDialog.h"

#include <QApplication>
#include <QColor>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QIcon>
#include <QMessageBox>
#include <QMetaObject>
#include <QPixmap>
#include <QScopeGuard>
#include <QSet>
#include <QThread>
#include <QTreeWidgetItem>
#include <QtConcurrentRun>

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

namespace Ui {

using Model::Automaton::TotalVolume;

namespace {

constexpr int ProgressInterval = 500; // milliseconds
constexpr int LockPatience = 10;      // milliseconds
constexpr int SwatchSize = 25;        // pixels
constexpr int ColumnMargin = 20;      // pixels

enum Column
{
    NumberColumn,
    ProcessColumn,
    ParameterColumn,
    ValueColumn
};

const struct
{
    const char *text;
    ProcessData::ProcessType type;
} Choices[] = {
    {"CVD", ProcessData::Cvd},
    {"PVD", ProcessData::Pvd},
    {"Isotropic Etching", ProcessData::IsotropicEtching},
    {"Moore Deposition", ProcessData::MooreDeposition},
    {"Moore Etching", ProcessData::MooreEtching},
    {"Photolithography", ProcessData::Photolithography},
    {"Planarization", ProcessData::Planarization},
    {"Si Wet Etching", ProcessData::SiWetEtching},
    {"Electroplating", ProcessData::Electroplating},
    {"Doping", ProcessData::Doping},
    {"Ion Implantation", ProcessData::IonImplantation},
    {"Spin Coating", ProcessData::SpinCoating},
    {"Simple RIE", ProcessData::SimpleRie},
    {"Thermal Oxidation", ProcessData::SiOxidation},
    {"Create Substrate", ProcessData::CreateSubstrate},
    {"Save Image", ProcessData::SaveImage},
};

const QString ListCaption = QStringLiteral("Process List File");
const QString ListFilter = QStringLiteral("Process List (*.plst)");
const QString ListSuffix = QStringLiteral(".plst");

std::uint32_t stepId(const QTreeWidgetItem &row)
{
    return row.data(ProcessColumn, Qt::UserRole).toUInt();
}

void addParameterRows(QTreeWidgetItem &row, ProcessData &step)
{
    const QMap<QString, QVariant> parameters = step.parameters();
    for (auto entry = parameters.begin(); entry != parameters.end(); ++entry) {
        if (!step.isVisible(entry.key()))
            continue;
        auto *child = new QTreeWidgetItem(&row);
        child->setText(ParameterColumn, entry.key());
        child->setText(ValueColumn, entry.value().toString());
        const auto color = parameters.find(entry.key() + StepParameters::ColorSuffix);
        if (color != parameters.end()) {
            QPixmap swatch(SwatchSize, SwatchSize);
            swatch.fill(color->value<QColor>());
            child->setIcon(ValueColumn, QIcon(swatch));
        }
    }
}

} // namespace

RunProcessesDialog::RunProcessesDialog(
    MainWindow *window, const boost::shared_ptr<Model::Automaton::TotalVolume> &volume,
    Core::Workspace *workspace)
    : QDialog(window),
      m_form(std::make_unique<RunProcessesBaseDialog>()),
      m_window(window),
      m_volume(volume),
      m_workspace(workspace),
      m_progressTimer(this)
{
    m_form->setupUi(this);
    for (const auto &choice : Choices)
        m_form->cbxProcess->addItem(QLatin1String(choice.text), static_cast<int>(choice.type));
    m_form->trwProcesses->setColumnWidth(
        ParameterColumn,
        fontMetrics().horizontalAdvance(StepParameters::HorizontalRatio) + ColumnMargin);
    connect(m_form->trwProcesses, &QTreeWidget::itemSelectionChanged, this,
            &RunProcessesDialog::selectionChanged);
    m_progressTimer.setObjectName(QStringLiteral("progressTimer"));
    m_progressTimer.setInterval(ProgressInterval);
    connect(&m_progressTimer, &QTimer::timeout, this, &RunProcessesDialog::updateProgress);
    rebuildTree();
    m_window->installEventFilter(this);
}

RunProcessesDialog::~RunProcessesDialog()
{
    endRun();
}

void RunProcessesDialog::showBottomMask(const std::vector<bool> &bits, std::uint32_t width,
                                        std::uint32_t height)
{
    if (!m_volume)
        return;
    m_volume->setBottomMask(bits, width, height);
    m_window->repaintCentralWidget();
}

void RunProcessesDialog::showTopMask(const std::vector<bool> &bits, std::uint32_t width,
                                     std::uint32_t height)
{
    if (!m_volume)
        return;
    m_volume->setTopMask(bits, width, height);
    m_window->repaintCentralWidget();
}

boost::shared_ptr<TotalVolume>
RunProcessesDialog::createVolume(Core::Operations::SubstrateBuilder &builder)
{
    if (QThread::currentThread() == thread())
        return addVolume(builder);
    boost::shared_ptr<TotalVolume> created;
    QMetaObject::invokeMethod(
        this, [&] { created = addVolume(builder); }, Qt::BlockingQueuedConnection);
    return created;
}

boost::shared_ptr<TotalVolume>
RunProcessesDialog::addVolume(Core::Operations::SubstrateBuilder &builder)
{
    // An exception would pass through the event loop, which ends the program.
    try {
        m_window->makeViewCurrent();
        const boost::shared_ptr<TotalVolume> created = builder.build();
        m_workspace->document().addObject(created);
        m_volume = created;
        return created;
    } catch (const std::exception &error) {
        qDebug() << "No volume:" << error.what();
        return {};
    }
}

void RunProcessesDialog::endRun()
{
    m_progressTimer.stop();
    m_stopping = true;
    // The worker may be waiting for this thread, whose event loops may be gone already.
    while (!m_runLock.tryLock(LockPatience))
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    m_runLock.unlock();
    // The worker has given the lock back, but may not have left its function, which belongs to this
    // dialog. It has no exception to pass on.
    m_run.waitForFinished();
    m_stopping = false;
}

void RunProcessesDialog::on_btnAddProcess_clicked()
{
    const std::int32_t type = m_form->cbxProcess->currentData().toInt();
    const std::optional<ProcessData> step =
        StepComposer(this, this, heightForNextStep()).compose(type);
    if (!step)
        return;
    m_processes.push_back(*step);
    rebuildTree();
}

void RunProcessesDialog::on_btnClose_clicked()
{
    if (!m_runLock.tryLock())
        return;
    m_runLock.unlock();
    close();
}

void RunProcessesDialog::on_btnRun_clicked()
{
    const int count = static_cast<int>(m_processes.size());
    m_form->progressBar->setEnabled(true);
    m_form->progressBar->setRange(0, std::max(count, 1));
    m_form->progressBar->setValue(0);
    if (!m_runLock.tryLock())
        return;
    m_processCount = count;
    m_progress = 0;
    m_progressTimer.start();
    // A copy: the user may go on changing the list while the worker walks it.
    m_run = QtConcurrent::run([this, steps = m_processes] { runProcesses(steps); });
}

void RunProcessesDialog::runProcesses(const std::vector<ProcessData> &steps)
{
    const auto unlock = qScopeGuard([this] { m_runLock.unlock(); });
    m_progress = 0;
    for (const ProcessData &step : steps) {
        if (m_stopping)
            break;
        if (!m_volume && step.processType() != ProcessData::CreateSubstrate)
            break;
        // A step that fails is passed over, and counts as done. So does one that finds no memory.
        try {
            ProcessRunner(&step, m_volume, this, m_workspace).run();
        } catch (const std::exception &error) {
            qDebug() << "Step failed:" << processTypeName(step.processType()) << error.what();
        }
        ++m_progress;
    }
}

void RunProcessesDialog::showProgress()
{
    // The list may have changed since Run, and a second click on Run has set the range by it.
    // A range of no steps would make the bar a busy one.
    m_form->progressBar->setRange(0, std::max(m_processCount, 1));
    m_form->progressBar->setValue(static_cast<int>(m_progress));
}

void RunProcessesDialog::updateProgress()
{
    showProgress();
    if (!m_runLock.tryLock()) {
        m_progressTimer.start();
        return;
    }
    m_progressTimer.stop();
    if (m_volume) {
        rebuildSurfaces();
        m_window->repaintCentralWidget();
    } else {
        if (!m_windowLeaving)
            QMessageBox::critical(
                this, QStringLiteral("Missing Cell Volume"),
                QStringLiteral("No cell volume was selected and a cell volume was not created. The "
                               "cell volume must be created before any other process."),
                QMessageBox::Ok);
        m_progress = 0;
    }
    showProgress();
    m_runLock.unlock();
    if (m_windowLeaving)
        leave();
}

void RunProcessesDialog::updateGeometry(const QString &filename)
{
    rebuildSurfaces();
    m_window->repaintCentralWidget();
    if (!filename.isEmpty())
        m_window->saveImage(filename);
}

void RunProcessesDialog::rebuildSurfaces()
{
    if (!m_volume)
        return;
    m_window->makeViewCurrent();
    try {
        m_volume->painter().rebuild();
    } catch (const std::exception &error) {
        qDebug() << "No surfaces:" << error.what();
    }
}

void RunProcessesDialog::on_btnRemoveProcess_clicked()
{
    QSet<std::uint32_t> ids;
    for (const QTreeWidgetItem *row : m_form->trwProcesses->selectedItems())
        ids.insert(stepId(*row));
    m_processes.erase(
        std::remove_if(m_processes.begin(), m_processes.end(),
                       [&ids](const ProcessData &step) { return ids.contains(step.id()); }),
        m_processes.end());
    rebuildTree();
}

void RunProcessesDialog::on_btnMoveUp_clicked()
{
    moveSelected(-1);
}

void RunProcessesDialog::on_btnMoveDown_clicked()
{
    moveSelected(1);
}

void RunProcessesDialog::moveSelected(int offset)
{
    const int from = firstSelected();
    const int to = from + offset;
    if (from < 0)
        return;
    if (to >= 0 && to < static_cast<int>(m_processes.size()))
        std::swap(m_processes[std::size_t(from)], m_processes[std::size_t(to)]);
    const std::uint32_t id =
        m_processes[std::size_t(to >= 0 && to < static_cast<int>(m_processes.size()) ? to : from)]
            .id();
    rebuildTree();
    for (int i = 0; i < m_form->trwProcesses->topLevelItemCount(); ++i) {
        QTreeWidgetItem *row = m_form->trwProcesses->topLevelItem(i);
        if (stepId(*row) == id)
            m_form->trwProcesses->setCurrentItem(row);
    }
}

int RunProcessesDialog::firstSelected() const
{
    for (int i = 0; i < m_form->trwProcesses->topLevelItemCount(); ++i) {
        const QTreeWidgetItem *row = m_form->trwProcesses->topLevelItem(i);
        if (!row->isSelected())
            continue;
        const auto step = std::find_if(
            m_processes.begin(), m_processes.end(),
            [id = stepId(*row)](const ProcessData &candidate) { return candidate.id() == id; });
        if (step != m_processes.end())
            return static_cast<int>(step - m_processes.begin());
    }
    return -1;
}

QString RunProcessesDialog::askForListName()
{
    const QString name =
        QFileDialog::getSaveFileName(this, ListCaption, QDir::homePath(), ListFilter);
    // A file of exactly that name is one that the user agreed to replace.
    if (name.isEmpty() || QFileInfo(name).fileName().contains(QLatin1Char('.')) ||
        QFileInfo::exists(name))
        return name;
    // The dialog has not seen this name, so it has not asked.
    const QString whole = name + ListSuffix;
    if (!QFileInfo::exists(whole))
        return whole;
    const auto answer =
        QMessageBox::warning(this, ListCaption,
                             QStringLiteral("%1 already exists.\nDo you want to replace it?")
                                 .arg(QFileInfo(whole).fileName()),
                             QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    return answer == QMessageBox::Yes ? whole : QString();
}

void RunProcessesDialog::on_btnSaveList_clicked()
{
    const QString name = askForListName();
    if (name.isEmpty())
        return;
    ProcessListArchiver(m_processes).saveProcessList(name);
}

void RunProcessesDialog::on_btnLoadList_clicked()
{
    const QString name =
        QFileDialog::getOpenFileName(this, ListCaption, QDir::homePath(), ListFilter);
    if (name.isEmpty())
        return;
    std::vector<ProcessData> loaded;
    if (!ProcessListArchiver().loadProcessList(name, loaded))
        return;
    m_processes = std::move(loaded);
    rebuildTree();
}

void RunProcessesDialog::selectionChanged()
{
    for (QTreeWidgetItem *row : m_form->trwProcesses->selectedItems()) {
        if (!row->parent())
            continue;
        m_form->trwProcesses->clearSelection();
        return;
    }
}

void RunProcessesDialog::rebuildTree()
{
    QTreeWidget *tree = m_form->trwProcesses;
    // What was unfolded stays so.
    QSet<std::uint32_t> unfolded;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        if (tree->topLevelItem(i)->isExpanded())
            unfolded.insert(stepId(*tree->topLevelItem(i)));

    tree->clear();
    int number = 0;
    for (ProcessData &step : m_processes) {
        auto *row = new QTreeWidgetItem(tree);
        row->setText(NumberColumn, QString::number(++number));
        row->setText(ProcessColumn, processTypeName(step.processType()));
        row->setData(ProcessColumn, Qt::UserRole, step.id());
        addParameterRows(*row, step);
        row->setExpanded(unfolded.contains(step.id()));
    }
    tree->resizeColumnToContents(NumberColumn);
    tree->resizeColumnToContents(ProcessColumn);
}

std::uint32_t RunProcessesDialog::heightForNextStep() const
{
    // The largest that a volume made by a step can have.
    constexpr std::uint32_t Highest = 10000;
    // The last substrate of the list is the one that a new step will work on.
    for (auto step = m_processes.rbegin(); step != m_processes.rend(); ++step) {
        if (step->processType() != ProcessData::CreateSubstrate)
            continue;
        bool known = false;
        const std::uint32_t height = step->parameter(StepParameters::VolumeSizeZ).toUInt(&known);
        if (known)
            return height;
    }
    return m_volume ? m_volume->sizeZ() : Highest;
}

void RunProcessesDialog::reject()
{
    if (!m_runLock.tryLock())
        return;
    m_runLock.unlock();
    QDialog::reject();
}

bool RunProcessesDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_window || event->type() != QEvent::Close)
        return QDialog::eventFilter(watched, event);
    // The window deletes itself on close, and this dialog, the operation that opened it and what a
    // worker works on with it. So they have to leave first.
    event->ignore();
    m_windowLeaving = true;
    m_stopping = true;
    leave();
    return true;
}

void RunProcessesDialog::leave()
{
    const QWidget *last = nullptr;
    for (QWidget *top = QApplication::activeModalWidget(); top && top != this && top != last;
         top = QApplication::activeModalWidget()) {
        last = top;
        if (auto *dialog = qobject_cast<QDialog *>(top))
            dialog->reject();
        else
            top->close();
    }
    reject();
}

} // namespace Ui
