#include "Model/Materials/MaterialFactory.h"

#include "RegistryTestSupport.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <sys/time.h>
#include <unistd.h>

using Model::Materials::Material;
using Model::Materials::MaterialFactory;

namespace {

const std::string builtInIds = "1;3;4;5;6;7;8;9;10;11;12;13;14;15;16";
const char *const expectedIdsVariable = "LITHARA_TEST_MATERIAL_IDS";

class MaterialFactoryTest : public ::testing::Test
{
protected:
    void TearDown() override { m_registry->loadDefaultMaterials(); }

    bool read(const QByteArray &xml)
    {
        QBuffer device;
        device.setData(xml);
        device.open(QIODevice::ReadOnly);
        return m_registry->readMaterials(device);
    }

    std::string ids() const
    {
        std::string result;
        for (const Material &material : m_registry->materials()) {
            result += (result.empty() ? "" : ";") + std::to_string(material.id());
        }
        return result;
    }

    /// Whether a process that starts in this test's home knows exactly these materials then.
    ::testing::AssertionResult startsWith(const std::string &expectedIds) const
    {
        return passesInNewProcess("MaterialFactoryTest.StartsWithTheMaterialsOfItsHome",
                                  {{expectedIdsVariable, expectedIds}});
    }

    TemporaryHome m_home;
    LogRecorder m_log;
    boost::shared_ptr<MaterialFactory> m_registry = MaterialFactory::instance();
};

Material named(std::uint32_t id, const QString &name)
{
    return Material(id, name, 1.0F, 2.0F, 3.0F, nullptr);
}

/// Dies of SIGALRM after a second of waiting, of SIGVTALRM after less than that of computing.
[[noreturn]] void takeNewIdUnderTimers()
{
    const itimerval computing{{0, 0}, {0, 200000}};
    setitimer(ITIMER_VIRTUAL, &computing, nullptr);
    alarm(1);
    MaterialFactory::instance()->newMaterialId();
    _exit(0);
}

} // namespace

// Runs in this process, whose home was empty at its start, and in those of the tests below.
TEST_F(MaterialFactoryTest, StartsWithTheMaterialsOfItsHome)
{
    EXPECT_EQ(ids(), qEnvironmentVariable(expectedIdsVariable, QString::fromStdString(builtInIds))
                         .toStdString());
}

TEST_F(MaterialFactoryTest, WithoutTheFolderAStartWritesTheBuiltInTable)
{
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), expectedFile("default-materials.xml"));
}

TEST_F(MaterialFactoryTest, WithoutTheFileAStartWritesTheBuiltInTable)
{
    ASSERT_TRUE(QDir().mkpath(m_home.path("Lithara")));
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), expectedFile("default-materials.xml"));
}

TEST_F(MaterialFactoryTest, FileWithAnotherRootElementIsReplacedAtStart)
{
    m_home.write("Lithara/materials.xml",
                 "<Stuff><Material name=\"Own\" material-id=\"70\"/></Stuff>");
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), expectedFile("default-materials.xml"));
}

TEST_F(MaterialFactoryTest, MalformedFileIsReplacedAtStartWithoutKeepingItsFirstMaterials)
{
    m_home.write("Lithara/materials.xml",
                 "<Materials><Material name=\"Own\" material-id=\"70\"/></Stuff>");
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), expectedFile("default-materials.xml"));
}

TEST_F(MaterialFactoryTest, WhereTheFileCannotBeOpenedAStartUsesTheBuiltInTable)
{
    ASSERT_TRUE(QDir().mkpath(m_home.path("Lithara/materials.xml")));
    EXPECT_TRUE(startsWith(builtInIds));
    EXPECT_TRUE(QFileInfo(m_home.path("Lithara/materials.xml")).isDir());
}

TEST_F(MaterialFactoryTest, WellFormedFileIsUsedAtStartAndLeftAsItIs)
{
    const QByteArray file = "<Materials><Material name=\"Own\" material-id=\"70\"/>"
                            "<Material name=\"Si\" material-id=\"1\"/></Materials>";
    m_home.write("Lithara/materials.xml", file);
    EXPECT_TRUE(startsWith("1;70"));
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), file);
}

TEST_F(MaterialFactoryTest, FileWithoutMaterialsGivesAnEmptyRegistryAtStart)
{
    const QByteArray file = "<Materials><Other/></Materials>";
    m_home.write("Lithara/materials.xml", file);
    EXPECT_TRUE(startsWith(""));
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), file);
}

TEST_F(MaterialFactoryTest, BuiltInTableHasFifteenMaterialsWithTheirConstants)
{
    struct Row
    {
        std::uint32_t id;
        const char *name;
        float density, youngModulus, poissonRatio;
        std::vector<float> color;
    };
    const std::vector<Row> rows = {
        {1, "Si", 2329, 188e9F, 0.28F, {0.5F, 0.5F, 0.5F, 1}},
        {3, "Thermal Si02", 2200, 70e9F, 0.17F, {0.5F, 0.5F, 1, 1}},
        {4, "Al (bulk)", 2700, 70e9F, 0.14F, {0.7F, 0.7F, 0.7F, 1}},
        {5, "Cu (bulk)", 8960, 128e9F, 0.36F, {1, 0.8F, 0.3F, 1}},
        {6, "Cr (bulk)", 7190, 279e9F, 0.21F, {0.8F, 0.8F, 0.8F, 1}},
        {7, "Ni (bulk)", 8908, 200e9F, 0.31F, {0.8F, 0.9F, 0.8F, 1}},
        {8, "Pt (bulk)", 21450, 168e9F, 0.38F, {0.9F, 0.9F, 0.8F, 1}},
        {9, "Au (bulk)", 19300, 79e9F, 0.44F, {0.5F, 1, 0.5F, 1}},
        {10, "Ti (bulk)", 4506, 116e9F, 0.32F, {0.3F, 0.3F, 0.3F, 1}},
        {11, "Photoresist +", 1000, 1e9F, 0.4F, {1, 0.5F, 0.5F, 1}},
        {12, "Photoresist -", 1000, 1e9F, 0.4F, {1, 0.3F, 1, 1}},
        {13, "PDMS", 1000, 1e9F, 0.4F, {1, 1, 1, 1}},
        {14, "N-doped Si (100)", 2329, 188e9F, 0.28F, {1, 1, 0.67F, 1}},
        {15, "P-doped Si (100)", 2329, 188e9F, 0.28F, {0.67F, 0.67F, 1, 1}},
        {16, "Poly-Si", 2329, 188e9F, 0.28F, {0.3F, 0.5F, 0.4F, 1}},
    };
    const std::vector<Material> materials = m_registry->materials();
    ASSERT_EQ(materials.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(materials[i].id(), rows[i].id);
        EXPECT_EQ(materials[i].name().toStdString(), rows[i].name);
        EXPECT_EQ(materials[i].density(), rows[i].density);
        EXPECT_EQ(materials[i].youngModulus(), rows[i].youngModulus);
        EXPECT_EQ(materials[i].poissonRatio(), rows[i].poissonRatio);
        EXPECT_EQ(std::vector<float>(materials[i].color(), materials[i].color() + 4),
                  rows[i].color);
    }
}

TEST_F(MaterialFactoryTest, ThereIsOneInstance)
{
    ASSERT_TRUE(MaterialFactory::instance());
    EXPECT_EQ(MaterialFactory::instance(), m_registry);
}

TEST_F(MaterialFactoryTest, MaterialZeroIsTheEmptyMaterial)
{
    EXPECT_EQ(m_registry->material(0).id(), 0U);
    EXPECT_EQ(m_registry->material(0).name(), QStringLiteral("Empty"));
}

TEST_F(MaterialFactoryTest, UnknownIdGivesTheEmptyMaterial)
{
    EXPECT_EQ(m_registry->material(2).id(), 0U);
    EXPECT_EQ(m_registry->material(2).name(), QStringLiteral("Empty"));
    EXPECT_EQ(ids(), builtInIds);
}

TEST_F(MaterialFactoryTest, UpdateInsertsInIdOrderAndReplaces)
{
    EXPECT_TRUE(m_registry->updateMaterial(named(4000000000U, QStringLiteral("Last"))));
    EXPECT_TRUE(m_registry->updateMaterial(named(2, QStringLiteral("Second"))));
    EXPECT_EQ(ids(), "1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16;4000000000");

    EXPECT_TRUE(m_registry->updateMaterial(named(2, QStringLiteral("Changed"))));
    EXPECT_EQ(m_registry->material(2).name(), QStringLiteral("Changed"));
    EXPECT_EQ(m_registry->materials().size(), 17U);
}

TEST_F(MaterialFactoryTest, UpdateWithIdZeroIsRefusedAndChangesNothing)
{
    EXPECT_FALSE(m_registry->updateMaterial(named(0, QStringLiteral("Nothing"))));
    EXPECT_EQ(ids(), builtInIds);
    EXPECT_EQ(m_registry->material(0).name(), QStringLiteral("Empty"));
}

TEST_F(MaterialFactoryTest, MaterialsAreHandedOutAsCopies)
{
    Material copy = m_registry->material(1);
    copy.setName(QStringLiteral("Changed"));
    m_registry->materials().front().setName(QStringLiteral("Changed"));
    EXPECT_EQ(m_registry->material(1).name(), QStringLiteral("Si"));
}

TEST_F(MaterialFactoryTest, EditsStayInMemory)
{
    m_home.write("Lithara/materials.xml", "as it was");
    m_registry->updateMaterial(named(1, QStringLiteral("Changed")));
    EXPECT_EQ(m_home.content(), (std::vector<std::string>{"Lithara", "Lithara/materials.xml"}));
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), QByteArray("as it was"));
}

TEST_F(MaterialFactoryTest, DefaultTableReplacesEverything)
{
    m_registry->updateMaterial(named(1, QStringLiteral("Changed")));
    m_registry->updateMaterial(named(70, QStringLiteral("Own")));
    m_registry->loadDefaultMaterials();
    EXPECT_EQ(ids(), builtInIds);
    EXPECT_EQ(m_registry->material(1).name(), QStringLiteral("Si"));
}

TEST_F(MaterialFactoryTest, SavingAndLoadingTheBuiltInTableGivesEqualMaterials)
{
    const std::vector<Material> builtIn = m_registry->materials();
    m_registry->saveMaterials();
    EXPECT_EQ(m_home.read("Lithara/materials.xml"), expectedFile("default-materials.xml"));
    for (const Material &material : builtIn) {
        m_registry->updateMaterial(named(material.id(), QStringLiteral("Changed")));
    }

    ASSERT_TRUE(m_registry->loadMaterials());
    const std::vector<Material> loaded = m_registry->materials();
    ASSERT_EQ(loaded.size(), builtIn.size());
    for (std::size_t i = 0; i < builtIn.size(); ++i) {
        SCOPED_TRACE(builtIn[i].name().toStdString());
        EXPECT_EQ(loaded[i], builtIn[i]);
        EXPECT_EQ(loaded[i].density(), builtIn[i].density());
        EXPECT_EQ(loaded[i].youngModulus(), builtIn[i].youngModulus());
        EXPECT_EQ(loaded[i].poissonRatio(), builtIn[i].poissonRatio());
    }
    EXPECT_EQ(m_registry->material(1).color()[0], float(127 / 255.0));
}

TEST_F(MaterialFactoryTest, LoadingKeepsSixSignificantDigits)
{
    Material material = named(70, QStringLiteral("Own"));
    material.setDensity(1234.5678F);
    m_registry->updateMaterial(material);
    m_registry->saveMaterials();
    ASSERT_TRUE(m_registry->loadMaterials());
    EXPECT_EQ(m_registry->material(70).density(), 1234.57F);
}

TEST_F(MaterialFactoryTest, ElementsWithoutIdOrNameAreNotEntered)
{
    EXPECT_TRUE(read("<Materials><Material name=\"A\"/><Material name=\"B\" material-id=\"0\"/>"
                     "<Material name=\"\" material-id=\"70\"/><Material material-id=\"71\"/>"
                     "<Material name=\"C\" material-id=\"72\"/></Materials>"));
    EXPECT_EQ(ids(), builtInIds + ";72");
}

TEST_F(MaterialFactoryTest, LaterElementWithTheSameIdWins)
{
    EXPECT_TRUE(read("<Materials><Material name=\"A\" material-id=\"70\" density=\"4\"/>"
                     "<Material name=\"B\" material-id=\"70\"/></Materials>"));
    EXPECT_EQ(m_registry->material(70).name(), QStringLiteral("B"));
    EXPECT_EQ(m_registry->material(70).density(), 0.0F);
}

TEST_F(MaterialFactoryTest, OtherElementsAreSkipped)
{
    EXPECT_TRUE(read("<Materials><Process name=\"A\" material-id=\"70\"/>"
                     "<Group><Material name=\"B\" material-id=\"71\"/></Group></Materials>"));
    EXPECT_EQ(ids(), builtInIds + ";71");
}

TEST_F(MaterialFactoryTest, LoadingEntersBesideWhatIsThere)
{
    m_home.write("Lithara/materials.xml",
                 "<Materials><Material name=\"A\" material-id=\"70\"/></Materials>");
    EXPECT_TRUE(m_registry->loadMaterials());
    EXPECT_EQ(ids(), builtInIds + ";70");
}

TEST_F(MaterialFactoryTest, MalformedFileReportsFailureAfterItsFirstMaterials)
{
    m_home.write("Lithara/materials.xml",
                 "<Materials><Material name=\"A\" material-id=\"70\"/><Material name=");
    EXPECT_FALSE(m_registry->loadMaterials());
    EXPECT_EQ(m_registry->material(70).name(), QStringLiteral("A"));
}

TEST_F(MaterialFactoryTest, MissingFileReportsFailureAndChangesNothing)
{
    EXPECT_FALSE(m_registry->loadMaterials());
    EXPECT_EQ(ids(), builtInIds);
    EXPECT_TRUE(m_home.content().empty());
}

TEST_F(MaterialFactoryTest, LogsElementsAndTheirAttributes)
{
    EXPECT_TRUE(
        read("<Materials><Material name=\"A\" material-id=\"70\"/><Other a=\"1\"/></Materials>"));
    EXPECT_EQ(m_log.texts(),
              (std::vector<std::string>{"Element: \"Material\"", "attribute:  \"name\"",
                                        "attribute:  \"material-id\"", "Element: \"Other\""}));
}

TEST_F(MaterialFactoryTest, ReadersWaitUntilLoadingIsDone)
{
    std::future<Material> waiting;
    HookedBuffer device("<Materials><Material name=\"A\" material-id=\"70\"/></Materials>", [&] {
        waiting = std::async(std::launch::async, [this] { return m_registry->material(70); });
        EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    });
    EXPECT_TRUE(m_registry->readMaterials(device));
    ASSERT_TRUE(waiting.valid());
    EXPECT_EQ(waiting.get().name(), QStringLiteral("A"));
}

TEST_F(MaterialFactoryTest, ThreadsMayReadAndUpdateAtOnce)
{
    std::vector<std::thread> threads;
    for (std::uint32_t thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, thread] {
            for (std::uint32_t i = 0; i < 200; ++i) {
                m_registry->updateMaterial(named(100 + 4 * i + thread, QStringLiteral("T")));
                EXPECT_EQ(m_registry->material(1).name(), QStringLiteral("Si"));
                EXPECT_GE(m_registry->materials().size(), 15U + i);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(m_registry->materials().size(), 15U + 800U);
}

TEST_F(MaterialFactoryTest, NewIdBlocksForGoodWithoutComputing)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(takeNewIdUnderTimers(), ::testing::KilledBySignal(SIGALRM), "");
}
