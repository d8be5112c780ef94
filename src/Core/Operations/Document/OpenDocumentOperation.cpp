#include "Core/Operations/Document/OpenDocumentOperation.h"

#include "Core/Workspace.h"

#include <QFileDialog>

#include <utility>

namespace Core::Operations {

using Model::Materials::Material;

QString OpenDocumentOperation::s_fileName;
QDir OpenDocumentOperation::s_lastPath = QDir::home();
Model::Persistence::MaterialMap OpenDocumentOperation::s_materialMap;
boost::shared_ptr<Util::IObserver> OpenDocumentOperation::s_observer;
boost::shared_ptr<Util::IObserver> OpenDocumentOperation::s_materialConflictObserver;
Material OpenDocumentOperation::s_knownMaterial;
Material OpenDocumentOperation::s_loadedMaterial;

OpenDocumentOperation::OpenDocumentOperation(Workspace *workspace)
    : Operation("Open document", Id),
      m_workspace(workspace)
{}

void OpenDocumentOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

void OpenDocumentOperation::setMaterialConflictObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_materialConflictObserver = std::move(observer);
}

boost::shared_ptr<Util::IObserver> OpenDocumentOperation::materialConflictObserver()
{
    return s_materialConflictObserver;
}

void OpenDocumentOperation::setMaterialConflict(const Material &known, const Material &loaded)
{
    s_knownMaterial = known;
    s_loadedMaterial = loaded;
}

void OpenDocumentOperation::next()
{
    s_fileName = QFileDialog::getOpenFileName(nullptr, QStringLiteral("Choose file"),
                                              s_lastPath.absolutePath(),
                                              QStringLiteral("Lithara file (*.lth)"));
    if (s_fileName.isEmpty()) {
        cancel();
        return;
    }
    // The path of the file, not of its folder: the next question starts at the file itself.
    s_lastPath.setPath(s_fileName);
    end();
}

void OpenDocumentOperation::cancel()
{
    m_workspace->dropOperation();
}

void OpenDocumentOperation::end()
{
    // A copy: the new window's factory may set another one.
    if (const boost::shared_ptr<Util::IObserver> observer = s_observer)
        observer->update();
    m_workspace->finishOperation();
}

} // namespace Core::Operations
