#include "Model/Persistence/ProcessArchiver.h"

#include <QDebug>
#include <QLatin1String>
#include <QStringList>
#include <QVector>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Model::Persistence {

namespace {

/// False if there is none left. Passes over end elements, as QXmlStreamReader::readNextStartElement
/// does not.
bool moveToNextStartElement(QXmlStreamReader &reader)
{
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            return true;
        }
    }
    return false;
}

} // namespace

Process::Process ProcessArchiver::loadProcess(QXmlStreamReader &reader, bool *ok)
{
    if (ok != nullptr) {
        *ok = false;
    }
    if (reader.name() != QLatin1String("Process")) {
        return Process::Process();
    }

    QString name;
    std::uint32_t id = 0;
    bool numbersOk = true;
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QStringRef key = attribute.name();
        const QStringRef value = attribute.value();
        qDebug() << "attribute: " << key << " -> " << value;
        bool converted = true;
        if (key == QLatin1String("process-id")) {
            id = value.toUInt(&converted, 10);
        } else if (key == QLatin1String("name")) {
            name = value.toString();
        } else if (key == QLatin1String("version")) {
            value.toUInt(&converted, 10);
        }
        numbersOk = numbersOk && converted;
    }
    if (!numbersOk || id == 0 || name.isEmpty()) {
        return Process::Process();
    }

    const Process::Process process(name, id, loadCompatibleMaterials(reader));
    if (ok != nullptr) {
        *ok = !reader.hasError();
    }
    return process;
}

std::vector<std::uint32_t> ProcessArchiver::loadCompatibleMaterials(QXmlStreamReader &reader)
{
    std::vector<std::uint32_t> ids;
    // So a process without the child takes the start element that follows it, whatever it is, and
    // that one is not entered itself. Kept on purpose: users' files have always been read this way.
    if (!moveToNextStartElement(reader)) {
        return ids;
    }
    qDebug() << "Element: " << reader.name();
    if (reader.name() != QLatin1String("CompatibleMaterials") ||
        reader.readNext() != QXmlStreamReader::Characters) {
        return ids;
    }
    qDebug() << "text-> " << reader.text();
    const auto parts = reader.text().split(QLatin1Char(';'), Qt::SkipEmptyParts, Qt::CaseSensitive);
    for (const QStringRef &part : parts) {
        bool converted = false;
        const std::uint32_t id = part.toUInt(&converted, 10);
        if (converted) {
            ids.push_back(id);
        }
    }
    return ids;
}

void ProcessArchiver::saveProcess(const Process::Process &process, QXmlStreamWriter &writer)
{
    writer.writeStartElement(QStringLiteral("Process"));
    writer.writeAttribute(QStringLiteral("version"), QStringLiteral("1"));
    writer.writeAttribute(QStringLiteral("name"), process.name());
    writer.writeAttribute(QStringLiteral("process-id"), QString::number(process.id()));
    saveCompatibleMaterials(process, writer);
    writer.writeEndElement();
}

void ProcessArchiver::saveCompatibleMaterials(const Process::Process &process,
                                              QXmlStreamWriter &writer)
{
    QStringList ids;
    for (const std::uint32_t id : process.compatibleMaterialIds()) {
        ids.append(QString::number(id));
    }
    writer.writeTextElement(QStringLiteral("CompatibleMaterials"), ids.join(QLatin1Char(';')));
}

} // namespace Model::Persistence
