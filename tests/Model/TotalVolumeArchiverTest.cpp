#include "Model/Persistence/TotalVolumeArchiver.h"

#include "Model/Automaton/TotalVolume.h"
#include "Model/Object.h"
#include "Support/Volumes.h"

#include <QString>
#include <QStringList>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Ids = std::vector<std::uint32_t>;
using Model::Automaton::TotalVolume;
using Model::Persistence::MaterialMap;
using Model::Persistence::TotalVolumeArchiver;
using Support::Grid;
using Support::makeVolume;
using Util::Vector3D;

const char *const CubeAttributes = "object-type=\"1\" size-x=\"2\" size-y=\"2\" size-z=\"2\" "
                                   "cellsize-x=\"1\" cellsize-y=\"1\" cellsize-z=\"1\"";

/// Not a cell volume.
class OtherObject final : public Model::Object
{
public:
    std::uint32_t objectType() const override { return ExtractedModelType; }
    void draw(bool, bool) override {}
    void drawForPicking() override {}
    Object *clone() override { return nullptr; }
    void translate(const Vector3D &) override {}
    void unusedVectorPair(const Vector3D &, const Vector3D &) override {}
};

QString save(const boost::shared_ptr<Model::Object> &object, const MaterialMap *map = nullptr)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    TotalVolumeArchiver archiver;
    archiver.setWriter(&writer);
    archiver.setMaterialMap(map);
    archiver.save(object);
    return xml;
}

boost::shared_ptr<TotalVolume> loadFrom(QXmlStreamReader &reader, const MaterialMap *map = nullptr)
{
    TotalVolumeArchiver archiver;
    archiver.setReader(&reader);
    archiver.setMaterialMap(map);
    return boost::dynamic_pointer_cast<TotalVolume>(archiver.load());
}

boost::shared_ptr<TotalVolume> load(const QString &xml, const MaterialMap *map = nullptr)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    return loadFrom(reader, map);
}

QString object(const QString &attributes, const QString &children)
{
    return QStringLiteral("<Object %1>%2</Object>").arg(attributes, children);
}

QString cube(const QString &state)
{
    return object(CubeAttributes, QStringLiteral("<State>%1</State><Position pos-x=\"0\" "
                                                 "pos-y=\"0\" pos-z=\"0\"/>")
                                      .arg(state));
}

Ids cubeIds(const QString &state, const MaterialMap *map = nullptr)
{
    const auto volume = load(cube(state), map);
    return volume ? Support::materialsOf(*volume) : Ids();
}

/// What the text of a state means: parts between blanks, the empty ones left out, each a decimal
/// number or 0.
Ids meaningOf(const QString &text, std::size_t cells, const MaterialMap &map = {})
{
    Ids ids(cells, 0);
    std::size_t next = 0;
    for (const QString &part : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (next == cells)
            break;
        const std::uint32_t id = part.toUInt(nullptr, 10);
        const auto entry = map.find(id);
        ids[next++] = entry == map.end() ? id : entry->second;
    }
    return ids;
}

void expectPosition(const TotalVolume &volume, double x, double y, double z)
{
    const Vector3D position = volume.position();
    EXPECT_EQ(position[0], x);
    EXPECT_EQ(position[1], y);
    EXPECT_EQ(position[2], z);
}

unsigned randomSeed()
{
    const unsigned seed = std::random_device()();
    testing::Test::RecordProperty("seed", std::to_string(seed));
    return seed;
}

TEST(TotalVolumeArchiverTest, WritesAttributesStateAndPositionInTheirOrder)
{
    const auto volume = boost::make_shared<TotalVolume>(2u, 2u, 2u, 1.0f, 0.5f, 0.35f,
                                                        Vector3D(1.5, -2.0, 1234567.0),
                                                        Ids{1, 0, 3, 14, 0, 0, 4294967295u, 1});
    EXPECT_EQ(save(volume).toStdString(),
              "<Object object-type=\"1\" size-x=\"2\" size-y=\"2\" size-z=\"2\" "
              "cellsize-x=\"1\" cellsize-y=\"0.5\" cellsize-z=\"0.35\">"
              "<State>1 0 3 14 0 0 4294967295 1 </State>"
              "<Position pos-x=\"1.5\" pos-y=\"-2\" pos-z=\"1.23457e+06\"/></Object>");
}

TEST(TotalVolumeArchiverTest, ZRunsFastestInTheStateAndXSlowest)
{
    const auto volume =
        makeVolume(Grid{2, 3, 4}, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return 100 * (x + 1) + 10 * y + z;
        });
    EXPECT_TRUE(save(volume).contains("<State>100 101 102 103 110 111 112 113 120 121 122 123 "
                                      "200 201 202 203 210 211 212 213 220 221 222 223 </State>"));
}

TEST(TotalVolumeArchiverTest, VolumeWithoutCellsHasAnEmptyStateWithAClosingTag)
{
    EXPECT_EQ(save(makeVolume(Grid{0, 5, 3}, Ids())).toStdString(),
              "<Object object-type=\"1\" size-x=\"0\" size-y=\"5\" size-z=\"3\" "
              "cellsize-x=\"1\" cellsize-y=\"1\" cellsize-z=\"1\"><State></State>"
              "<Position pos-x=\"0\" pos-y=\"0\" pos-z=\"0\"/></Object>");
}

TEST(TotalVolumeArchiverTest, LongStateIsWrittenWithoutAGap)
{
    // Numbers of every length, so that pieces of the text may end anywhere.
    Ids ids(30000);
    std::mt19937 random(1);
    for (std::uint32_t &id : ids)
        id = static_cast<std::uint32_t>(random()) >> (random() % 32);
    QString text;
    for (const std::uint32_t id : ids)
        text += QString::number(id) + QLatin1Char(' ');
    EXPECT_TRUE(save(makeVolume(Grid{30, 100, 10}, ids))
                    .contains(QStringLiteral("<State>") + text + QStringLiteral("</State>")));
}

TEST(TotalVolumeArchiverTest, WritesWhatTheMapSaysWhereItHasAnEntry)
{
    const MaterialMap map = {{0, 7}, {1, 20}, {4000000000u, 2}};
    EXPECT_TRUE(save(makeVolume(Grid{1, 1, 5}, Ids{0, 1, 3, 4000000000u, 4000000001u}), &map)
                    .contains("<State>7 20 3 2 4000000001 </State>"));
}

TEST(TotalVolumeArchiverTest, WritesNothingWithoutAWriterOrForAnotherObject)
{
    TotalVolumeArchiver archiver;
    const auto volume = makeVolume(Grid{1, 1, 1}, Ids{1});
    archiver.save(volume);
    volume->voxels();
    volume->releaseVoxels();
    EXPECT_EQ(save(boost::make_shared<OtherObject>()), QString());
    EXPECT_EQ(save(boost::shared_ptr<Model::Object>()), QString());
}

TEST(TotalVolumeArchiverTest, SavingWaitsForWhoHoldsTheCells)
{
    const auto volume = makeVolume(Grid{1, 1, 1}, Ids{1});
    volume->voxels();
    auto saving = std::async(std::launch::async, [&] { return save(volume); });
    EXPECT_EQ(saving.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    volume->releaseVoxels();
    EXPECT_TRUE(saving.get().contains("<State>1 </State>"));
}

TEST(TotalVolumeArchiverTest, LoadsNothingWithoutAReader)
{
    TotalVolumeArchiver archiver;
    EXPECT_FALSE(archiver.load());
}

TEST(TotalVolumeArchiverTest, LoadsSizesCellSizesPlaceAndCellsAndBuildsThePicture)
{
    const auto volume = load(object("object-type=\"1\" size-x=\"1\" size-y=\"2\" size-z=\"3\" "
                                    "cellsize-x=\"1\" cellsize-y=\"2.5\" cellsize-z=\"0.35\"",
                                    "<State>1 0 3 4 5 6 </State>"
                                    "<Position pos-x=\"-1.5\" pos-y=\"2e3\" pos-z=\"0.5\"/>"));
    ASSERT_TRUE(volume);
    EXPECT_EQ(volume->sizeX(), 1u);
    EXPECT_EQ(volume->sizeY(), 2u);
    EXPECT_EQ(volume->sizeZ(), 3u);
    EXPECT_EQ(volume->cellSizeX(), 1.0f);
    EXPECT_EQ(volume->cellSizeY(), 2.5f);
    EXPECT_EQ(volume->cellSizeZ(), 0.35f);
    expectPosition(*volume, -1.5, 2000.0, 0.5);
    EXPECT_EQ(Support::materialsOf(*volume), (Ids{1, 0, 3, 4, 5, 6}));
    EXPECT_EQ(Support::nextMaterialsOf(*volume), (Ids{1, 0, 3, 4, 5, 6}));
    // Five filled cells of a column pair: 30 sides less twice the four contacts.
    EXPECT_EQ(volume->painter().opaqueFaces().size(), 22u);
}

TEST(TotalVolumeArchiverTest, StateWithFewerNumbersThanCellsLeavesTheRemainingCellsEmpty)
{
    EXPECT_EQ(cubeIds("1 3 4"), (Ids{1, 3, 4, 0, 0, 0, 0, 0}));
    EXPECT_EQ(cubeIds(""), Ids(8, 0));
    EXPECT_EQ(cubeIds("   "), Ids(8, 0));
}

TEST(TotalVolumeArchiverTest, SurplusNumbersOfTheStateAreIgnored)
{
    EXPECT_EQ(cubeIds("1 2 3 4 5 6 7 8 9 10 11"), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(cubeIds("1 2 3 4 5 6 7 8 x"), (Ids{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(TotalVolumeArchiverTest, EmptyPartsAreSkippedAndBadEntriesAreEmptyCells)
{
    EXPECT_EQ(cubeIds("  1   x 3 -4 5.0 4294967296 4294967295 8"),
              (Ids{1, 0, 3, 0, 0, 0, 4294967295u, 8}));
}

TEST(TotalVolumeArchiverTest, OnlyBlanksSeparateNumbers)
{
    EXPECT_EQ(cubeIds("1\n2 3\t4 5,6 \n7 8\n +9 10"), (Ids{0, 0, 0, 7, 8, 9, 10, 0}));
}

TEST(TotalVolumeArchiverTest, LeadingZerosAndLongNumbersCount)
{
    EXPECT_EQ(
        cubeIds("007 00000000000000000012 000000000 0000000004294967295 1000000000 9999999999"),
        (Ids{7, 12, 0, 4294967295u, 1000000000u, 0, 0, 0}));
}

TEST(TotalVolumeArchiverTest, TextInPiecesReadsAsOneText)
{
    EXPECT_EQ(cubeIds("1<!-- 9 -->2 3<![CDATA[4 5]]>6&#32;7<?pi 9?> &#56;&#57; 1"),
              (Ids{12, 34, 56, 7, 89, 1, 0, 0}));
}

TEST(TotalVolumeArchiverTest, RandomTextsReadAsTheirPartsDo)
{
    const unsigned seed = randomSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const QStringList pieces = {"0",           "1",       "16",  "4294967295", "4294967296",
                                "99999999999", "-1",      "+1",  "x",          "1.5",
                                "0x10",        "\n",      "\t2", "3\n",        " ",
                                " ",           " ",       "  ",  "007",        "1,000",
                                "\u0663",      "\u00a05", "1e3", "12 34 ",     "0000000000"};
    for (int round = 0; round < 1000; ++round) {
        QString text;
        const int parts = static_cast<int>(random() % 30);
        for (int i = 0; i < parts; ++i)
            text += pieces.at(static_cast<int>(random() % static_cast<unsigned>(pieces.size())));
        MaterialMap map;
        if (round % 2)
            map = {{1, 100}, {0, 5}, {4294967295u, 6}, {65536, 7}};
        EXPECT_EQ(cubeIds(text, &map), meaningOf(text, 8, map)) << text.toStdString();
    }
}

TEST(TotalVolumeArchiverTest, LoadingReplacesIdsThatHaveAnEntryInTheMap)
{
    const MaterialMap map = {{1, 2000}, {70000, 3}};
    EXPECT_EQ(cubeIds("1 2000 70000 70001 0", &map), (Ids{2000, 2000, 3, 70001, 0, 0, 0, 0}));
}

TEST(TotalVolumeArchiverTest, ElementInsideTheStateEndsTheDocumentThere)
{
    QXmlStreamReader reader(cube("1 2<Other/> 3"));
    reader.readNextStartElement();
    const auto volume = loadFrom(reader);
    ASSERT_TRUE(volume);
    EXPECT_EQ(Support::materialsOf(*volume), (Ids{1, 2, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(reader.hasError());
}

TEST(TotalVolumeArchiverTest, MissingAndUnreadableCellSizesAreOne)
{
    const auto volume = load(object(
        "size-x=\"1\" size-y=\"1\" size-z=\"1\" cellsize-y=\"wide\" cellsize-z=\"\"", "<State/>"));
    ASSERT_TRUE(volume);
    EXPECT_EQ(volume->cellSizeX(), 1.0f);
    EXPECT_EQ(volume->cellSizeY(), 1.0f);
    EXPECT_EQ(volume->cellSizeZ(), 1.0f);
}

TEST(TotalVolumeArchiverTest, CellSizesThatNoVolumeCanHaveAreOne)
{
    const QString attributes =
        QStringLiteral("size-x=\"1\" size-y=\"1\" size-z=\"1\" cellsize-x=\"%1\" "
                       "cellsize-y=\"%2\" cellsize-z=\"%3\"");
    for (const char *text :
         {"1e39", "-1e39", "1e400", "0", "-0", "1e-60", "-1", "nan", "-nan", "inf", "-inf"}) {
        SCOPED_TRACE(text);
        const QString bad = QString::fromLatin1(text);
        const auto volume = load(object(attributes.arg(bad, "2", bad), "<State>1</State>"));
        ASSERT_TRUE(volume);
        EXPECT_EQ(volume->cellSizeX(), 1.0f);
        EXPECT_EQ(volume->cellSizeY(), 2.0f);
        EXPECT_EQ(volume->cellSizeZ(), 1.0f);
        const auto other = load(object(attributes.arg("2", bad, "3"), "<State>1</State>"));
        ASSERT_TRUE(other);
        EXPECT_EQ(other->cellSizeX(), 2.0f);
        EXPECT_EQ(other->cellSizeY(), 1.0f);
        EXPECT_EQ(other->cellSizeZ(), 3.0f);
    }
}

TEST(TotalVolumeArchiverTest, MissingUnreadableAndTooLargeSizesAreZero)
{
    const char *const rows[] = {
        "size-y=\"2\" size-z=\"2\"", "size-x=\"two\" size-y=\"2\" size-z=\"2\"",
        "size-x=\"-2\" size-y=\"2\" size-z=\"2\"", "size-x=\"2.0\" size-y=\"2\" size-z=\"2\"",
        "size-x=\"4294967296\" size-y=\"2\" size-z=\"2\""};
    for (const char *row : rows) {
        const auto volume = load(object(row, "<State>1 2 3 4</State>"));
        ASSERT_TRUE(volume) << row;
        EXPECT_EQ(volume->sizeX(), 0u) << row;
        EXPECT_EQ(volume->sizeY(), 2u) << row;
        EXPECT_TRUE(Support::materialsOf(*volume).empty()) << row;
    }
}

TEST(TotalVolumeArchiverTest, VolumeWithASizeOfZeroHasNoCellsAndCanBePainted)
{
    const std::uint32_t rows[][3] = {{0, 0, 0},
                                     {0, 7, 9},
                                     {7, 0, 9},
                                     {7, 9, 0},
                                     {0, 4294967295u, 9},
                                     {0, 4294967295u, 4294967295u},
                                     {4294967295u, 0, 4294967295u},
                                     {4294967295u, 4294967295u, 0}};
    for (const auto &sizes : rows) {
        const auto volume = load(object(QStringLiteral("size-x=\"%1\" size-y=\"%2\" size-z=\"%3\"")
                                            .arg(sizes[0])
                                            .arg(sizes[1])
                                            .arg(sizes[2]),
                                        "<State>1 1 1 </State><Position pos-x=\"4\"/>"));
        ASSERT_TRUE(volume);
        EXPECT_EQ(volume->sizeX(), sizes[0]);
        EXPECT_EQ(volume->sizeY(), sizes[1]);
        EXPECT_EQ(volume->sizeZ(), sizes[2]);
        expectPosition(*volume, 4, 0, 0);
        volume->painter().setShowEmptyVoxels(true);
        volume->painter().rebuild();
        EXPECT_TRUE(volume->painter().opaqueFaces().empty());
        EXPECT_TRUE(volume->painter().emptyFaces().empty());
        volume->draw(true, true);
        volume->drawForPicking();
        const std::unique_ptr<TotalVolume> copy(volume->clone());
        copy->painter().rebuild();
    }
}

TEST(TotalVolumeArchiverTest, SizesWithMoreCellsThanANumberHoldsGiveAVolumeWithoutCells)
{
    // In 32 bits the products are 0, 0, 131073 and 1.
    const std::uint32_t rows[][3] = {{65536, 65536, 1},
                                     {4294967295u, 4294967295u, 4294967295u},
                                     {65537, 65537, 1},
                                     {4294967295u, 4294967295u, 1}};
    for (const auto &sizes : rows) {
        const auto volume = load(object(QStringLiteral("size-x=\"%1\" size-y=\"%2\" size-z=\"%3\"")
                                            .arg(sizes[0])
                                            .arg(sizes[1])
                                            .arg(sizes[2]),
                                        "<State>1 1 1 </State><Position pos-z=\"4\"/>"));
        ASSERT_TRUE(volume);
        EXPECT_EQ(std::size_t{volume->sizeX()} * volume->sizeY() * volume->sizeZ(), 0u);
        expectPosition(*volume, 0, 0, 4);
        volume->painter().setShowEmptyVoxels(true);
        volume->painter().rebuild();
        EXPECT_TRUE(volume->painter().opaqueFaces().empty());
    }
}

TEST(TotalVolumeArchiverTest, VolumeThatNoMemoryHoldsIsNotLoadedAndTheReaderStays)
{
    // Some 200 gigabytes of cells.
    QXmlStreamReader reader(
        object("size-x=\"65535\" size-y=\"65535\" size-z=\"1\"", "<State>1</State>"));
    reader.readNextStartElement();
    EXPECT_FALSE(loadFrom(reader));
    EXPECT_EQ(reader.name(), "Object");
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::StartElement);
}

TEST(TotalVolumeArchiverTest, AnotherElementInPlaceOfTheStateLeavesAllCellsEmpty)
{
    // Each of the two places takes whatever start element comes next.
    const auto volume = load(object(CubeAttributes, "<Other/><Position pos-x=\"3\"/>"));
    ASSERT_TRUE(volume);
    EXPECT_EQ(Support::materialsOf(*volume), Ids(8, 0));
    expectPosition(*volume, 3, 0, 0);

    const auto shifted =
        load(object(CubeAttributes, "<Other/><State>1 1 1</State><Position pos-x=\"3\"/>"));
    ASSERT_TRUE(shifted);
    EXPECT_EQ(Support::materialsOf(*shifted), Ids(8, 0));
    expectPosition(*shifted, 0, 0, 0);
}

TEST(TotalVolumeArchiverTest, MissingAndUnreadableCoordinatesAreZero)
{
    const auto volume =
        load(object(CubeAttributes, "<State/><Position pos-y=\"far\" pos-z=\"7\"/>"));
    ASSERT_TRUE(volume);
    expectPosition(*volume, 0, 0, 7);
    const auto without = load(object(CubeAttributes, "<State>1</State>"));
    ASSERT_TRUE(without);
    expectPosition(*without, 0, 0, 0);
}

TEST(TotalVolumeArchiverTest, CoordinatesBeyondFloatAreZero)
{
    for (const char *text : {"1e39", "1e300", "-1e300", "1e400", "nan", "inf", "-inf"}) {
        SCOPED_TRACE(text);
        const QString bad = QString::fromLatin1(text);
        const QString position =
            QStringLiteral("<State/><Position pos-x=\"%1\" pos-y=\"%2\" pos-z=\"%3\"/>");
        const auto volume = load(object(CubeAttributes, position.arg(bad, "2", bad)));
        ASSERT_TRUE(volume);
        expectPosition(*volume, 0, 2, 0);
        const auto other = load(object(CubeAttributes, position.arg("1", bad, "3")));
        ASSERT_TRUE(other);
        expectPosition(*other, 1, 0, 3);
    }
}

TEST(TotalVolumeArchiverTest, OneArchiverServesManyObjects)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    TotalVolumeArchiver archiver;
    archiver.setWriter(&writer);
    writer.writeStartElement("All");
    archiver.save(makeVolume(Grid{1, 1, 2}, Ids{1, 2}));
    archiver.save(makeVolume(Grid{1, 1, 3}, Ids{3, 4, 5}));
    writer.writeEndElement();
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    archiver.setReader(&reader);
    for (const Ids &expected : {Ids{1, 2}, Ids{3, 4, 5}}) {
        while (reader.readNext() != QXmlStreamReader::StartElement)
            ASSERT_FALSE(reader.atEnd());
        const auto volume = boost::dynamic_pointer_cast<TotalVolume>(archiver.load());
        ASSERT_TRUE(volume);
        EXPECT_EQ(Support::materialsOf(*volume), expected);
    }
}

TEST(TotalVolumeArchiverTest, RandomVolumesComeBackAsTheyWere)
{
    const unsigned seed = randomSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 30; ++round) {
        Grid grid{static_cast<std::uint32_t>(1 + random() % 12),
                  static_cast<std::uint32_t>(1 + random() % 12),
                  static_cast<std::uint32_t>(1 + random() % 12),
                  1.0f,
                  1.0f,
                  0.35f};
        const unsigned shift = random() % 32;
        const auto volume = makeVolume(grid, [&](std::uint32_t, std::uint32_t, std::uint32_t) {
            return static_cast<std::uint32_t>(random()) >> shift;
        });
        // Quarters below a thousand have at most six digits.
        const auto coordinate = [&] { return static_cast<double>(random() % 8000) / 4 - 1000; };
        const Vector3D place(coordinate(), coordinate(), coordinate());
        volume->translate(place);
        const auto loaded = load(save(volume));
        ASSERT_TRUE(loaded);
        EXPECT_EQ(loaded->sizeX(), grid.sizeX);
        EXPECT_EQ(loaded->sizeY(), grid.sizeY);
        EXPECT_EQ(loaded->sizeZ(), grid.sizeZ);
        EXPECT_EQ(loaded->cellSizeX(), 1.0f);
        EXPECT_EQ(loaded->cellSizeY(), 1.0f);
        EXPECT_EQ(loaded->cellSizeZ(), 0.35f);
        expectPosition(*loaded, place[0], place[1], place[2]);
        EXPECT_EQ(Support::materialsOf(*loaded), Support::materialsOf(*volume));
    }
}

TEST(TotalVolumeArchiverTest, SixSignificantDigitsOfPlacesAndCellSizesAreKept)
{
    const auto volume = boost::make_shared<TotalVolume>(1u, 1u, 1u, 0.1234567f, 1.0f, 1.0f,
                                                        Vector3D(1234.5678, 0, 0), Ids{1});
    const auto loaded = load(save(volume));
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->cellSizeX(), 0.123457f);
    EXPECT_EQ(loaded->position()[0], static_cast<double>(1234.57f));
}

TEST(TotalVolumeArchiverTest, CellsOfAnUnknownMaterialAreDrawnGrey)
{
    const auto volume = load(object("size-x=\"1\" size-y=\"1\" size-z=\"1\"", "<State>77</State>"));
    ASSERT_TRUE(volume);
    ASSERT_EQ(volume->painter().opaqueFaces().size(), 6u);
    volume->painter().opaqueFaces().forEach([](const auto &face) {
        EXPECT_EQ(face.color[0], 0.5f);
        EXPECT_EQ(face.color[1], 0.5f);
        EXPECT_EQ(face.color[2], 0.5f);
        EXPECT_EQ(face.color[3], 1.0f);
    });
}

} // namespace
