#include "Model/Persistence/TotalVolumeArchiver.h"

#include "Model/Automaton/CellCount.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"
#include "Model/Persistence/StartElement.h"

#include <QChar>
#include <QIODevice>
#include <QLatin1String>
#include <QString>
#include <QTextCodec>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace Model::Persistence {

using Automaton::TotalVolume;
using Automaton::Voxel;

namespace {

/// The map of the archiver, ready for loops over cells.
class IdTable final
{
public:
    explicit IdTable(const MaterialMap *map) : m_map(map)
    {
        if (!map || map->empty())
            return;
        const auto end = map->lower_bound(DenseIds);
        m_dense.resize(end == map->begin() ? 0 : std::size_t{std::prev(end)->first} + 1);
        for (std::size_t id = 0; id < m_dense.size(); ++id)
            m_dense[id] = static_cast<std::uint32_t>(id);
        for (auto entry = map->begin(); entry != end; ++entry)
            m_dense[entry->first] = entry->second;
        m_hasSparse = end != map->end();
    }

    std::uint32_t operator()(std::uint32_t id) const
    {
        if (id < m_dense.size())
            return m_dense[id];
        return m_hasSparse ? sparse(id) : id;
    }

private:
    static constexpr std::uint32_t DenseIds = 65536;

    std::uint32_t sparse(std::uint32_t id) const
    {
        const auto entry = m_map->find(id);
        return entry == m_map->end() ? id : entry->second;
    }

    const MaterialMap *m_map;
    std::vector<std::uint32_t> m_dense;
    bool m_hasSparse = false;
};

/// Writes the ids of cells as decimal numbers, a blank behind each, into the text of the writer's
/// open element, through one buffer that is written whenever it is full.
///
/// Digits and blanks are what they are in UTF-8 and never need escaping, so they go straight to the
/// writer's device: through the writer each of them would be widened, examined, copied and encoded,
/// which takes several times as long as writing does.
class CellTextWriter final
{
public:
    explicit CellTextWriter(QXmlStreamWriter &writer) : m_writer(writer)
    {
        // Also for an empty text: closes the start tag, so that `State` has an end tag.
        m_writer.writeCharacters(QString());
        m_text.resize(BufferSize);
        m_next = m_text.data();
        format(0);
    }

    void append(std::uint32_t id)
    {
        if (id != m_id)
            format(id);
        if (m_next > m_text.data() + (BufferSize - NumberSize))
            flush();
        // All of it, as a copy of fixed length takes no loop; what is too much is overwritten.
        std::copy_n(m_number, NumberSize, m_next);
        m_next += m_length;
    }

    void flush()
    {
        const auto length = static_cast<int>(m_next - m_text.data());
        // A writer without a device fills a string; one with another encoding has its own bytes.
        QIODevice *const device = m_writer.device();
        if (device && m_writer.codec()->mibEnum() == Utf8)
            device->write(m_text.data(), length);
        else
            m_writer.writeCharacters(QString::fromLatin1(m_text.data(), length));
        m_next = m_text.data();
    }

private:
    static constexpr std::size_t BufferSize = 65536;
    /// Ten digits and a blank, and more to copy even.
    static constexpr int NumberSize = 16;
    /// Number of the encoding in the registry of the IANA.
    static constexpr int Utf8 = 106;

    void format(std::uint32_t id)
    {
        m_id = id;
        char digits[NumberSize];
        int count = 0;
        do {
            digits[count++] = static_cast<char>('0' + id % 10);
            id /= 10;
        } while (id != 0);
        std::reverse_copy(digits, digits + count, m_number);
        m_number[count] = ' ';
        m_length = count + 1;
    }

    QXmlStreamWriter &m_writer;
    std::vector<char> m_text;
    char *m_next = nullptr;
    std::uint32_t m_id = 0;
    char m_number[NumberSize] = {};
    int m_length = 0;
};

/// Reads numbers that are separated by blanks into a list, until that is full. The text may come in
/// pieces that are cut anywhere.
class CellTextReader final
{
public:
    CellTextReader(std::vector<std::uint32_t> &ids, const IdTable &table)
        : m_ids(ids),
          m_table(table)
    {}

    void append(const QStringRef &piece)
    {
        const QChar *at = piece.data();
        const QChar *const end = at + piece.size();
        // A part that an earlier piece left open goes on.
        if (!m_open.isEmpty()) {
            const QChar *const rest = std::find(at, end, Separator);
            m_open.append(at, static_cast<int>(rest - at));
            if (rest == end)
                return;
            finish();
            at = rest;
        }
        while (m_count < m_ids.size()) {
            // Most of a volume is numbers of one digit, one blank behind each.
            if (end - at > 1 && at[1] == Separator && isDigit(at[0])) {
                store(digitOf(at[0]));
                at += 2;
                continue;
            }
            while (at != end && *at == Separator)
                ++at;
            const QChar *const start = at;
            std::uint32_t value = 0;
            for (; at != end; ++at) {
                if (!isDigit(*at))
                    break;
                value = value * 10 + digitOf(*at);
            }
            // Signs, white space and whatever else is rare, and numbers that may be too large.
            if (at == end || *at != Separator || at - start > SafeDigits) {
                at = std::find(at, end, Separator);
                if (at == end) {
                    m_open.append(start, static_cast<int>(at - start));
                    return;
                }
                value = QString::fromRawData(start, static_cast<int>(at - start)).toUInt();
            }
            store(value);
        }
    }

    /// The text has ended.
    void finish()
    {
        if (!m_open.isEmpty() && m_count < m_ids.size())
            store(m_open.toUInt());
        m_open.clear();
    }

private:
    static constexpr QLatin1Char Separator{' '};
    static constexpr std::ptrdiff_t SafeDigits = 9;

    static std::uint32_t digitOf(QChar character)
    {
        return std::uint32_t{character.unicode()} - '0';
    }
    static bool isDigit(QChar character) { return digitOf(character) <= 9; }
    void store(std::uint32_t id) { m_ids[m_count++] = m_table(id); }

    std::vector<std::uint32_t> &m_ids;
    const IdTable &m_table;
    std::size_t m_count = 0;
    QString m_open;
};

/// The text of the reader's element up to its end, or to where an error ends the document. An
/// element inside is such an error. The pieces are read where they lie, as a copy of the whole text
/// would be the largest thing in memory.
void readCells(QXmlStreamReader &reader, CellTextReader &cells)
{
    for (;;) {
        switch (reader.readNext()) {
        case QXmlStreamReader::Characters:
        case QXmlStreamReader::EntityReference:
            cells.append(reader.text());
            break;
        case QXmlStreamReader::ProcessingInstruction:
        case QXmlStreamReader::Comment:
            break;
        case QXmlStreamReader::StartElement:
            reader.raiseError(QStringLiteral("Expected character data."));
            cells.finish();
            return;
        default:
            cells.finish();
            return;
        }
    }
}

/// What is no number, or none that a volume can do with, counts as absent.
float cellSize(const QXmlStreamAttributes &attributes, const char *name)
{
    bool ok = false;
    const float size = attributes.value(QLatin1String(name)).toFloat(&ok);
    return ok && std::isfinite(size) && size > 0.0f ? size : 1.0f;
}

double coordinate(const QXmlStreamAttributes &attributes, const char *name)
{
    bool ok = false;
    const float value = attributes.value(QLatin1String(name)).toFloat(&ok);
    return ok && std::isfinite(value) ? static_cast<double>(value) : 0.0;
}

void writeNumber(QXmlStreamWriter &writer, const char *name, std::uint32_t value)
{
    writer.writeAttribute(QLatin1String(name), QString::number(value));
}

void writeNumber(QXmlStreamWriter &writer, const char *name, double value)
{
    writer.writeAttribute(QLatin1String(name), QString::number(value, 'g', 6));
}

} // namespace

void TotalVolumeArchiver::save(const boost::shared_ptr<Object> &object)
{
    const auto volume = boost::dynamic_pointer_cast<TotalVolume>(object);
    if (!m_writer || !volume)
        return;
    m_writer->writeStartElement(QStringLiteral("Object"));
    writeNumber(*m_writer, "object-type", volume->objectType());
    writeNumber(*m_writer, "size-x", volume->sizeX());
    writeNumber(*m_writer, "size-y", volume->sizeY());
    writeNumber(*m_writer, "size-z", volume->sizeZ());
    writeNumber(*m_writer, "cellsize-x", static_cast<double>(volume->cellSizeX()));
    writeNumber(*m_writer, "cellsize-y", static_cast<double>(volume->cellSizeY()));
    writeNumber(*m_writer, "cellsize-z", static_cast<double>(volume->cellSizeZ()));

    const std::uint32_t count = volume->sizeX() * volume->sizeY() * volume->sizeZ();
    const Voxel *cells = volume->voxels();
    m_writer->writeStartElement(QStringLiteral("State"));
    const IdTable table(m_materialMap);
    CellTextWriter text(*m_writer);
    for (std::uint32_t i = 0; i < count; ++i)
        text.append(table(cells[i].material()));
    text.flush();
    volume->releaseVoxels();
    m_writer->writeEndElement();

    const Util::Vector3D position = volume->position();
    m_writer->writeStartElement(QStringLiteral("Position"));
    writeNumber(*m_writer, "pos-x", position[0]);
    writeNumber(*m_writer, "pos-y", position[1]);
    writeNumber(*m_writer, "pos-z", position[2]);
    m_writer->writeEndElement();
    m_writer->writeEndElement();
}

boost::shared_ptr<Object> TotalVolumeArchiver::load()
{
    if (!m_reader)
        return {};
    const QXmlStreamAttributes attributes = m_reader->attributes();
    std::uint32_t sizes[3] = {attributes.value(QLatin1String("size-x")).toUInt(nullptr, 10),
                              attributes.value(QLatin1String("size-y")).toUInt(nullptr, 10),
                              attributes.value(QLatin1String("size-z")).toUInt(nullptr, 10)};
    const float cellSizes[3] = {cellSize(attributes, "cellsize-x"),
                                cellSize(attributes, "cellsize-y"),
                                cellSize(attributes, "cellsize-z")};
    // The number of cells has 32 bits. Sizes that need more would promise cells that are not there
    // to whoever walks the volume.
    if (!Automaton::countCells(sizes[0], sizes[1], sizes[2]))
        std::fill(sizes, sizes + 3, 0u);
    const std::uint32_t count = sizes[0] * sizes[1] * sizes[2];
    if (!Automaton::fitIntoMemory(count))
        return {};

    std::vector<std::uint32_t> ids(count, 0);
    if (moveToNextStartElement(*m_reader) && m_reader->name() == QLatin1String("State")) {
        const IdTable table(m_materialMap);
        CellTextReader cells(ids, table);
        readCells(*m_reader, cells);
    }
    Util::Vector3D position;
    if (moveToNextStartElement(*m_reader) && m_reader->name() == QLatin1String("Position")) {
        const QXmlStreamAttributes place = m_reader->attributes();
        position = Util::Vector3D(coordinate(place, "pos-x"), coordinate(place, "pos-y"),
                                  coordinate(place, "pos-z"));
    }
    const auto volume = boost::make_shared<TotalVolume>(sizes[0], sizes[1], sizes[2], cellSizes[0],
                                                        cellSizes[1], cellSizes[2], position, ids);
    // The pictures need memory of their own.
    std::vector<std::uint32_t>().swap(ids);
    volume->painter().rebuild();
    return volume;
}

} // namespace Model::Persistence
