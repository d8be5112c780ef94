#pragma once

#include <QString>

#include <functional>

class QIODevice;

namespace Core {
class Workspace;
}

// All of this belongs to the user-interface thread.
namespace Core::Operations {

/// Writes a document to an open device; false if it cannot be written.
using DocumentWriter = std::function<bool(QIODevice &, Workspace &)>;

/// Writes the document of the workspace as XML: all materials of the registry, then the objects
/// with their cells. Objects that have no archiver are left out, with a line on the console. Always
/// true, whatever became of the bytes.
bool writeDocument(QIODevice &device, Workspace &workspace);

/// Enters the materials of the file into the registry and adds its objects to the document. False,
/// with nothing changed, if the file is no document; a document that breaks off or has errors
/// further on counts, with what could be read. Does not return for a document with a material that
/// differs from the local one of the same id. Expects a current OpenGL context.
bool readDocument(QIODevice &device, Workspace &workspace);

/// Writes the file and makes it the document's own. Nothing happens if it cannot be opened. If the
/// writer fails, the file is removed and the user told.
void saveDocument(const QString &fileName, Workspace &workspace,
                  const DocumentWriter &write = writeDocument);

/// Reads the file into the document of the workspace, which is a new one, and makes it the
/// document's own. Nothing happens if it cannot be opened. A file that is no document is removed
/// and the user told. Returns, and expects a current OpenGL context, as readDocument() does.
void openDocument(const QString &fileName, Workspace &workspace);

} // namespace Core::Operations
