#include "Core/Operations/Document/DocumentFile.h"

#include "DocumentSuite.h"

#include <QDir>
#include <QMessageBox>

#include <array>
#include <csignal>
#include <map>

#include <unistd.h>

namespace {

using namespace Documents;
using Color = std::array<float, 4>;

class DocumentFileTest : public DocumentSuite
{};

Material namedMaterial(std::uint32_t id, const QString &name, float density = 1.0f)
{
    const float color[4] = {0.0f, 1.0f, 0.5f, 1.0f};
    return Material(id, name, density, 2.0f, 0.25f, color);
}

/// Opens a document with a colliding material; dies of SIGALRM while it waits for the new id.
[[noreturn]] void openCollidingDocument(Core::Workspace &workspace)
{
    QByteArray xml = QByteArray(Start) + elementOf(5, "Other", "1") + End;
    QBuffer device(&xml);
    device.open(QIODevice::ReadOnly);
    alarm(2);
    Core::Operations::readDocument(device, workspace);
    _exit(0);
}

TEST_F(DocumentFileTest, DocumentWithoutObjectsHasHeaderAndMaterialsOnly)
{
    EXPECT_EQ(written().toStdString(), (Start + materialElements() + End).toStdString());
}

TEST_F(DocumentFileTest, CubeIsWrittenWithItsCellsAndItsPlace)
{
    add(Grid{2, 2, 2}, Ids{1, 0, 3, 1, 0, 0, 1, 1}, Vector3D(1234567.0, -0.125, 3.14159265));
    EXPECT_EQ(
        written().toStdString(),
        (Start + materialElements() + objectElement(Box, "1.23457e+06", "-0.125", "3.14159") + End)
            .toStdString());
}

TEST_F(DocumentFileTest, ObjectsFollowEachOtherInTheOrderOfTheDocument)
{
    add(Grid{2, 2, 2}, Ids(8, 4));
    add(Grid{2, 2, 2}, Ids(8, 16), Vector3D(5, 6, 7));
    EXPECT_EQ(written().toStdString(),
              (Start + materialElements() + objectElement("<State>4 4 4 4 4 4 4 4 </State>") +
               objectElement("<State>16 16 16 16 16 16 16 16 </State>", "5", "6", "7") + End)
                  .toStdString());
}

TEST_F(DocumentFileTest, ColourChannelBelowSixteenTakesOneDigit)
{
    MaterialFactory::instance()->updateMaterial(namedMaterial(20, "Half & half"));
    EXPECT_EQ(written().toStdString(),
              (Start + materialElements() +
               "<Material version=\"1\" name=\"Half &amp; half\" material-id=\"20\" density=\"1\" "
               "poisson-ratio=\"0.25\" young-modulus=\"2\" color=\"#FF0FF7F\"/>" +
               End)
                  .toStdString());
}

TEST_F(DocumentFileTest, ObjectWithoutAnArchiverIsLeftOutAndTheConsoleSaysSo)
{
    add(Grid{2, 2, 2}, Ids(8, 4));
    workspace().document().addObject(boost::make_shared<Fakes::Object>());
    add(Grid{2, 2, 2}, Ids(8, 3));
    EXPECT_EQ(written().toStdString(),
              (Start + materialElements() + objectElement("<State>4 4 4 4 4 4 4 4 </State>") +
               objectElement("<State>3 3 3 3 3 3 3 3 </State>") + End)
                  .toStdString());
    EXPECT_EQ(log(), Fakes::Log{"message Save document: An object of a kind that cannot be saved "
                                "was left out."});
}

TEST_F(DocumentFileTest, SavingWritesTheFileAndGivesTheDocumentItsName)
{
    add(Grid{2, 2, 2}, Ids{1, 0, 3, 1, 0, 0, 1, 1});
    put("a.lth", QByteArray(100000, 'x'));
    Core::Operations::saveDocument(path("a.lth"), workspace());
    EXPECT_EQ(content("a.lth").toStdString(),
              (Start + materialElements() + objectElement(Box) + End).toStdString());
    EXPECT_EQ(workspace().document().fileName(), path("a.lth"));
}

TEST_F(DocumentFileTest, SavingToWhereNothingCanBeWrittenDoesNothing)
{
    put("file", "x");
    workspace().document().setFileName("before");
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    for (const QString &name :
         {path("missing/a.lth"), m_folder.path(), path("file/a.lth"), QString()})
        Core::Operations::saveDocument(name, workspace());
    QApplication::processEvents();
    EXPECT_EQ(workspace().document().fileName(), "before");
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList("file"));
    EXPECT_EQ(content("file"), "x");
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_TRUE(log().empty());
}

TEST_F(DocumentFileTest, FullDiskGoesUnnoticedAndTheDocumentTakesTheName)
{
    // By a link, so that nothing can take the device itself away.
    if (!QFile::link("/dev/full", path("full.lth")) || !QFile::exists(path("full.lth")))
        GTEST_SKIP() << "there is no device that is always full";
    QFile full(path("full.lth"));
    ASSERT_TRUE(full.open(QIODevice::WriteOnly));
    full.write("x");
    ASSERT_FALSE(full.flush());
    full.close();

    // Longer than what the file keeps back until it is flushed.
    add(Grid{30, 30, 30}, Ids(27000, 4));
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    Core::Operations::saveDocument(path("full.lth"), workspace());
    QApplication::processEvents();
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_TRUE(log().empty());
    EXPECT_EQ(workspace().document().fileName(), path("full.lth"));
    EXPECT_TRUE(QFile::exists(path("full.lth")));
}

TEST_F(DocumentFileTest, FileWithoutPermissionIsNeitherWrittenNorRead)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "nothing is forbidden to root";
    put("a.lth", "<Other/>");
    ASSERT_TRUE(QFile::setPermissions(path("a.lth"), QFile::Permissions()));
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    Core::Operations::saveDocument(path("a.lth"), workspace());
    Core::Operations::openDocument(path("a.lth"), workspace());
    QApplication::processEvents();
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_TRUE(log().empty());
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
    ASSERT_TRUE(QFile::setPermissions(path("a.lth"), QFile::ReadOwner));
    EXPECT_EQ(content("a.lth"), "<Other/>");
}

TEST_F(DocumentFileTest, WriterThatFailsLeavesNoFileAndTheUserIsTold)
{
    QString title;
    QString text;
    Answerer answerer([&](QWidget &dialog) {
        title = dialog.windowTitle();
        text = dynamic_cast<QMessageBox &>(dialog).text();
        dialog.close();
    });
    Core::Operations::saveDocument(path("a.lth"), workspace(),
                                   [](QIODevice &, Core::Workspace &) { return false; });
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(title, "Error writing to file");
    EXPECT_EQ(text, "Unable to save document to the specified file.");
    EXPECT_FALSE(QFile::exists(path("a.lth")));
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
}

TEST_F(DocumentFileTest, SavedDocumentComesBackWithItsCellsAndPlaces)
{
    const unsigned seed = randomSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const Grid grid{7, 5, 9, 1.0f, 1.0f, 0.35f};
    std::vector<Ids> all;
    for (int i = 0; i < 3; ++i) {
        Ids ids(grid.cells());
        for (std::uint32_t &id : ids)
            id = static_cast<std::uint32_t>(random() % 17);
        all.push_back(ids);
        add(grid, ids, Vector3D(i * 100.5, -3, 0.25));
    }
    Core::Operations::saveDocument(path("a.lth"), workspace());
    const QByteArray first = content("a.lth");
    workspace().document().reset();

    Core::Operations::openDocument(path("a.lth"), workspace());
    ASSERT_EQ(volumes().size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(cells(i), all[i]);
        EXPECT_EQ(volumes()[i]->position()[0], static_cast<double>(i) * 100.5);
        EXPECT_EQ(volumes()[i]->position()[1], -3.0);
        EXPECT_EQ(volumes()[i]->position()[2], 0.25);
        EXPECT_EQ(volumes()[i]->cellSizeZ(), 0.35f);
        EXPECT_FALSE(volumes()[i]->painter().opaqueFaces().empty());
    }
    EXPECT_EQ(written(), first);
}

TEST_F(DocumentFileTest, VolumesWithoutCellsOrMaterialAndRoundOnesComeBack)
{
    const Grid ball{9, 9, 9};
    const Ids ballIds = Support::materialsBy(ball, [](auto x, auto y, auto z) {
        const auto square = [](std::uint32_t at) { return (int(at) - 4) * (int(at) - 4); };
        return square(x) + square(y) + square(z) <= 16 ? 9u : 0u;
    });
    const std::vector<std::pair<Grid, Ids>> all = {{Grid{0, 5, 3}, {}},
                                                   {Grid{5, 0, 3}, {}},
                                                   {Grid{5, 3, 0}, {}},
                                                   {Grid{4, 3, 2}, Ids(24, 0)},
                                                   {ball, ballIds}};
    for (const auto &[grid, ids] : all)
        add(grid, ids);
    Core::Operations::saveDocument(path("a.lth"), workspace());
    workspace().document().reset();
    Core::Operations::openDocument(path("a.lth"), workspace());
    ASSERT_EQ(volumes().size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(volumes()[i]->sizeX(), all[i].first.sizeX);
        EXPECT_EQ(volumes()[i]->sizeY(), all[i].first.sizeY);
        EXPECT_EQ(volumes()[i]->sizeZ(), all[i].first.sizeZ);
        EXPECT_EQ(cells(i), all[i].second);
        EXPECT_EQ(volumes()[i]->painter().opaqueFaces().empty(), i < 4);
    }
}

TEST_F(DocumentFileTest, OpeningSetsTheNamesClearsTheHistoryAndRepaints)
{
    put("a.lth", QByteArray(Start) + objectElement(Box) + End);
    workspace().history().push(boost::make_shared<Fakes::ObjectOperation>("Old", log()));
    log().clear();
    Core::Operations::openDocument(path("a.lth"), workspace());
    EXPECT_EQ(workspace().document().fileName(), path("a.lth"));
    EXPECT_EQ(OpenDocumentOperation::fileName(), path("a.lth"));
    EXPECT_EQ(OpenDocumentOperation::lastPath().path(), path("a.lth"));
    EXPECT_EQ(workspace().history().undoName(), "");
    EXPECT_EQ(countOf("view updated"), 1);
    EXPECT_EQ(cells(), (Ids{1, 0, 3, 1, 0, 0, 1, 1}));
    EXPECT_TRUE(QFile::exists(path("a.lth")));
}

TEST_F(DocumentFileTest, DocumentWithoutObjectsOpensAsAnEmptyDocument)
{
    put("a.lth", written());
    Core::Operations::openDocument(path("a.lth"), workspace());
    EXPECT_TRUE(workspace().document().objects().empty());
    EXPECT_EQ(workspace().document().fileName(), path("a.lth"));
}

TEST_F(DocumentFileTest, FileThatCannotBeReadIsPassedOverInSilence)
{
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    put("file", "x");
    for (const QString &name : {path("missing.lth"), m_folder.path(), path("file/a.lth")}) {
        Core::Operations::openDocument(name, workspace());
        EXPECT_EQ(OpenDocumentOperation::fileName(), name);
        EXPECT_EQ(OpenDocumentOperation::lastPath().path(), name);
    }
    QApplication::processEvents();
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_TRUE(log().empty());
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
    EXPECT_EQ(content("file"), "x");
}

TEST_F(DocumentFileTest, MaterialThatIsUnknownHereJoinsUnderItsIdAndTheCellsKeepIt)
{
    EXPECT_TRUE(readBody(elementOf(20, "Tungsten", "19250") +
                         objectElement("<State>20 1 20 0 0 0 0 0 </State>")));
    const Material joined = MaterialFactory::instance()->material(20);
    EXPECT_EQ(joined.name(), "Tungsten");
    EXPECT_EQ(joined.density(), 19250.0f);
    EXPECT_EQ(cells(), (Ids{20, 1, 20, 0, 0, 0, 0, 0}));
    EXPECT_EQ(OpenDocumentOperation::materialMap(), (Model::Persistence::MaterialMap{{20, 20}}));
}

TEST_F(DocumentFileTest, ColourWithAChannelOfOneDigitComesBackOpaqueBlack)
{
    MaterialFactory::instance()->updateMaterial(namedMaterial(20, "Half"));
    const QByteArray xml = written();
    ASSERT_TRUE(xml.contains("material-id=\"20\""));
    ASSERT_TRUE(xml.contains("color=\"#FF0FF7F\""));
    MaterialFactory::instance()->loadDefaultMaterials();
    EXPECT_TRUE(read(xml));
    // Seven digits name no colour to QColor, and the channels of none are those of opaque black.
    const Material joined = MaterialFactory::instance()->material(20);
    const float *color = joined.color();
    EXPECT_EQ((Color{color[0], color[1], color[2], color[3]}), (Color{0.0f, 0.0f, 0.0f, 1.0f}));
}

/// How many opaque faces have which colour.
std::map<Color, int> faceColors(TotalVolume &volume)
{
    std::map<Color, int> colors;
    volume.painter().opaqueFaces().forEach([&colors](const auto &face) {
        ++colors[Color{face.color[0], face.color[1], face.color[2], face.color[3]}];
    });
    return colors;
}

TEST_F(DocumentFileTest, CellsOfMaterialsThatNobodyKnowsKeepTheirIdsAndAreDrawnGrey)
{
    // No material has the number 2; 17 is the first behind the known ones.
    for (const std::uint32_t id : {2u, 17u, 65535u, 65536u, 70000u, 4294967295u}) {
        SCOPED_TRACE(id);
        workspace().document().reset();
        // Two cells that do not touch: all their sides show.
        EXPECT_TRUE(readBody(
            objectElement("<State>" + QByteArray::number(id) + " 0 0 0 0 0 0 5 </State>")));
        ASSERT_EQ(volumes().size(), 1u);
        EXPECT_EQ(cells(), (Ids{id, 0, 0, 0, 0, 0, 0, 5}));
        EXPECT_EQ(faceColors(*volumes()[0]), (std::map<Color, int>{{{0.5f, 0.5f, 0.5f, 1.0f}, 6},
                                                                   {{1.0f, 0.8f, 0.3f, 1.0f}, 6}}));
        EXPECT_EQ(MaterialFactory::instance()->material(id).id(), 0u);
    }
}

TEST_F(DocumentFileTest, MaterialThatJoinsGivesTheCellsItsColour)
{
    for (const std::uint32_t id : {2u, 20u, 65536u, 4294967295u}) {
        SCOPED_TRACE(id);
        workspace().document().reset();
        EXPECT_TRUE(readBody(elementOf(id, "Tungsten", "1") +
                             objectElement("<State>" + QByteArray::number(id) + " </State>")));
        ASSERT_EQ(volumes().size(), 1u);
        EXPECT_EQ(cells(), (Ids{id, 0, 0, 0, 0, 0, 0, 0}));
        EXPECT_EQ(faceColors(*volumes()[0]),
                  (std::map<Color, int>{{{0.0f, 1.0f, float(127 / 255.0), 1.0f}, 6}}));
    }
}

TEST_F(DocumentFileTest, MaterialThatDiffersInDensityOnlyCountsAsTheLocalOne)
{
    const QByteArray copper = "<Material version=\"1\" name=\"Cu (bulk)\" material-id=\"5\" "
                              "density=\"1\" poisson-ratio=\"0.36\" young-modulus=\"1.28e+11\" "
                              "color=\"#FFFFCC4C\"/>";
    EXPECT_TRUE(readBody(copper + objectElement("<State>5 5 0 0 0 0 0 0 </State>")));
    EXPECT_EQ(MaterialFactory::instance()->material(5).density(), 8960.0f);
    EXPECT_EQ(cells(), (Ids{5, 5, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(OpenDocumentOperation::materialMap(), (Model::Persistence::MaterialMap{{5, 5}}));
}

TEST_F(DocumentFileTest, CollidingMaterialBlocksForGood)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(openCollidingDocument(workspace()), testing::KilledBySignal(SIGALRM), "");
}

TEST_F(DocumentFileTest, ConflictObserverGetsBothSidesAndTheMapNoEntry)
{
    int calls = 0;
    OpenDocumentOperation::setMaterialConflictObserver(Fakes::observing([&calls] { ++calls; }));
    EXPECT_TRUE(
        readBody(elementOf(5, "Other", "1") + objectElement("<State>5 0 0 0 0 0 0 0 </State>")));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(OpenDocumentOperation::knownMaterial().name(), "Cu (bulk)");
    EXPECT_EQ(OpenDocumentOperation::loadedMaterial().name(), "Other");
    EXPECT_TRUE(OpenDocumentOperation::materialMap().empty());
    EXPECT_EQ(MaterialFactory::instance()->material(5).name(), "Cu (bulk)");
    EXPECT_EQ(cells(), (Ids{5, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(DocumentFileTest, ColourWithAChannelOfOneDigitCollidesWithItselfUnlessItIsBlack)
{
    const std::pair<Color, int> rows[] = {{{0.0f, 0.0f, 1.0f, 1.0f}, 1},
                                          {{1.0f, 15.5f / 255, 1.0f, 1.0f}, 1},
                                          {{1.0f, 16.5f / 255, 1.0f, 1.0f}, 0},
                                          {{0.0f, 0.0f, 0.0f, 1.0f}, 0}};
    int calls = 0;
    OpenDocumentOperation::setMaterialConflictObserver(Fakes::observing([&calls] { ++calls; }));
    for (const auto &[color, expected] : rows) {
        calls = 0;
        MaterialFactory::instance()->updateMaterial(
            Material(20, "Own", 1.0f, 2.0f, 0.25f, color.data()));
        EXPECT_TRUE(read(written()));
        EXPECT_EQ(calls, expected) << color[1];
    }
}

TEST_F(DocumentFileTest, MaterialMapOutlivesOneOpening)
{
    OpenDocumentOperation::materialMap()[30] = 4;
    EXPECT_TRUE(readBody(objectElement("<State>30 30 31 0 0 0 0 0 </State>")));
    EXPECT_EQ(cells(), (Ids{4, 4, 31, 0, 0, 0, 0, 0}));
    EXPECT_EQ(OpenDocumentOperation::materialMap().count(30), 1u);
    // An archiver that has read a document writes through the same map.
    OpenDocumentOperation::materialMap()[4] = 99;
    EXPECT_TRUE(written().contains("<State>99 99 31 0 0 0 0 0 </State>"));
}

} // namespace
