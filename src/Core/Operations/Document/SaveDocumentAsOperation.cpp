#include "Core/Operations/Document/SaveDocumentAsOperation.h"

#include "Core/Operations/Document/DocumentFile.h"
#include "Core/Workspace.h"

#include <QDir>
#include <QFileDialog>

#include <utility>

namespace Core::Operations {

SaveDocumentAsOperation::SaveDocumentAsOperation(Workspace *workspace)
    : Operation("Save Document As", Id),
      m_workspace(workspace)
{}

void SaveDocumentAsOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void SaveDocumentAsOperation::next()
{
    m_fileName =
        QFileDialog::getSaveFileName(nullptr, QStringLiteral("Choose location"), QDir::homePath(),
                                     QStringLiteral("Lithara file (*.lth)"));
    end();
}

void SaveDocumentAsOperation::cancel()
{
    m_workspace->dropOperation();
}

void SaveDocumentAsOperation::end()
{
    if (!m_fileName.isEmpty()) {
        saveDocument(m_fileName, *m_workspace);
        if (m_observer)
            m_observer->update();
    }
    // Also without an answer, unlike Save: that is settled behaviour.
    m_workspace->finishOperation();
}

} // namespace Core::Operations
