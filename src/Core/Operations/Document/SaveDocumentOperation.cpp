#include "Core/Operations/Document/SaveDocumentOperation.h"

#include "Core/Operations/Document/DocumentFile.h"
#include "Core/Workspace.h"

#include <QDir>
#include <QFileDialog>

#include <utility>

namespace Core::Operations {

SaveDocumentOperation::SaveDocumentOperation(Workspace *workspace)
    : Operation("Save document", Id),
      m_workspace(workspace)
{}

void SaveDocumentOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void SaveDocumentOperation::next()
{
    m_fileName = m_workspace->document().fileName();
    if (m_fileName.isEmpty())
        m_fileName =
            QFileDialog::getSaveFileName(nullptr, QStringLiteral("Choose location"),
                                         QDir::homePath(), QStringLiteral("Lithara file (*.lth)"));
    end();
}

void SaveDocumentOperation::cancel()
{
    m_workspace->dropOperation();
}

void SaveDocumentOperation::end()
{
    if (m_fileName.isEmpty()) {
        m_workspace->dropOperation();
        return;
    }
    saveDocument(m_fileName, *m_workspace);
    if (m_observer)
        m_observer->update();
    m_workspace->finishOperation();
}

} // namespace Core::Operations
