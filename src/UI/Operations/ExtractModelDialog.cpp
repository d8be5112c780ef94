#include "UI/Operations/ExtractModelDialog.h"

#include "Core/Operations/ModelExtraction/RunModelExtraction.h"
#include "ui_ExtractModelForm.h"

#include <QCloseEvent>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLocale>
#include <QMessageBox>
#include <QTextStream>

namespace Ui::Operations {

namespace {

bool writeText(const QString &text, const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream stream(&file);
    stream.setLocale(QLocale::system());
    stream << text;
    stream.flush();
    file.close();
    return stream.status() == QTextStream::Ok && file.error() == QFileDevice::NoError;
}

} // namespace

// The working directory.
QDir ExtractModelDialog::s_lastPath;

ExtractModelDialog::ExtractModelDialog(
    const boost::shared_ptr<Core::Operations::RunModelExtraction> &operation, QWidget *parent)
    : QDialog(parent, Qt::Tool),
      m_form(std::make_unique<ExtractModelForm>()),
      m_operation(operation)
{
    m_form->setupUi(this);
    m_form->btnStepOne->setFocus();
    setAttribute(Qt::WA_DeleteOnClose);
}

ExtractModelDialog::~ExtractModelDialog() = default;

void ExtractModelDialog::runStepOneClicked()
{
    if (const auto operation = m_operation.lock())
        operation->runPreprocessing();
    m_form->btnStepTwo->setEnabled(true);
    // After the other, which takes the keyboard focus.
    m_form->btnStepOne->setEnabled(false);
}

void ExtractModelDialog::runStepTwoClicked()
{
    if (const auto operation = m_operation.lock())
        operation->runFeatureDetection();
    m_form->btnStepThree->setEnabled(true);
    m_form->btnStepTwo->setEnabled(false);
}

void ExtractModelDialog::runStepThreeClicked()
{
    const auto operation = m_operation.lock();
    const QString text = operation ? operation->netlist() : QString();
    if (text.isEmpty()) {
        QMessageBox::information(this, QStringLiteral("No model data"),
                                 QStringLiteral("No model data was extracted."), QMessageBox::Ok);
        return;
    }
    const QString name = QFileDialog::getSaveFileName(this, QStringLiteral("Save netlist"),
                                                      s_lastPath.absolutePath(),
                                                      QStringLiteral("Circuit files *.cir"));
    if (name.isEmpty())
        return;
    // The path of the file, not of its folder: the next question starts at the file itself.
    s_lastPath.setPath(name);
    if (!writeText(text, name))
        QMessageBox::warning(nullptr, QStringLiteral("File Error"),
                             QStringLiteral("Unable to save to selected file!"), QMessageBox::Ok);
}

bool ExtractModelDialog::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            event->accept();
            return true;
        }
    }
    return QDialog::event(event);
}

void ExtractModelDialog::closeEvent(QCloseEvent *event)
{
    if (const auto operation = m_operation.lock())
        operation->end();
    event->accept();
}

void ExtractModelDialog::reject()
{
    if (const auto operation = m_operation.lock())
        operation->cancel();
    // For an operation that has nobody to close the dialog, and for none at all.
    QDialog::reject();
}

} // namespace Ui::Operations
