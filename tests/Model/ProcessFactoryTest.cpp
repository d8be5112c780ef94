#include "Model/Process/ProcessFactory.h"

#include "RegistryTestSupport.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <vector>

using Model::Process::Process;
using Model::Process::ProcessFactory;

namespace {

using Ids = std::vector<std::uint32_t>;

const std::string builtInIds = "1;2;3;4;5;6;7;8;9;10;11;12;13;14";
const char *const expectedIdsVariable = "LITHARA_TEST_PROCESS_IDS";

class ProcessFactoryTest : public ::testing::Test
{
protected:
    void TearDown() override { m_registry->loadDefaultProcesses(); }

    bool read(const QByteArray &xml)
    {
        QBuffer device;
        device.setData(xml);
        device.open(QIODevice::ReadOnly);
        return m_registry->readProcesses(device);
    }

    std::string ids() const
    {
        std::string result;
        for (const Process &process : m_registry->processes()) {
            result += (result.empty() ? "" : ";") + std::to_string(process.id());
        }
        return result;
    }

    /// Whether a process of the system that starts in this test's home knows exactly these then.
    ::testing::AssertionResult startsWith(const std::string &expectedIds) const
    {
        return passesInNewProcess("ProcessFactoryTest.StartsWithTheProcessesOfItsHome",
                                  {{expectedIdsVariable, expectedIds}});
    }

    TemporaryHome m_home;
    LogRecorder m_log;
    boost::shared_ptr<ProcessFactory> m_registry = ProcessFactory::instance();
};

} // namespace

// Runs in this process, whose home was empty at its start, and in those of the tests below.
TEST_F(ProcessFactoryTest, StartsWithTheProcessesOfItsHome)
{
    EXPECT_EQ(ids(), qEnvironmentVariable(expectedIdsVariable, QString::fromStdString(builtInIds))
                         .toStdString());
}

TEST_F(ProcessFactoryTest, WithoutTheFolderAStartWritesTheBuiltInTable)
{
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_EQ(m_home.read("Lithara/processes.xml"), expectedFile("default-processes.xml"));
}

TEST_F(ProcessFactoryTest, FileWithAnotherRootElementIsReplacedAtStart)
{
    m_home.write("Lithara/processes.xml", "<Process name=\"Own\" process-id=\"70\"/>");
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_EQ(m_home.read("Lithara/processes.xml"), expectedFile("default-processes.xml"));
}

TEST_F(ProcessFactoryTest, MalformedFileIsReplacedAtStartWithoutKeepingItsFirstProcesses)
{
    m_home.write("Lithara/processes.xml",
                 "<Processes><Process name=\"Own\" process-id=\"70\"><CompatibleMaterials>1"
                 "</CompatibleMaterials></Process></Stuff>");
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_EQ(m_home.read("Lithara/processes.xml"), expectedFile("default-processes.xml"));
}

TEST_F(ProcessFactoryTest, WhereTheFileCannotBeOpenedAStartUsesTheBuiltInTable)
{
    ASSERT_TRUE(QDir().mkpath(m_home.path("Lithara/processes.xml")));
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_TRUE(QFileInfo(m_home.path("Lithara/processes.xml")).isDir());
}

TEST_F(ProcessFactoryTest, WellFormedFileIsUsedAtStartAndLeftAsItIs)
{
    const QByteArray file = "<Processes><Process name=\"Own\" process-id=\"70\">"
                            "<CompatibleMaterials>1</CompatibleMaterials></Process></Processes>";
    m_home.write("Lithara/processes.xml", file);
    EXPECT_TRUE(startsWith("70"));
    EXPECT_EQ(m_home.read("Lithara/processes.xml"), file);
}

TEST_F(ProcessFactoryTest, FileWithoutProcessesGivesAnEmptyRegistryAtStart)
{
    m_home.write("Lithara/processes.xml", "<Processes/>");
    EXPECT_TRUE(startsWith(""));
    EXPECT_EQ(m_home.read("Lithara/processes.xml"), QByteArray("<Processes/>"));
}

TEST_F(ProcessFactoryTest, BuiltInTableHasFourteenProcessesWithTheirMaterials)
{
    struct Row
    {
        std::uint32_t id;
        const char *name;
        Ids materials;
    };
    const std::vector<Row> rows = {
        {1, "Si Wet Etching", {1}},
        {2, "DRIE", {1}},
        {3, "CVD", {3, 16}},
        {4, "PVD", {4, 5, 6, 7, 8, 9, 10}},
        {5, "Film Etching", {3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {6, "Photolithography", {3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {7, "Planarization", {}},
        {8, "Spin Coating / Soft Lithography", {11, 12, 13}},
        {9, "Isotropic Deposition", {3, 4, 5, 6, 7, 8, 9, 10}},
        {10, "Isotropic Etching", {1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
        {11, "Electroplating", {4, 5, 6, 7, 8, 9, 10}},
        {12, "Simple Si Oxidation", {1, 14, 15, 16}},
        {13, "Simple Doping", {1, 14, 15, 16}},
        {14, "Ion Implantation", {1, 14, 15, 16}},
    };
    const std::vector<Process> processes = m_registry->processes();
    ASSERT_EQ(processes.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(processes[i].id(), rows[i].id);
        EXPECT_EQ(processes[i].name().toStdString(), rows[i].name);
        EXPECT_EQ(processes[i].compatibleMaterialIds(), rows[i].materials);
    }
}

TEST_F(ProcessFactoryTest, ThereIsOneInstance)
{
    ASSERT_TRUE(ProcessFactory::instance());
    EXPECT_EQ(ProcessFactory::instance(), m_registry);
}

TEST_F(ProcessFactoryTest, UnknownIdGivesTheEmptyRecord)
{
    for (const std::uint32_t id : {0U, 15U}) {
        const Process process = m_registry->process(id);
        EXPECT_EQ(process.id(), 0U);
        EXPECT_EQ(process.name(), QString());
        EXPECT_EQ(process.compatibleMaterialIds(), Ids());
    }
    EXPECT_EQ(ids(), builtInIds);
    EXPECT_EQ(m_registry->process(3).name(), QStringLiteral("CVD"));
}

TEST_F(ProcessFactoryTest, NameIsLookedUpExactly)
{
    EXPECT_EQ(m_registry->processByName(QStringLiteral("Simple Doping")).id(), 13U);
    EXPECT_EQ(m_registry->processByName(QStringLiteral("Simple Doping ")).id(), 0U);
    EXPECT_EQ(m_registry->processByName(QString()).id(), 0U);
}

TEST_F(ProcessFactoryTest, NameInAnotherCaseGivesTheEmptyRecord)
{
    const Process process = m_registry->processByName(QStringLiteral("simple doping"));
    EXPECT_EQ(process.id(), 0U);
    EXPECT_EQ(process.name(), QString());
    EXPECT_EQ(process.compatibleMaterialIds(), Ids());
}

TEST_F(ProcessFactoryTest, LowestIdWinsAmongEqualNames)
{
    m_registry->updateProcess(Process(QStringLiteral("Twin"), 71));
    m_registry->updateProcess(Process(QStringLiteral("Twin"), 70));
    EXPECT_EQ(m_registry->processByName(QStringLiteral("Twin")).id(), 70U);
}

TEST_F(ProcessFactoryTest, UpdateInsertsInIdOrderAndReplaces)
{
    EXPECT_TRUE(m_registry->updateProcess(Process(QStringLiteral("Own"), 70, {1, 2})));
    EXPECT_TRUE(m_registry->updateProcess(Process(QStringLiteral("Etch"), 2, {9, 9})));
    EXPECT_EQ(ids(), builtInIds + ";70");
    EXPECT_EQ(m_registry->process(70).name(), QStringLiteral("Own"));
    EXPECT_EQ(m_registry->process(70).compatibleMaterialIds(), (Ids{1, 2}));
    EXPECT_EQ(m_registry->process(2).id(), 2U);
    EXPECT_EQ(m_registry->process(2).name(), QStringLiteral("Etch"));
    EXPECT_EQ(m_registry->process(2).compatibleMaterialIds(), (Ids{9, 9}));
}

TEST_F(ProcessFactoryTest, UpdateWithIdZeroIsRefusedAndChangesNothing)
{
    EXPECT_FALSE(m_registry->updateProcess(Process(QStringLiteral("Nothing"), 0, {1})));
    EXPECT_EQ(ids(), builtInIds);
    EXPECT_EQ(m_registry->process(0).name(), QString());
}

TEST_F(ProcessFactoryTest, UpdateDoesNotReachTheDiskUntilSaved)
{
    m_registry->updateProcess(Process(QStringLiteral("DRIE"), 2, {1, 16}));
    EXPECT_TRUE(m_home.content().empty());

    m_registry->saveProcesses();
    EXPECT_EQ(m_home.read("Lithara/processes.xml"),
              expectedFile("default-processes.xml")
                  .replace("name=\"DRIE\" process-id=\"2\">\n        <CompatibleMaterials>1<",
                           "name=\"DRIE\" process-id=\"2\">\n        <CompatibleMaterials>1;16<"));
}

TEST_F(ProcessFactoryTest, ProcessesAreHandedOutAsCopies)
{
    Process copy = m_registry->process(3);
    copy.addCompatibleMaterial(1);
    m_registry->processes().front().addCompatibleMaterial(99);
    EXPECT_EQ(m_registry->process(3).compatibleMaterialIds(), (Ids{3, 16}));
    EXPECT_EQ(m_registry->process(1).compatibleMaterialIds(), Ids{1});
}

TEST_F(ProcessFactoryTest, DefaultTableReplacesEverything)
{
    m_registry->updateProcess(Process(QStringLiteral("Own"), 70));
    m_registry->updateProcess(Process(QStringLiteral("Etch"), 2));
    m_registry->loadDefaultProcesses();
    EXPECT_EQ(ids(), builtInIds);
    EXPECT_EQ(m_registry->process(2).name(), QStringLiteral("DRIE"));
}

TEST_F(ProcessFactoryTest, SavingAndLoadingTheBuiltInTableGivesTheSameRecords)
{
    const std::vector<Process> builtIn = m_registry->processes();
    m_registry->saveProcesses();
    EXPECT_EQ(m_home.read("Lithara/processes.xml"), expectedFile("default-processes.xml"));
    for (const Process &process : builtIn) {
        m_registry->updateProcess(Process(QStringLiteral("Changed"), process.id(), {99}));
    }

    ASSERT_TRUE(m_registry->loadProcesses());
    const std::vector<Process> loaded = m_registry->processes();
    ASSERT_EQ(loaded.size(), builtIn.size());
    for (std::size_t i = 0; i < builtIn.size(); ++i) {
        EXPECT_EQ(loaded[i].id(), builtIn[i].id());
        EXPECT_EQ(loaded[i].name(), builtIn[i].name());
        EXPECT_EQ(loaded[i].compatibleMaterialIds(), builtIn[i].compatibleMaterialIds());
    }
}

TEST_F(ProcessFactoryTest, EmptyListElementIsStoredAsAnEmptyList)
{
    EXPECT_TRUE(read("<Processes><Process name=\"A\" process-id=\"70\"><CompatibleMaterials/>"
                     "</Process><Process name=\"B\" process-id=\"71\">\n"
                     "<CompatibleMaterials>4</CompatibleMaterials></Process></Processes>"));
    EXPECT_EQ(m_registry->process(70).name(), QStringLiteral("A"));
    EXPECT_EQ(m_registry->process(70).compatibleMaterialIds(), Ids());
    EXPECT_EQ(m_registry->process(71).compatibleMaterialIds(), Ids{4});
}

TEST_F(ProcessFactoryTest, ProcessWithoutAChildStandsButSwallowsTheNextElement)
{
    EXPECT_TRUE(read("<Processes><Process name=\"A\" process-id=\"70\"/>"
                     "<Process name=\"B\" process-id=\"71\"><CompatibleMaterials>4"
                     "</CompatibleMaterials></Process>"
                     "<Process name=\"C\" process-id=\"72\"><CompatibleMaterials>5"
                     "</CompatibleMaterials></Process></Processes>"));
    EXPECT_EQ(ids(), builtInIds + ";70;72");
    EXPECT_EQ(m_registry->process(70).compatibleMaterialIds(), Ids());
    EXPECT_EQ(m_registry->process(72).compatibleMaterialIds(), Ids{5});
}

TEST_F(ProcessFactoryTest, UnknownMaterialStaysInTheRecordAndIsWrittenBack)
{
    EXPECT_TRUE(read("<Processes><Process name=\"A\" process-id=\"2\"><CompatibleMaterials>"
                     "999;4</CompatibleMaterials></Process></Processes>"));
    const Process process = m_registry->process(2);
    EXPECT_EQ(process.compatibleMaterialIds(), (Ids{999, 4}));
    ASSERT_EQ(process.compatibleMaterials().size(), 1U);
    EXPECT_EQ(process.compatibleMaterials().front().id(), 4U);

    m_registry->saveProcesses();
    EXPECT_TRUE(m_home.read("Lithara/processes.xml")
                    .contains("<CompatibleMaterials>999;4</CompatibleMaterials>"));
}

TEST_F(ProcessFactoryTest, RefusedElementsAreNotEnteredAndLaterOnesWin)
{
    EXPECT_TRUE(read("<Processes><Process name=\"A\" process-id=\"0\"/>"
                     "<Process name=\"\" process-id=\"70\"/><Process name=\"B\" process-id=\"x\"/>"
                     "<Process version=\"x\" name=\"C\" process-id=\"71\"/><Other/>"
                     "<Process name=\"D\" process-id=\"72\"><CompatibleMaterials>1"
                     "</CompatibleMaterials></Process>"
                     "<Process name=\"E\" process-id=\"72\"><CompatibleMaterials>2"
                     "</CompatibleMaterials></Process></Processes>"));
    EXPECT_EQ(ids(), builtInIds + ";72");
    EXPECT_EQ(m_registry->process(72).name(), QStringLiteral("E"));
    EXPECT_EQ(m_registry->process(72).compatibleMaterialIds(), Ids{2});
}

TEST_F(ProcessFactoryTest, MalformedFileReportsFailure)
{
    m_home.write("Lithara/processes.xml",
                 "<Processes><Process name=\"A\" process-id=\"70\"><CompatibleMaterials>1"
                 "</CompatibleMaterials></Process><Process name=\"B\" process-id=\"71\">");
    EXPECT_FALSE(m_registry->loadProcesses());
    EXPECT_EQ(m_registry->process(70).name(), QStringLiteral("A"));
    EXPECT_EQ(m_registry->process(71).id(), 0U);
}

TEST_F(ProcessFactoryTest, MissingFileReportsFailureAndChangesNothing)
{
    EXPECT_FALSE(m_registry->loadProcesses());
    EXPECT_EQ(ids(), builtInIds);
    EXPECT_TRUE(m_home.content().empty());
}

TEST_F(ProcessFactoryTest, LogsElementsAttributesAndLists)
{
    EXPECT_TRUE(read("<Processes><Process name=\"A\"/><Process process-id=\"70\" name=\"B\">"
                     "<CompatibleMaterials>1</CompatibleMaterials></Process></Processes>"));
    EXPECT_EQ(m_log.texts(),
              (std::vector<std::string>{
                  "Element: \"Process\"", "attribute:  \"name\"  ->  \"A\"", "Element: \"Process\"",
                  "attribute:  \"process-id\"  ->  \"70\"", "attribute:  \"name\"  ->  \"B\"",
                  "Element:  \"CompatibleMaterials\"", "text->  \"1\""}));
}

TEST_F(ProcessFactoryTest, ReadersWaitUntilLoadingIsDone)
{
    std::future<Process> waiting;
    HookedBuffer device("<Processes><Process name=\"A\" process-id=\"70\"/></Processes>", [&] {
        waiting = std::async(std::launch::async, [this] { return m_registry->process(70); });
        EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    });
    EXPECT_TRUE(m_registry->readProcesses(device));
    ASSERT_TRUE(waiting.valid());
    EXPECT_EQ(waiting.get().name(), QStringLiteral("A"));
}

TEST_F(ProcessFactoryTest, UpdateTakesNoLock)
{
    std::future<bool> updating;
    HookedBuffer device("<Processes/>", [&] {
        updating = std::async(std::launch::async, [this] {
            return m_registry->updateProcess(Process(QStringLiteral("Own"), 70));
        });
        EXPECT_EQ(updating.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    });
    EXPECT_TRUE(m_registry->readProcesses(device));
    ASSERT_TRUE(updating.valid());
    EXPECT_TRUE(updating.get());
    EXPECT_EQ(m_registry->process(70).name(), QStringLiteral("Own"));
}
