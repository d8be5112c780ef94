#include "Core/Operations/Document/DocumentFile.h"

#include "Core/Operations/Document/OpenDocumentOperation.h"
#include "Core/Operations/Document/SaveDocumentAsOperation.h"
#include "Core/Operations/Document/SaveDocumentOperation.h"
#include "Fakes.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "Support/Volumes.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <functional>
#include <iostream>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

using Core::Operations::OpenDocumentOperation;
using Core::Operations::SaveDocumentAsOperation;
using Core::Operations::SaveDocumentOperation;
using Ids = std::vector<std::uint32_t>;
using Model::Automaton::TotalVolume;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::Grid;
using Support::makeVolume;
using Util::Vector3D;

const char *const Start =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Document><Header version=\"1\"/>";
const char *const End = "</Document>\n";
const char *const SiliconElement =
    "<Material version=\"1\" name=\"Si\" material-id=\"1\" density=\"2329\" "
    "poisson-ratio=\"0.28\" young-modulus=\"1.88e+11\" color=\"#FF7F7F7F\"/>";
const char *const Box = "<State>1 0 3 1 0 0 1 1 </State>";
const char *const Warning = "message WARNING: There was an error loading a material. This may "
                            "alter the loaded cell volume.";

/// The default materials, as every document has them.
QByteArray materialElements()
{
    const struct
    {
        const char *name;
        const char *numbers;
        const char *color;
    } rows[] = {
        {"Si", "1 2329 0.28 1.88e+11", "FF7F7F7F"},
        {"Thermal Si02", "3 2200 0.17 7e+10", "FF7F7FFF"},
        {"Al (bulk)", "4 2700 0.14 7e+10", "FFB2B2B2"},
        {"Cu (bulk)", "5 8960 0.36 1.28e+11", "FFFFCC4C"},
        {"Cr (bulk)", "6 7190 0.21 2.79e+11", "FFCCCCCC"},
        {"Ni (bulk)", "7 8908 0.31 2e+11", "FFCCE5CC"},
        {"Pt (bulk)", "8 21450 0.38 1.68e+11", "FFE5E5CC"},
        {"Au (bulk)", "9 19300 0.44 7.9e+10", "FF7FFF7F"},
        {"Ti (bulk)", "10 4506 0.32 1.16e+11", "FF4C4C4C"},
        {"Photoresist +", "11 1000 0.4 1e+09", "FFFF7F7F"},
        {"Photoresist -", "12 1000 0.4 1e+09", "FFFF4CFF"},
        {"PDMS", "13 1000 0.4 1e+09", "FFFFFFFF"},
        {"N-doped Si (100)", "14 2329 0.28 1.88e+11", "FFFFFFAA"},
        {"P-doped Si (100)", "15 2329 0.28 1.88e+11", "FFAAAAFF"},
        {"Poly-Si", "16 2329 0.28 1.88e+11", "FF4C7F66"},
    };
    QByteArray all;
    for (const auto &row : rows) {
        const QList<QByteArray> numbers = QByteArray(row.numbers).split(' ');
        all += QByteArray("<Material version=\"1\" name=\"") + row.name + "\" material-id=\"" +
               numbers[0] + "\" density=\"" + numbers[1] + "\" poisson-ratio=\"" + numbers[2] +
               "\" young-modulus=\"" + numbers[3] + "\" color=\"#" + row.color + "\"/>";
    }
    return all;
}

QByteArray objectElement(const QByteArray &state, const QByteArray &x = "0",
                         const QByteArray &y = "0", const QByteArray &z = "0")
{
    return "<Object object-type=\"1\" size-x=\"2\" size-y=\"2\" size-z=\"2\" cellsize-x=\"1\" "
           "cellsize-y=\"1\" cellsize-z=\"1\">" +
           state + "<Position pos-x=\"" + x + "\" pos-y=\"" + y + "\" pos-z=\"" + z +
           "\"/></Object>";
}

Material namedMaterial(std::uint32_t id, const QString &name, float density = 1.0f)
{
    const float color[4] = {0.0f, 1.0f, 0.5f, 1.0f};
    return Material(id, name, density, 2.0f, 0.25f, color);
}

QByteArray elementOf(std::uint32_t id, const QByteArray &name, const QByteArray &density)
{
    return "<Material version=\"1\" name=\"" + name + "\" material-id=\"" + QByteArray::number(id) +
           "\" density=\"" + density +
           "\" poisson-ratio=\"0.25\" young-modulus=\"2\" color=\"#FF00FF7F\"/>";
}

unsigned randomSeed()
{
    const unsigned seed = std::random_device()();
    testing::Test::RecordProperty("seed", std::to_string(seed));
    return seed;
}

/// Answers the modal dialogs that come up while it lives, and counts them.
class Answerer final
{
public:
    explicit Answerer(std::function<void(QWidget &)> answer) : m_answer(std::move(answer))
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (!dialog || !dialog->isVisible() || dialog == m_last)
                return;
            m_last = dialog;
            ++m_count;
            m_answer(*dialog);
        });
        m_timer.start(5);
    }
    int count() const { return m_count; }

private:
    std::function<void(QWidget &)> m_answer;
    QTimer m_timer;
    QPointer<QWidget> m_last;
    int m_count = 0;
};

/// Enters the name into the open file dialog and leaves by its button.
void choose(QWidget &dialog, const QString &fileName)
{
    dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(fileName);
    dynamic_cast<QDialog &>(dialog).accept();
}

class DocumentFileTest : public Fakes::WorkspaceSuite
{
protected:
    void TearDown() override
    {
        MaterialFactory::instance()->loadDefaultMaterials();
        OpenDocumentOperation::materialMap().clear();
        OpenDocumentOperation::setMaterialConflictObserver(nullptr);
        OpenDocumentOperation::setObserver(nullptr);
        OpenDocumentOperation::setFileName(QString());
        WorkspaceSuite::TearDown();
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    static void add(const Grid &grid, const Ids &ids, const Vector3D &place = Vector3D())
    {
        const auto volume = makeVolume(grid, ids);
        volume->translate(place);
        workspace().document().addObject(volume);
    }

    static QByteArray written()
    {
        QBuffer device;
        device.open(QIODevice::WriteOnly);
        EXPECT_TRUE(Core::Operations::writeDocument(device, workspace()));
        return device.data();
    }

    static bool read(QByteArray xml)
    {
        QBuffer device(&xml);
        device.open(QIODevice::ReadOnly);
        return Core::Operations::readDocument(device, workspace());
    }

    static bool readBody(const QByteArray &body) { return read(Start + body + End); }

    static std::vector<boost::shared_ptr<TotalVolume>> volumes()
    {
        std::vector<boost::shared_ptr<TotalVolume>> found;
        for (const auto &object : workspace().document().objects())
            found.push_back(boost::dynamic_pointer_cast<TotalVolume>(object));
        return found;
    }

    static Ids cells(std::size_t volume = 0) { return Support::materialsOf(*volumes().at(volume)); }

    void put(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Opens the file, which has to be rejected with the box that says so.
    void expectRejected(const QString &name) const
    {
        QString title;
        QString text;
        int buttons = 0;
        Answerer answerer([&](QWidget &dialog) {
            auto &box = dynamic_cast<QMessageBox &>(dialog);
            title = box.windowTitle();
            text = box.text();
            buttons = box.standardButtons();
            box.accept();
        });
        Core::Operations::openDocument(path(name), workspace());
        EXPECT_EQ(answerer.count(), 1);
        EXPECT_EQ(title, "Error reading from file");
        EXPECT_EQ(text, "Unable to save document to the specified file.");
        EXPECT_EQ(buttons, QMessageBox::Ok);
        EXPECT_FALSE(QFile::exists(path(name)));
        EXPECT_TRUE(workspace().document().objects().empty());
        EXPECT_TRUE(workspace().document().fileName().isEmpty());
        EXPECT_EQ(countOf("view updated"), 0);
    }

    template <typename Operation>
    boost::shared_ptr<Operation> started(boost::shared_ptr<Util::IObserver> observer)
    {
        const auto operation = boost::make_shared<Operation>(&workspace());
        if constexpr (std::is_same_v<Operation, OpenDocumentOperation>)
            OpenDocumentOperation::setObserver(observer);
        else
            operation->setObserver(observer);
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [operation](std::uint32_t) { return operation; }));
        workspace().activate(1);
        return operation;
    }

    QTemporaryDir m_folder;
};

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

TEST_F(DocumentFileTest, ArchiversAreThereForCellVolumesOnly)
{
    EXPECT_TRUE(workspace().archives().archiver(1));
    EXPECT_FALSE(workspace().archives().archiver(0));
    EXPECT_FALSE(workspace().archives().archiver(2));
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
    workspace().document().setFileName("before");
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    Core::Operations::saveDocument(path("missing/a.lth"), workspace());
    Core::Operations::saveDocument(m_folder.path(), workspace());
    QApplication::processEvents();
    EXPECT_EQ(workspace().document().fileName(), "before");
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_TRUE(log().empty());
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
    for (const QString &name : {path("missing.lth"), m_folder.path()}) {
        Core::Operations::openDocument(name, workspace());
        EXPECT_EQ(OpenDocumentOperation::fileName(), name);
        EXPECT_EQ(OpenDocumentOperation::lastPath().path(), name);
    }
    QApplication::processEvents();
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_TRUE(log().empty());
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
    EXPECT_TRUE(QDir(m_folder.path()).exists());
}

TEST_F(DocumentFileTest, FileThatIsNoDocumentIsRemovedAndTheUserIsTold)
{
    const QByteArray rows[] = {"",
                               "no XML at all",
                               "<Other/>",
                               "<document><Header version=\"1\"/></document>",
                               "<Document/>",
                               "<Document><Material name=\"A\" material-id=\"20\"/></Document>",
                               "<Document><header/></Document>",
                               "<Other><Document><Header/></Document></Other>",
                               "<Document><Header version=\"1\" version=\"1\"/></Document>"};
    for (const QByteArray &row : rows) {
        SCOPED_TRACE(row.toStdString());
        put("a.lth", row);
        expectRejected("a.lth");
    }
    EXPECT_EQ(MaterialFactory::instance()->material(20).id(), 0u);
}

TEST_F(DocumentFileTest, HeaderCountsWithAnyVersionAndAnyAttribute)
{
    for (const char *header : {"<Header/>", "<Header version=\"2\"/>", "<Header other=\"x\"/>",
                               "<Header>text</Header>"}) {
        workspace().document().reset();
        EXPECT_TRUE(read(QByteArray("<Document>") + header + objectElement(Box) + "</Document>"))
            << header;
        EXPECT_EQ(volumes().size(), 1u) << header;
    }
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

TEST_F(DocumentFileTest, BadMaterialIsReportedAndLoadingGoesOn)
{
    EXPECT_TRUE(readBody("<Material name=\"\" material-id=\"21\"/><Material name=\"A\"/>" +
                         elementOf(20, "Tungsten", "1") +
                         objectElement("<State>21 20 0 0 0 0 0 0 </State>")));
    EXPECT_EQ(log(), (Fakes::Log{Warning, Warning}));
    EXPECT_EQ(MaterialFactory::instance()->material(21).id(), 0u);
    EXPECT_EQ(MaterialFactory::instance()->material(20).name(), "Tungsten");
    EXPECT_EQ(cells(), (Ids{21, 20, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(OpenDocumentOperation::materialMap(), (Model::Persistence::MaterialMap{{20, 20}}));
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

TEST_F(DocumentFileTest, ObjectsOfUnknownTypesAndOtherElementsArePassedOver)
{
    EXPECT_TRUE(readBody("<Object object-type=\"2\"><State>1</State></Object><Object/>"
                         "<Object object-type=\"x\"/><Extra><Deep/></Extra>" +
                         objectElement(Box) + "<Header version=\"3\"/>"));
    ASSERT_EQ(volumes().size(), 1u);
    EXPECT_EQ(cells(), (Ids{1, 0, 3, 1, 0, 0, 1, 1}));
    EXPECT_TRUE(log().empty());
}

TEST_F(DocumentFileTest, RepeatedAttributeEndsTheDocumentThere)
{
    EXPECT_TRUE(readBody(objectElement(Box) + "<Object object-type=\"1\" object-type=\"1\"/>" +
                         objectElement(Box)));
    EXPECT_EQ(volumes().size(), 1u);
}

TEST_F(DocumentFileTest, MissingAttributesLeaveAVolumeWithoutCells)
{
    EXPECT_TRUE(readBody("<Object object-type=\"1\"><State>1</State><Position/></Object>"));
    ASSERT_EQ(volumes().size(), 1u);
    EXPECT_TRUE(cells().empty());
    EXPECT_EQ(volumes()[0]->cellSizeX(), 1.0f);
}

TEST_F(DocumentFileTest, ObjectBeyondAllMemoryIsLeftOutAndTheConsoleSaysSo)
{
    EXPECT_TRUE(readBody("<Object object-type=\"1\" size-x=\"65535\" size-y=\"65535\" "
                         "size-z=\"1\"><State>1</State><Position/></Object>" +
                         objectElement(Box)));
    EXPECT_EQ(volumes().size(), 1u);
    EXPECT_EQ(log(), Fakes::Log{"message Open document: An object does not fit into memory and was "
                                "left out."});
}

/// What a document that is cut may hold: objects and cells of the whole one, from the first on, and
/// void in their place.
void expectBeginning(const std::vector<boost::shared_ptr<TotalVolume>> &volumes)
{
    const Ids whole = {1, 0, 3, 1, 0, 0, 1, 1};
    ASSERT_LE(volumes.size(), 2u);
    for (const auto &volume : volumes) {
        ASSERT_TRUE(volume);
        const Ids ids = Support::materialsOf(*volume);
        ASSERT_EQ(ids.size(), whole.size());
        bool ended = false;
        for (std::size_t i = 0; i < ids.size(); ++i) {
            ended = ended || ids[i] != whole[i];
            EXPECT_EQ(ids[i], ended ? 0u : whole[i]);
        }
    }
}

TEST_F(DocumentFileTest, DocumentCutBetweenElementsKeepsWhatStoodBefore)
{
    const QByteArray whole =
        Start + materialElements() + objectElement(Box) + objectElement(Box, "4") + End;
    const int header = whole.indexOf("<Header");
    const int headerEnd = whole.indexOf("/>", header) + 2;
    int cuts = 0;
    for (int cut = whole.indexOf('<'); cut >= 0; cut = whole.indexOf('<', cut + 1)) {
        ++cuts;
        workspace().document().reset();
        EXPECT_EQ(read(whole.left(cut)), cut >= headerEnd) << cut;
        expectBeginning(volumes());
        const std::size_t begun = static_cast<std::size_t>(whole.left(cut).count("<Object "));
        EXPECT_EQ(volumes().size(), begun) << cut;
        if (cut > whole.lastIndexOf("</State>")) {
            EXPECT_EQ(cells(1), (Ids{1, 0, 3, 1, 0, 0, 1, 1}));
        }
    }
    EXPECT_EQ(cuts, 1 + 2 + 15 + 2 * 5 + 1);
    EXPECT_TRUE(log().empty());
}

TEST_F(DocumentFileTest, DocumentCutAnywhereKeepsWhatStoodBefore)
{
    const unsigned seed = randomSeed();
    std::cout << "seed " << seed << std::endl;
    std::mt19937 random(seed);
    const QByteArray whole =
        Start + materialElements() + objectElement(Box) + objectElement(Box, "4") + End;
    const int headerEnd = whole.indexOf("/>") + 2;
    for (int i = 0; i < 1000; ++i) {
        const int cut = static_cast<int>(random() % static_cast<unsigned>(whole.size()));
        SCOPED_TRACE("cut at " + std::to_string(cut));
        workspace().document().reset();
        const bool accepted = read(whole.left(cut));
        EXPECT_EQ(accepted, cut >= headerEnd);
        expectBeginning(volumes());
        EXPECT_LE(volumes().size(), static_cast<std::size_t>(whole.left(cut).count("<Object ")));
    }
}

TEST_F(DocumentFileTest, SpoiltBytesNeverStopTheProgram)
{
    const unsigned seed = randomSeed();
    std::cout << "seed " << seed << std::endl;
    std::mt19937 random(seed);
    // Without materials, as a changed one would collide.
    const QByteArray whole = Start + objectElement(Box) + objectElement(Box, "4") + End;
    for (int i = 0; i < 1000; ++i) {
        QByteArray spoilt = whole;
        for (unsigned n = 1 + random() % 3; n > 0; --n)
            spoilt[static_cast<int>(random() % static_cast<unsigned>(spoilt.size()))] =
                static_cast<char>(random());
        workspace().document().reset();
        const bool accepted = read(spoilt);
        EXPECT_TRUE(accepted || volumes().empty());
        for (const auto &volume : volumes())
            EXPECT_TRUE(volume);
    }
}

TEST_F(DocumentFileTest, SavingWithAFileNameAlreadySetAsksNothing)
{
    workspace().document().setFileName(path("a.lth"));
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
    QApplication::processEvents();
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_EQ(content("a.lth"), Start + materialElements() + End);
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(DocumentFileTest, FirstSaveAsksForAPlaceFromTheHomeOn)
{
    QString title;
    QString folder;
    QStringList filters;
    Answerer answerer([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        title = files.windowTitle();
        folder = files.directory().path();
        filters = files.nameFilters();
        choose(dialog, path("new.lth"));
    });
    started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(title, "Choose location");
    EXPECT_EQ(folder, QDir::homePath());
    EXPECT_EQ(filters, QStringList("Lithara file (*.lth)"));
    EXPECT_EQ(content("new.lth"), Start + materialElements() + End);
    EXPECT_EQ(workspace().document().fileName(), path("new.lth"));
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
}

TEST_F(DocumentFileTest, CancelledFirstSaveDropsTheOperationAndWritesNoFile)
{
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
}

TEST_F(DocumentFileTest, SaveAsAlwaysAsksAndACancelledOneKeepsTheName)
{
    workspace().document().setFileName(path("a.lth"));
    bool answering = false;
    Answerer answerer([&](QWidget &dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Choose location");
        if (answering)
            choose(dialog, path("b.lth"));
        else
            dialog.close();
    });
    started<SaveDocumentAsOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_EQ(workspace().document().fileName(), path("a.lth"));
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());

    answering = true;
    log().clear();
    started<SaveDocumentAsOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
    EXPECT_EQ(workspace().document().fileName(), path("b.lth"));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList("b.lth"));
    EXPECT_EQ(answerer.count(), 2);
}

TEST_F(DocumentFileTest, OpenAsksFromTheLastFileOnAndTellsItsObserver)
{
    put("a.lth", QByteArray(Start) + End);
    OpenDocumentOperation::lastPath().setPath(path("b.lth"));
    QString folder;
    Answerer answerer([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        EXPECT_EQ(files.windowTitle(), "Choose file");
        EXPECT_EQ(files.nameFilters(), QStringList("Lithara file (*.lth)"));
        folder = files.directory().path();
        choose(dialog, path("a.lth"));
    });
    started<OpenDocumentOperation>(Fakes::logging(log(), "opened"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(folder, m_folder.path());
    EXPECT_EQ(OpenDocumentOperation::fileName(), path("a.lth"));
    EXPECT_EQ(OpenDocumentOperation::lastPath().path(), path("a.lth"));
    EXPECT_EQ(log(), (Fakes::Log{"opened", "view updated"}));
    // The document of the window that asked is another one.
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
}

TEST_F(DocumentFileTest, CancelledOpenDropsTheOperationAndKeepsTheLastPlace)
{
    OpenDocumentOperation::lastPath().setPath(path("b.lth"));
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    started<OpenDocumentOperation>(Fakes::logging(log(), "opened"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_EQ(OpenDocumentOperation::lastPath().path(), path("b.lth"));
}

TEST_F(DocumentFileTest, OperationsHaveTheirNamesAndNumbersAndCancelInSilence)
{
    const SaveDocumentOperation save(&workspace());
    const SaveDocumentAsOperation saveAs(&workspace());
    const OpenDocumentOperation open(&workspace());
    EXPECT_EQ(save.name(), "Save document");
    EXPECT_EQ(save.id(), 9u);
    EXPECT_EQ(saveAs.name(), "Save Document As");
    EXPECT_EQ(saveAs.id(), 10u);
    EXPECT_EQ(open.name(), "Open document");
    EXPECT_EQ(open.id(), 11u);
    SaveDocumentOperation(&workspace()).cancel();
    SaveDocumentAsOperation(&workspace()).cancel();
    OpenDocumentOperation(&workspace()).cancel();
    EXPECT_EQ(log(), (Fakes::Log{"view updated", "view updated", "view updated"}));
}

} // namespace
