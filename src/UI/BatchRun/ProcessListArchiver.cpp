#include "UI/BatchRun/ProcessListArchiver.h"

#include <QColor>
#include <QDebug>
#include <QFile>
#include <QLatin1String>
#include <QVector>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Ui {

namespace {

const QString listElement = QStringLiteral("Process-List");
const QString stepElement = QStringLiteral("Process-Data");
const QString parameterElement = QStringLiteral("Parameter");

QString maskText(const std::vector<bool> &mask)
{
    QString text(int(mask.size()), QLatin1Char('0'));
    QChar *out = text.data();
    for (const bool bit : mask) {
        *out++ = QLatin1Char(bit ? '1' : '0');
    }
    return text;
}

std::vector<bool> maskFrom(const QStringRef &text)
{
    std::vector<bool> mask(std::size_t(text.size()));
    std::transform(text.begin(), text.end(), mask.begin(),
                   [](QChar character) { return character == QLatin1Char('1'); });
    return mask;
}

QString vectorText(const Util::Vector3D &vector)
{
    const auto number = [&](unsigned axis) { return QString::number(vector[axis], 'g', 10); };
    return number(0) + QLatin1Char(';') + number(1) + QLatin1Char(';') + number(2);
}

/// Parts that are missing are 0.
Util::Vector3D vectorFrom(const QStringRef &text)
{
    const QVector<QStringRef> parts = text.split(QLatin1Char(';'), Qt::KeepEmptyParts);
    Util::Vector3D vector;
    for (int axis = 0; axis < std::min(parts.size(), 3); ++axis) {
        vector[unsigned(axis)] = parts[axis].toDouble();
    }
    return vector;
}

QColor colorFrom(const QStringRef &text)
{
    QColor color;
    color.setNamedColor(text);
    return color;
}

/// The contents of `parameter-type` and `parameter-data`.
std::pair<QString, QString> typeAndData(const QVariant &value)
{
    if (value.canConvert<std::vector<bool>>()) {
        return {QStringLiteral("vector"), maskText(value.value<std::vector<bool>>())};
    }
    if (value.canConvert<Util::Vector3D>()) {
        return {QStringLiteral("Util::Vector3D"), vectorText(value.value<Util::Vector3D>())};
    }
    const QString type = QString::fromLatin1(value.typeName());
    if (value.userType() == QMetaType::QColor) {
        // The variant's own text has eight digits for a colour that is not opaque, alpha first.
        return {type, value.value<QColor>().name(QColor::HexRgb)};
    }
    return {type, value.toString()};
}

/// Invalid for a type that is not written by `typeAndData`. Data that is no number gives 0.
QVariant valueFrom(const QStringRef &type, const QStringRef &data)
{
    if (type == QLatin1String("bool")) {
        return data == QLatin1String("true");
    }
    if (type == QLatin1String("float")) {
        return QVariant::fromValue(data.toFloat());
    }
    if (type == QLatin1String("double")) {
        return data.toDouble();
    }
    if (type == QLatin1String("int")) {
        return data.toInt(nullptr, 10);
    }
    if (type == QLatin1String("uint")) {
        return data.toUInt(nullptr, 10);
    }
    if (type == QLatin1String("QString")) {
        return data.toString();
    }
    if (type == QLatin1String("QColor")) {
        return colorFrom(data);
    }
    if (type == QLatin1String("vector")) {
        return QVariant::fromValue(maskFrom(data));
    }
    if (type == QLatin1String("Util::Vector3D")) {
        return QVariant::fromValue(vectorFrom(data));
    }
    return QVariant();
}

} // namespace

ProcessListArchiver::ProcessListArchiver(const std::vector<ProcessData> &list) : m_list(list) {}

bool ProcessListArchiver::loadProcessList(const QString &fileName, std::vector<ProcessData> &list)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    return readProcessList(file, list);
}

bool ProcessListArchiver::saveProcessList(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        file.close();
        return false;
    }
    return writeProcessList(file);
}

bool ProcessListArchiver::readProcessList(QIODevice &device, std::vector<ProcessData> &list)
{
    m_reader.setDevice(&device);
    do {
        moveToNextTag();
    } while (m_reader.isStartElement() && !isAt(listElement));
    const bool found = isAt(listElement);

    if (found) {
        moveToNextTag();
        while (m_reader.isStartElement()) {
            if (isAt(stepElement)) {
                list.push_back(readProcessData());
            } else {
                qDebug() << "Unknown tag found in file: " << m_reader.name() << " in line "
                         << m_reader.lineNumber();
                moveToNextStartElement();
            }
        }
    }
    m_reader.clear();
    // Damage that the reader met does not count: the user gets what could be read.
    return found && !m_writer.hasError();
}

bool ProcessListArchiver::writeProcessList(QIODevice &device)
{
    m_writer.setDevice(&device);
    m_writer.setAutoFormatting(true);
    m_writer.writeStartDocument(QStringLiteral("1.0"));
    m_writer.writeStartElement(listElement);
    for (ProcessData &step : m_list) {
        writeProcessData(step);
    }
    m_writer.writeEndElement();
    m_writer.writeEndDocument();
    m_writer.setDevice(nullptr);
    return !m_writer.hasError();
}

void ProcessListArchiver::writeProcessData(ProcessData &step)
{
    m_writer.writeStartElement(stepElement);
    m_writer.writeAttribute(QStringLiteral("process-type"), QString::number(step.processType()));
    const QMap<QString, QVariant> parameters = step.parameters();
    for (auto entry = parameters.begin(); entry != parameters.end(); ++entry) {
        const auto [type, data] = typeAndData(entry.value());
        m_writer.writeEmptyElement(parameterElement);
        m_writer.writeAttribute(QStringLiteral("parameter-name"), entry.key());
        m_writer.writeAttribute(QStringLiteral("parameter-type"), type);
        m_writer.writeAttribute(QStringLiteral("parameter-data"), data);
        m_writer.writeAttribute(QStringLiteral("parameter-visibility"),
                                step.isVisible(entry.key()) ? QStringLiteral("true")
                                                            : QStringLiteral("false"));
    }
    m_writer.writeEndElement();
}

ProcessData ProcessListArchiver::readProcessData()
{
    qDebug() << "Starting parse of : " << m_reader.name() << " in line " << m_reader.lineNumber();
    if (!isAt(stepElement)) {
        return ProcessData(ProcessData::Unreadable);
    }

    ProcessData step(m_reader.attributes().value(QLatin1String("process-type")).toInt(nullptr, 10));
    moveToNextTag();
    while (isAt(parameterElement)) {
        const QXmlStreamAttributes attributes = m_reader.attributes();
        const QStringRef visibility = attributes.value(QLatin1String("parameter-visibility"));
        step.setParameter(attributes.value(QLatin1String("parameter-name")).toString(),
                          valueFrom(attributes.value(QLatin1String("parameter-type")),
                                    attributes.value(QLatin1String("parameter-data"))),
                          visibility.isEmpty() || visibility == QLatin1String("true"));
        moveToNextTag();
    }
    return step;
}

void ProcessListArchiver::moveToNextStartElement()
{
    QXmlStreamReader::TokenType token;
    do {
        token = m_reader.readNext();
    } while (token != QXmlStreamReader::StartElement && token != QXmlStreamReader::EndDocument &&
             token != QXmlStreamReader::Invalid);
}

void ProcessListArchiver::moveToNextTag()
{
    moveToNextStartElement();
    // After an error the reader still has the name of the element in which it met it.
    const QStringRef name = m_reader.isStartElement() ? m_reader.name() : QStringRef();
    qDebug() << "CurrentTag: " << name << " in line " << m_reader.lineNumber();
}

bool ProcessListArchiver::isAt(const QString &elementName) const
{
    return m_reader.isStartElement() && m_reader.name() == elementName;
}

} // namespace Ui
