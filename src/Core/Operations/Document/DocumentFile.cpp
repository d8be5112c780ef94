#include "Core/Operations/Document/DocumentFile.h"

#include "Core/Operations/Document/OpenDocumentOperation.h"
#include "Core/Workspace.h"
#include "Model/Materials/MaterialFactory.h"
#include "Model/Object.h"
#include "Model/Persistence/MaterialArchiver.h"
#include "Model/Persistence/ObjectArchiver.h"
#include "Model/Persistence/StartElement.h"

#include <QFile>
#include <QLatin1String>
#include <QMessageBox>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cstdint>
#include <new>

namespace Core::Operations {

using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Model::Persistence::MaterialArchiver;
using Model::Persistence::moveToNextStartElement;
using Model::Persistence::ObjectArchiver;

namespace {

void readMaterial(QXmlStreamReader &reader, Workspace &workspace)
{
    bool ok = false;
    Material loaded = MaterialArchiver::loadMaterial(&reader, &ok);
    if (!ok) {
        workspace.interpreter().writeMessage(
            "WARNING: There was an error loading a material. This may alter the loaded cell "
            "volume.");
        return;
    }
    const auto registry = MaterialFactory::instance();
    const Material known = registry->material(loaded.id());
    auto &map = OpenDocumentOperation::materialMap();
    if (known.id() == 0) {
        registry->updateMaterial(loaded);
        map[loaded.id()] = loaded.id();
    } else if (known == loaded) {
        map[loaded.id()] = known.id();
    } else if (OpenDocumentOperation::materialConflictObserver()) {
        OpenDocumentOperation::setMaterialConflict(known, loaded);
        // A copy: the observer may set another one.
        const boost::shared_ptr<Util::IObserver> observer =
            OpenDocumentOperation::materialConflictObserver();
        observer->update();
    } else {
        const std::uint32_t newId = registry->newMaterialId();
        map[loaded.id()] = newId;
        loaded.setId(newId);
        registry->updateMaterial(loaded);
    }
}

void readObject(QXmlStreamReader &reader, Workspace &workspace)
{
    const std::uint32_t type =
        reader.attributes().value(QLatin1String("object-type")).toUInt(nullptr, 10);
    const boost::shared_ptr<ObjectArchiver> archiver = workspace.archives().archiver(type);
    if (!archiver)
        return;
    archiver->setReader(&reader);
    archiver->setMaterialMap(&OpenDocumentOperation::materialMap());
    boost::shared_ptr<Model::Object> object;
    try {
        object = archiver->load();
    } catch (const std::bad_alloc &) {
        // Said below; the document goes on without the object.
    }
    // The archiver outlives the reader.
    archiver->setReader(nullptr);
    if (object)
        workspace.document().addObject(object);
    else
        workspace.interpreter().writeMessage(
            "Open document: An object does not fit into memory and was left out.");
}

void readElements(QXmlStreamReader &reader, std::uint32_t /*version*/, Workspace &workspace)
{
    while (moveToNextStartElement(reader)) {
        if (reader.name() == QLatin1String("Material"))
            readMaterial(reader, workspace);
        else if (reader.name() == QLatin1String("Object"))
            readObject(reader, workspace);
    }
}

} // namespace

bool writeDocument(QIODevice &device, Workspace &workspace)
{
    QXmlStreamWriter writer(&device);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Document"));
    writer.writeEmptyElement(QStringLiteral("Header"));
    writer.writeAttribute(QStringLiteral("version"), QStringLiteral("1"));
    for (const Material &material : MaterialFactory::instance()->materials())
        MaterialArchiver::saveMaterial(&writer, material);
    for (const boost::shared_ptr<Model::Object> &object : workspace.document().objects()) {
        const boost::shared_ptr<ObjectArchiver> archiver =
            workspace.archives().archiver(object->objectType());
        if (!archiver) {
            workspace.interpreter().writeMessage(
                "Save document: An object of a kind that cannot be saved was left out.");
            continue;
        }
        archiver->setWriter(&writer);
        archiver->save(object);
        // The archiver outlives the writer.
        archiver->setWriter(nullptr);
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    return true;
}

bool readDocument(QIODevice &device, Workspace &workspace)
{
    QXmlStreamReader reader(&device);
    if (!moveToNextStartElement(reader) || reader.name() != QLatin1String("Document"))
        return false;
    if (!moveToNextStartElement(reader) || reader.name() != QLatin1String("Header"))
        return false;
    const QXmlStreamAttributes attributes = reader.attributes();
    // Its first attribute, whatever the name.
    const std::uint32_t version = attributes.isEmpty() ? 0 : attributes.first().value().toUInt();
    readElements(reader, version, workspace);
    return true;
}

void saveDocument(const QString &fileName, Workspace &workspace, const DocumentWriter &write)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    if (write(file, workspace)) {
        workspace.document().setFileName(fileName);
        file.flush();
        file.close();
        return;
    }
    file.remove();
    file.close();
    QMessageBox::information(nullptr, QStringLiteral("Error writing to file"),
                             QStringLiteral("Unable to save document to the specified file."),
                             QMessageBox::Ok);
}

void openDocument(const QString &fileName, Workspace &workspace)
{
    OpenDocumentOperation::setFileName(fileName);
    OpenDocumentOperation::lastPath().setPath(fileName);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    if (!readDocument(file, workspace)) {
        file.remove();
        file.close();
        // The text speaks of saving on purpose: it is the one that users know from there.
        QMessageBox::information(nullptr, QStringLiteral("Error reading from file"),
                                 QStringLiteral("Unable to save document to the specified file."),
                                 QMessageBox::Ok);
        return;
    }
    // What could be taken back belongs to the document before.
    workspace.history().clear();
    workspace.document().setFileName(fileName);
    Util::notify(workspace.updateObservers());
    file.flush();
    file.close();
}

} // namespace Core::Operations
