#include "Model/Persistence/RegistryFile.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Model::Persistence {

namespace {

QString folderName()
{
    return QStringLiteral("Lithara");
}

} // namespace

RegistryFile::RegistryFile(const QString &fileName, const QString &rootName)
    : m_fileName(fileName),
      m_rootName(rootName)
{}

bool RegistryFile::load(const ElementReader &readElement) const
{
    QDir folder = QDir::home();
    // Without the folder the file is looked for in the home directory itself.
    folder.cd(folderName());

    QFile file(folder.filePath(m_fileName));
    if (!file.exists() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    return read(file, readElement);
}

bool RegistryFile::read(QIODevice &device, const ElementReader &readElement) const
{
    QXmlStreamReader reader(&device);
    if (!reader.readNextStartElement() || reader.name() != m_rootName) {
        return false;
    }
    // Every start element counts, at whatever depth.
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            qDebug() << "Element:" << reader.name();
            readElement(reader);
        }
    }
    if (reader.hasError()) {
        qDebug() << reader.errorString();
        return false;
    }
    return true;
}

void RegistryFile::save(const ElementWriter &writeElements) const
{
    QDir folder = QDir::home();
    folder.mkdir(folderName());
    if (!folder.cd(folderName())) {
        return;
    }

    QFile file(folder.filePath(m_fileName));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text | QIODevice::Truncate)) {
        return;
    }
    QXmlStreamWriter writer(&file);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(m_rootName);
    writeElements(writer);
    writer.writeEndElement();
    writer.writeEndDocument();
}

} // namespace Model::Persistence
