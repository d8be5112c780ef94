#include "Model/Persistence/RegistryFile.h"

#include "RegistryTestSupport.h"

#include <QBuffer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using Model::Persistence::RegistryFile;

namespace {

class RegistryFileTest : public ::testing::Test
{
protected:
    bool read(const QByteArray &xml)
    {
        m_elements.clear();
        QBuffer device;
        device.setData(xml);
        device.open(QIODevice::ReadOnly);
        return m_file.read(device, collector());
    }

    bool load()
    {
        m_elements.clear();
        return m_file.load(collector());
    }

    RegistryFile::ElementReader collector()
    {
        return [this](QXmlStreamReader &reader) {
            m_elements.push_back(reader.name().toString().toStdString());
        };
    }

    void save()
    {
        m_file.save([](QXmlStreamWriter &writer) {
            writer.writeEmptyElement(QStringLiteral("Thing"));
            writer.writeAttribute(QStringLiteral("name"), QStringLiteral("ä"));
        });
    }

    TemporaryHome m_home;
    LogRecorder m_log;
    RegistryFile m_file{QStringLiteral("things.xml"), QStringLiteral("Things")};
    std::vector<std::string> m_elements;
};

const QByteArray savedFile = QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                               "<Things>\n"
                                               "    <Thing name=\"\xC3\xA4\"/>\n"
                                               "</Things>\n");

} // namespace

TEST_F(RegistryFileTest, EveryStartElementBelowTheRootIsReadAtAnyDepth)
{
    EXPECT_TRUE(read("<!DOCTYPE Things><!-- c --><Things> <A><B/>text</A><!-- c --><C/></Things>"));
    EXPECT_EQ(m_elements, (std::vector<std::string>{"A", "B", "C"}));
}

TEST_F(RegistryFileTest, EachElementIsLoggedBeforeItIsRead)
{
    EXPECT_TRUE(read("<Things><A/><B/></Things>"));
    EXPECT_EQ(m_log.texts(), (std::vector<std::string>{"Element: \"A\"", "Element: \"B\""}));
    EXPECT_EQ(m_log.lines().front().type, QtDebugMsg);
}

TEST_F(RegistryFileTest, AnotherRootElementIsRefusedUnread)
{
    EXPECT_FALSE(read("<things><A/></things>"));
    EXPECT_FALSE(read("<Other><Things><A/></Things></Other>"));
    EXPECT_TRUE(m_elements.empty());
    EXPECT_TRUE(m_log.texts().empty());
}

TEST_F(RegistryFileTest, ContentWithoutAnyElementIsRefused)
{
    EXPECT_FALSE(read(""));
    EXPECT_FALSE(read("no markup"));
    EXPECT_FALSE(read("<?xml version=\"1.0\"?><!-- c -->"));
}

TEST_F(RegistryFileTest, RootWithoutElementsIsAccepted)
{
    EXPECT_TRUE(read("<Things/>"));
    EXPECT_TRUE(m_elements.empty());
}

TEST_F(RegistryFileTest, MalformedContentIsRefusedWithTheReadersErrorLogged)
{
    const QByteArray xml = "<Things><A/></Wrong>";
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    ASSERT_TRUE(reader.hasError());

    EXPECT_FALSE(read(xml));
    EXPECT_EQ(m_elements, (std::vector<std::string>{"A"}));
    ASSERT_EQ(m_log.texts().size(), 2U);
    EXPECT_NE(m_log.texts().back().find(reader.errorString().toStdString()), std::string::npos);
}

TEST_F(RegistryFileTest, TruncatedContentIsRefused)
{
    EXPECT_FALSE(read("<Things><A/>"));
    EXPECT_EQ(m_elements, (std::vector<std::string>{"A"}));
}

TEST_F(RegistryFileTest, SavingMakesTheFolderAndWritesTheFile)
{
    save();
    EXPECT_EQ(m_home.content(), (std::vector<std::string>{"Lithara", "Lithara/things.xml"}));
    EXPECT_EQ(m_home.read("Lithara/things.xml"), savedFile);
    EXPECT_TRUE(load());
    EXPECT_EQ(m_elements, (std::vector<std::string>{"Thing"}));
}

TEST_F(RegistryFileTest, SavingTruncatesTheFileAndLeavesOthersAlone)
{
    m_home.write("Lithara/things.xml", QByteArray(10000, 'x'));
    m_home.write("Lithara/other.xml", "other");
    save();
    EXPECT_EQ(m_home.read("Lithara/things.xml"), savedFile);
    EXPECT_EQ(m_home.read("Lithara/other.xml"), QByteArray("other"));
}

TEST_F(RegistryFileTest, SavingDoesNothingWhereTheFolderCannotBeMade)
{
    m_home.write("Lithara", "a file");
    save();
    EXPECT_EQ(m_home.content(), (std::vector<std::string>{"Lithara"}));
    EXPECT_EQ(m_home.read("Lithara"), QByteArray("a file"));
}

TEST_F(RegistryFileTest, FileThatCannotBeOpenedIsNeitherReadNorWritten)
{
    ASSERT_TRUE(QDir().mkpath(m_home.path("Lithara/things.xml")));
    EXPECT_FALSE(load());
    save();
    EXPECT_EQ(m_home.content(), (std::vector<std::string>{"Lithara", "Lithara/things.xml"}));
}

TEST_F(RegistryFileTest, MissingFileIsNotLoaded)
{
    EXPECT_FALSE(load());
    ASSERT_TRUE(QDir().mkpath(m_home.path("Lithara")));
    EXPECT_FALSE(load());
}

TEST_F(RegistryFileTest, WithoutTheFolderTheHomeDirectoryItselfIsSearched)
{
    m_home.write("things.xml", "<Things><InHome/></Things>");
    EXPECT_TRUE(load());
    EXPECT_EQ(m_elements, (std::vector<std::string>{"InHome"}));

    m_home.write("Lithara/things.xml", "<Things><InFolder/></Things>");
    EXPECT_TRUE(load());
    EXPECT_EQ(m_elements, (std::vector<std::string>{"InFolder"}));
}
