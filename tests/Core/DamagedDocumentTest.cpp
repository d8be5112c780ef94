#include "Core/Operations/Document/DocumentFile.h"

#include "DocumentSuite.h"

#include <QMessageBox>

#include <algorithm>
#include <set>

namespace {

using namespace Documents;

const char *const Warning = "message WARNING: There was an error loading a material. This may "
                            "alter the loaded cell volume.";

class DamagedDocumentTest : public DocumentSuite
{
protected:
    /// Opens the file, which has to be rejected with the box that says so.
    void expectRejected(const QString &name)
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
};

TEST_F(DamagedDocumentTest, FileThatIsNoDocumentIsRemovedAndTheUserIsTold)
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

TEST_F(DamagedDocumentTest, BadMaterialIsReportedAndLoadingGoesOn)
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

TEST_F(DamagedDocumentTest, ObjectsOfUnknownTypesAndOtherElementsArePassedOver)
{
    EXPECT_TRUE(
        readBody("<Object object-type=\"2\"><State>1</State></Object><Object/>"
                 "<Object object-type=\"x\"/><Object object-type=\"4294967297\"/>"
                 "<Object object-type=\"1.0\"/><Object object-type=\"-1\"/><Extra><Deep/></Extra>" +
                 objectElement(Box) + "<Header version=\"3\"/>"));
    ASSERT_EQ(volumes().size(), 1u);
    EXPECT_EQ(cells(), (Ids{1, 0, 3, 1, 0, 0, 1, 1}));
    EXPECT_TRUE(log().empty());
}

TEST_F(DamagedDocumentTest, RepeatedAttributeEndsTheDocumentThere)
{
    EXPECT_TRUE(readBody(objectElement(Box) + "<Object object-type=\"1\" object-type=\"1\"/>" +
                         objectElement(Box)));
    EXPECT_EQ(volumes().size(), 1u);
}

TEST_F(DamagedDocumentTest, RepeatedAttributeOfAMaterialEndsTheDocumentBeforeIt)
{
    EXPECT_TRUE(readBody(elementOf(20, "Tungsten", "1") +
                         "<Material name=\"A\" material-id=\"21\" name=\"B\"/>" +
                         elementOf(22, "Last", "1") + objectElement(Box)));
    EXPECT_EQ(MaterialFactory::instance()->material(20).name(), "Tungsten");
    EXPECT_EQ(MaterialFactory::instance()->material(21).id(), 0u);
    EXPECT_EQ(MaterialFactory::instance()->material(22).id(), 0u);
    EXPECT_TRUE(volumes().empty());
    EXPECT_TRUE(log().empty());
}

TEST_F(DamagedDocumentTest, RepeatedAttributeOfAStateLeavesAVoidVolumeAndEndsTheDocument)
{
    EXPECT_TRUE(readBody(objectElement("<State a=\"1\" a=\"1\">1 1 1 1 1 1 1 1 </State>", "4") +
                         objectElement(Box)));
    ASSERT_EQ(volumes().size(), 1u);
    EXPECT_EQ(cells(), Ids(8, 0));
    EXPECT_EQ(volumes()[0]->position()[0], 0.0);
}

TEST_F(DamagedDocumentTest, RepeatedAttributeOfAPositionKeepsTheCellsAndEndsTheDocument)
{
    QByteArray first = objectElement(Box, "4");
    first.replace("<Position ", "<Position pos-x=\"5\" ");
    EXPECT_TRUE(readBody(first + objectElement(Box)));
    ASSERT_EQ(volumes().size(), 1u);
    EXPECT_EQ(cells(), (Ids{1, 0, 3, 1, 0, 0, 1, 1}));
    EXPECT_EQ(volumes()[0]->position()[0], 0.0);
}

TEST_F(DamagedDocumentTest, MissingAttributesLeaveAVolumeWithoutCells)
{
    EXPECT_TRUE(readBody("<Object object-type=\"1\"><State>1</State><Position/></Object>"));
    ASSERT_EQ(volumes().size(), 1u);
    EXPECT_TRUE(cells().empty());
    EXPECT_EQ(volumes()[0]->cellSizeX(), 1.0f);
}

TEST_F(DamagedDocumentTest, ObjectBeyondAllMemoryIsLeftOutAndTheConsoleSaysSo)
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

TEST_F(DamagedDocumentTest, DocumentCutBetweenElementsKeepsWhatStoodBefore)
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

TEST_F(DamagedDocumentTest, DocumentCutAnywhereKeepsWhatStoodBefore)
{
    const unsigned seed = randomSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
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

TEST_F(DamagedDocumentTest, SpoiltBytesNeverStopTheProgram)
{
    const unsigned seed = randomSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
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

TEST_F(DamagedDocumentTest, HeaderCountsWithAnyVersionAndAnyAttribute)
{
    for (const char *header :
         {"<Header/>", "<Header version=\"2\"/>", "<Header other=\"x\"/>", "<Header>text</Header>",
          "<Header version=\"\"/>", "<Header version=\"one\"/>", "<Header version=\"-1\"/>",
          "<Header version=\"4294967296\"/>"}) {
        workspace().document().reset();
        EXPECT_TRUE(read(QByteArray("<Document>") + header + objectElement(Box) + "</Document>"))
            << header;
        EXPECT_EQ(volumes().size(), 1u) << header;
    }
}

TEST_F(DamagedDocumentTest, SpoiltMaterialsNeverStopTheProgramNorTouchTheLocalOnes)
{
    const unsigned seed = randomSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const QByteArray head = Start + materialElements();
    const QByteArray added = elementOf(17, "Tungsten", "19250") + elementOf(20, "Half", "2") +
                             elementOf(70000, "Last", "0.5");
    // Another number might be that of a local material, and what collides blocks for good.
    std::set<int> kept;
    for (const QByteArray number : {"17", "20", "70000"}) {
        const int at = added.indexOf("material-id=\"" + number + "\"") + 13;
        for (int i = 0; i < number.size(); ++i)
            kept.insert(at + i);
    }
    OpenDocumentOperation::setMaterialConflictObserver(
        Fakes::observing([] { ADD_FAILURE() << "this document would block"; }));
    int untouched = 0;
    for (int round = 0; round < 1000; ++round) {
        // Bytes from 128 on may be no UTF-8, which the reader notices a block of bytes at a time.
        const bool ascii = round % 2 == 0;
        QByteArray spoilt = added;
        int first = added.size();
        for (unsigned n = 1 + random() % 3; n > 0; --n) {
            const int at = static_cast<int>(random() % static_cast<unsigned>(added.size()));
            const char byte = static_cast<char>(random() % (ascii ? 128 : 256));
            if (kept.count(at) || byte == added[at])
                continue;
            spoilt[at] = byte;
            first = std::min(first, at);
        }
        SCOPED_TRACE("round " + std::to_string(round) + ": " + spoilt.toStdString());
        MaterialFactory::instance()->loadDefaultMaterials();
        const std::vector<Material> before = MaterialFactory::instance()->materials();
        OpenDocumentOperation::materialMap().clear();
        workspace().document().reset();
        const bool accepted = read(head + spoilt + objectElement(Box) + End);
        ASSERT_TRUE(accepted || !ascii);

        std::vector<Material> local;
        for (const Material &material : MaterialFactory::instance()->materials()) {
            const std::uint32_t id = material.id();
            if (id <= 16)
                local.push_back(material);
            else
                ASSERT_TRUE(id == 17 || id == 20 || id == 70000) << id;
        }
        ASSERT_TRUE(local == before);
        ASSERT_LE(volumes().size(), 1u);
        // What stands before the damage joins as it is.
        if (ascii && first > added.indexOf("/>") + 1) {
            ++untouched;
            const Material joined = MaterialFactory::instance()->material(17);
            ASSERT_EQ(joined.name(), "Tungsten");
            ASSERT_EQ(joined.density(), 19250.0f);
        }
    }
    EXPECT_GT(untouched, 10);
}

} // namespace
