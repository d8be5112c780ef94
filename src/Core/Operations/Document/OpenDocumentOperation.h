#pragma once

#include "Core/Operations/Operation.h"
#include "Model/Materials/Material.h"
#include "Model/Persistence/ObjectArchiver.h"

#include <QDir>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}

namespace Core::Operations {

/// Asks for a document file and tells the class's observer, which opens it in a window of its own;
/// the window that asked stays as it is. What belongs to opening as such is there once a program
/// and not guarded: one file is opened at a time, on the GUI thread.
class OpenDocumentOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 11;

    /// The workspace is not owned.
    explicit OpenDocumentOperation(Workspace *workspace);

    /// The one observer of the class, told when a file is chosen.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// The file that is being opened, or was opened last.
    static QString fileName() { return s_fileName; }
    static void setFileName(const QString &fileName) { s_fileName = fileName; }
    /// Where the next question starts: the last file, at first the user's home.
    static QDir &lastPath() { return s_lastPath; }
    /// From material ids of files to those of the registry. Outlives each opening; entries are only
    /// overwritten.
    static Model::Persistence::MaterialMap &materialMap() { return s_materialMap; }

    /// Told of a file's material that differs from the local one of the same id, which then gets no
    /// entry in the map. Nobody sets it at present.
    static void setMaterialConflictObserver(boost::shared_ptr<Util::IObserver> observer);
    static boost::shared_ptr<Util::IObserver> materialConflictObserver();
    /// The two sides of the last conflict that the observer was told of.
    static void setMaterialConflict(const Model::Materials::Material &known,
                                    const Model::Materials::Material &loaded);
    static const Model::Materials::Material &knownMaterial() { return s_knownMaterial; }
    static const Model::Materials::Material &loadedMaterial() { return s_loadedMaterial; }

    void next() override;
    void cancel() override;
    void end() override;

private:
    static QString s_fileName;
    static QDir s_lastPath;
    static Model::Persistence::MaterialMap s_materialMap;
    static boost::shared_ptr<Util::IObserver> s_observer;
    static boost::shared_ptr<Util::IObserver> s_materialConflictObserver;
    static Model::Materials::Material s_knownMaterial;
    static Model::Materials::Material s_loadedMaterial;

    Workspace *m_workspace;
};

} // namespace Core::Operations
