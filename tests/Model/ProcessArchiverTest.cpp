#include "Model/Persistence/ProcessArchiver.h"

#include "RegistryTestSupport.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

using Model::Persistence::ProcessArchiver;
using Model::Process::Process;

namespace {

using Ids = std::vector<std::uint32_t>;

class ProcessArchiverTest : public ::testing::Test
{
protected:
    Process load(const QString &xml, bool *ok = nullptr)
    {
        QXmlStreamReader reader(xml);
        EXPECT_TRUE(reader.readNextStartElement());
        return ProcessArchiver::loadProcess(reader, ok);
    }

    bool accepts(const QString &xml)
    {
        bool ok = false;
        load(xml, &ok);
        return ok;
    }

    /// True if loading gives the empty record and says so.
    bool refuses(const QString &xml)
    {
        bool ok = true;
        const Process process = load(xml, &ok);
        return !ok && process.id() == 0 && process.name().isEmpty() &&
               process.compatibleMaterialIds().empty();
    }

    /// The ids of a list with this content.
    Ids idsIn(const QString &content)
    {
        QXmlStreamReader reader(
            QStringLiteral("<Process><CompatibleMaterials>%1</CompatibleMaterials></Process>")
                .arg(content));
        EXPECT_TRUE(reader.readNextStartElement());
        return ProcessArchiver::loadCompatibleMaterials(reader);
    }

    LogRecorder m_log;
};

QString save(const Process &process)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    ProcessArchiver::saveProcess(process, writer);
    return xml;
}

} // namespace

TEST_F(ProcessArchiverTest, WritesAttributesInTheirOrderAndTheListAsChild)
{
    EXPECT_EQ(save(Process(QStringLiteral("CVD"), 3, {3, 16, 3})),
              QStringLiteral("<Process version=\"1\" name=\"CVD\" process-id=\"3\">"
                             "<CompatibleMaterials>3;16;3</CompatibleMaterials></Process>"));
}

TEST_F(ProcessArchiverTest, EmptyListIsAnElementWithoutText)
{
    EXPECT_EQ(save(Process(QStringLiteral("Planarization"), 7)),
              QStringLiteral("<Process version=\"1\" name=\"Planarization\" process-id=\"7\">"
                             "<CompatibleMaterials></CompatibleMaterials></Process>"));
}

TEST_F(ProcessArchiverTest, SavedRecordComesBack)
{
    const QString name = QStringLiteral("<Ätzen> & \"mehr\"");
    bool ok = false;
    const Process process = load(save(Process(name, 4294967295U, {4294967295U, 999, 0})), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(process.name(), name);
    EXPECT_EQ(process.id(), 4294967295U);
    EXPECT_EQ(process.compatibleMaterialIds(), (Ids{4294967295U, 999, 0}));
}

TEST_F(ProcessArchiverTest, LongListComesBackWhole)
{
    Ids ids;
    for (std::uint32_t id = 1; id <= 20000; ++id) {
        ids.push_back(id);
    }
    EXPECT_EQ(load(save(Process(QStringLiteral("All"), 1, ids))).compatibleMaterialIds(), ids);
}

TEST_F(ProcessArchiverTest, EmptyListElementGivesARecordWithAnEmptyList)
{
    for (const QString &list : {QStringLiteral("<CompatibleMaterials/>"),
                                QStringLiteral("<CompatibleMaterials></CompatibleMaterials>")}) {
        bool ok = false;
        const Process process = load(
            QStringLiteral("<Process name=\"A\" process-id=\"5\">%1</Process>").arg(list), &ok);
        EXPECT_TRUE(ok);
        EXPECT_EQ(process.id(), 5U);
        EXPECT_EQ(process.compatibleMaterialIds(), Ids());
    }
}

TEST_F(ProcessArchiverTest, WithoutAChildTheNextStartElementIsConsumed)
{
    QXmlStreamReader reader(
        QStringLiteral("<Processes><Process name=\"A\" process-id=\"5\"/>"
                       "<Process name=\"B\" process-id=\"6\"><CompatibleMaterials>1"
                       "</CompatibleMaterials></Process></Processes>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    bool ok = false;
    const Process process = ProcessArchiver::loadProcess(reader, &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(process.name(), QStringLiteral("A"));
    EXPECT_EQ(process.compatibleMaterialIds(), Ids());
    EXPECT_TRUE(reader.isStartElement());
    EXPECT_EQ(reader.attributes().value(QStringLiteral("name")), QStringLiteral("B"));
}

TEST_F(ProcessArchiverTest, LastProcessOfAFileMayLackTheChild)
{
    bool ok = false;
    EXPECT_EQ(load(QStringLiteral("<Process name=\"A\" process-id=\"5\"/>"), &ok).id(), 5U);
    EXPECT_TRUE(ok);
}

TEST_F(ProcessArchiverTest, EmptyPartsAndNonNumbersOfAListAreDropped)
{
    EXPECT_EQ(idsIn(QStringLiteral("1;;3;x;4")), (Ids{1, 3, 4}));
    EXPECT_EQ(idsIn(QStringLiteral(";-1;0x2;4294967296;5,6;7;")), Ids{7});
}

TEST_F(ProcessArchiverTest, ListOrderAndRepeatsAreKept)
{
    EXPECT_EQ(idsIn(QStringLiteral("16;3;16;0;010")), (Ids{16, 3, 16, 0, 10}));
}

TEST_F(ProcessArchiverTest, ListThatDoesNotBeginWithTextIsEmpty)
{
    EXPECT_EQ(idsIn(QStringLiteral("<!-- none -->1;2")), Ids());
    EXPECT_EQ(idsIn(QStringLiteral("<Id/>1;2")), Ids());
}

TEST_F(ProcessArchiverTest, ListOfAnotherNameIsEmpty)
{
    QXmlStreamReader reader(
        QStringLiteral("<Process><compatiblematerials>1</compatiblematerials></Process>"));
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(ProcessArchiver::loadCompatibleMaterials(reader), Ids());
}

TEST_F(ProcessArchiverTest, AnotherElementGivesTheEmptyRecord)
{
    EXPECT_TRUE(refuses(QStringLiteral("<process name=\"A\" process-id=\"5\"/>")));
    EXPECT_TRUE(refuses(QStringLiteral("<CompatibleMaterials>1;2</CompatibleMaterials>")));
    EXPECT_TRUE(m_log.texts().empty());
}

TEST_F(ProcessArchiverTest, MissingOrEmptyNameIsRefused)
{
    EXPECT_TRUE(refuses(QStringLiteral("<Process process-id=\"5\"/>")));
    EXPECT_TRUE(refuses(QStringLiteral("<Process name=\"\" process-id=\"5\"/>")));
}

TEST_F(ProcessArchiverTest, MissingZeroOrUnparsableIdIsRefused)
{
    EXPECT_TRUE(refuses(QStringLiteral("<Process name=\"A\"/>")));
    EXPECT_TRUE(refuses(QStringLiteral("<Process name=\"A\" process-id=\"0\"/>")));
    EXPECT_TRUE(refuses(QStringLiteral("<Process name=\"A\" process-id=\"0x5\"/>")));
    EXPECT_TRUE(refuses(QStringLiteral("<Process name=\"A\" process-id=\"-5\"/>")));
}

TEST_F(ProcessArchiverTest, UnparsableVersionIsRefusedWhereverItStands)
{
    EXPECT_TRUE(refuses(QStringLiteral("<Process version=\"x\" name=\"A\" process-id=\"5\"/>")));
    EXPECT_TRUE(refuses(QStringLiteral("<Process name=\"A\" process-id=\"5\" version=\"\"/>")));
}

TEST_F(ProcessArchiverTest, AnyVersionOrNoneAndUnknownAttributesAreAccepted)
{
    EXPECT_TRUE(accepts(QStringLiteral("<Process version=\"99\" name=\"A\" process-id=\"5\"/>")));
    EXPECT_TRUE(accepts(QStringLiteral("<Process name=\"A\" process-id=\"5\" other=\"x\"/>")));
}

TEST_F(ProcessArchiverTest, ReaderErrorLowersTheFlagButTheRecordComesBack)
{
    bool ok = true;
    const Process process =
        load(QStringLiteral("<Process name=\"A\" process-id=\"5\"></Wrong>"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(process.name(), QStringLiteral("A"));
    EXPECT_EQ(process.id(), 5U);
}

TEST_F(ProcessArchiverTest, RefusedElementLeavesTheReaderWhereItIs)
{
    QXmlStreamReader reader(
        QStringLiteral("<Process name=\"\" process-id=\"5\"><Child/></Process>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ProcessArchiver::loadProcess(reader);
    EXPECT_TRUE(reader.isStartElement());
    EXPECT_EQ(reader.name(), QStringLiteral("Process"));
}

TEST_F(ProcessArchiverTest, LogsAttributesWithValuesTheListElementAndItsText)
{
    load(QStringLiteral("<Process name=\"A\" process-id=\"5\"><CompatibleMaterials>1;2"
                        "</CompatibleMaterials></Process>"));
    EXPECT_EQ(m_log.texts(),
              (std::vector<std::string>{"attribute:  \"name\"  ->  \"A\"",
                                        "attribute:  \"process-id\"  ->  \"5\"",
                                        "Element:  \"CompatibleMaterials\"", "text->  \"1;2\""}));
    for (const LogRecorder::Line &line : m_log.lines()) {
        EXPECT_EQ(line.type, QtDebugMsg);
        EXPECT_NE(line.file.find("ProcessArchiver.cpp"), std::string::npos) << line.file;
    }
}
