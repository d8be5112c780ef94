#include "Model/Persistence/MaterialArchiver.h"

#include "RegistryTestSupport.h"

#include <QBuffer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

using Model::Materials::Material;
using Model::Persistence::MaterialArchiver;

namespace {

class MaterialArchiverTest : public ::testing::Test
{
protected:
    LogRecorder m_log;
};

Material load(const QString &xml, bool *ok = nullptr)
{
    QXmlStreamReader reader(xml);
    EXPECT_TRUE(reader.readNextStartElement());
    return MaterialArchiver::loadMaterial(&reader, ok);
}

bool accepts(const QString &xml)
{
    bool ok = false;
    load(xml, &ok);
    return ok;
}

QString save(const Material &material)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    EXPECT_TRUE(MaterialArchiver::saveMaterial(&writer, material));
    writer.writeEndDocument();
    return xml;
}

std::vector<float> colorOf(const Material &material)
{
    return std::vector<float>(material.color(), material.color() + 4);
}

std::vector<float> loadedColor(const QString &text)
{
    return colorOf(
        load(QStringLiteral("<Material name=\"m\" material-id=\"1\" color=\"%1\"/>").arg(text)));
}

QString savedColor(float red, float green, float blue, float alpha)
{
    const float color[] = {red, green, blue, alpha};
    const QString xml = save(Material(1, QStringLiteral("m"), 0, 0, 0, color));
    return xml.section(QStringLiteral(" color=\""), 1).section(QLatin1Char('"'), 0, 0);
}

} // namespace

TEST_F(MaterialArchiverTest, WritesTheSevenAttributesInTheirOrder)
{
    const float color[] = {1.0F, 0.8F, 0.3F, 1.0F};
    EXPECT_EQ(save(Material(5, QStringLiteral("Cu (bulk)"), 8960, 128e9F, 0.36F, color)),
              QStringLiteral("<Material version=\"1\" name=\"Cu (bulk)\" material-id=\"5\" "
                             "density=\"8960\" poisson-ratio=\"0.36\" young-modulus=\"1.28e+11\" "
                             "color=\"#FFFFCC4C\"/>\n"));
}

TEST_F(MaterialArchiverTest, NumbersAreWrittenWithSixSignificantDigits)
{
    const Material material(1, QStringLiteral("m"), 1234.5678F, 123456789.0F, 0.12345678F, nullptr);
    EXPECT_EQ(save(material),
              QStringLiteral("<Material version=\"1\" name=\"m\" material-id=\"1\" "
                             "density=\"1234.57\" poisson-ratio=\"0.123457\" "
                             "young-modulus=\"1.23457e+08\" color=\"#FF7F7F7F\"/>\n"));
}

TEST_F(MaterialArchiverTest, ChannelsAreTruncatedAndAlphaComesFirst)
{
    EXPECT_EQ(savedColor(0.5F, 0.5F, 0.5F, 1.0F), QStringLiteral("#FF7F7F7F"));
    EXPECT_EQ(savedColor(1.0F, 0.3F, 0.9F, 0.7F), QStringLiteral("#B2FF4CE5"));
    EXPECT_EQ(savedColor(0.999F, 1.0F, 1.0F, 1.0F), QStringLiteral("#FFFEFFFF"));
}

TEST_F(MaterialArchiverTest, ZeroChannelIsTheSingleDigitZero)
{
    EXPECT_EQ(savedColor(1.0F, 0.0F, 1.0F, 1.0F), QStringLiteral("#FFFF0FF"));
    EXPECT_EQ(savedColor(0.0F, 0.0F, 0.0F, 0.0F), QStringLiteral("#0000"));
}

TEST_F(MaterialArchiverTest, ChannelBelowSixteenIsOneDigit)
{
    EXPECT_EQ(savedColor(15.5F / 255.0F, 16.5F / 255.0F, 1.5F / 255.0F, 1.0F),
              QStringLiteral("#FFF101"));
}

TEST_F(MaterialArchiverTest, ColorOfSevenDigitsComesBackAsOpaqueBlack)
{
    EXPECT_EQ(loadedColor(savedColor(1.0F, 0.0F, 1.0F, 1.0F)),
              (std::vector<float>{0.0F, 0.0F, 0.0F, 1.0F}));
}

TEST_F(MaterialArchiverTest, ColorOfSixDigitsComesBackWithAlphaAsRed)
{
    // Opaque blue is "#FF00FF", which reads as opaque magenta.
    EXPECT_EQ(loadedColor(savedColor(0.0F, 0.0F, 1.0F, 1.0F)),
              (std::vector<float>{1.0F, 0.0F, 1.0F, 1.0F}));
}

TEST_F(MaterialArchiverTest, EveryTwoDigitChannelSurvivesLoadingAndSaving)
{
    for (int channel = 16; channel < 256; ++channel) {
        const QString digits = QString::number(channel, 16).toUpper();
        const QString text = QStringLiteral("#%1%1%1%1").arg(digits);
        const std::vector<float> color = loadedColor(text);
        EXPECT_EQ(color, std::vector<float>(4, float(channel / 255.0)));
        EXPECT_EQ(savedColor(color[0], color[1], color[2], color[3]), text);
    }
}

TEST_F(MaterialArchiverTest, ChannelThatFitsNoIntegerIsWrittenAsZero)
{
    EXPECT_EQ(savedColor(std::numeric_limits<float>::quiet_NaN(), 1.0F, 1.0F, 1.0F),
              QStringLiteral("#FF0FFFF"));
    EXPECT_EQ(savedColor(1.0F, std::numeric_limits<float>::infinity(), 1e30F, -1e30F),
              QStringLiteral("#0FF00"));
}

TEST_F(MaterialArchiverTest, NamesKeepMarkupAndForeignLetters)
{
    const QString name = QStringLiteral("<Ni> & \"Würfel\" \u6750");
    Material material;
    material.setId(9);
    material.setName(name);
    bool ok = false;
    EXPECT_EQ(load(save(material), &ok).name(), name);
    EXPECT_TRUE(ok);
}

TEST_F(MaterialArchiverTest, WithoutAWriterNothingIsSaved)
{
    EXPECT_FALSE(MaterialArchiver::saveMaterial(nullptr, Material()));
}

TEST_F(MaterialArchiverTest, FailingDeviceIsReported)
{
    QByteArray bytes;
    QBuffer readOnly(&bytes);
    ASSERT_TRUE(readOnly.open(QIODevice::ReadOnly));
    QXmlStreamWriter writer(&readOnly);
    EXPECT_FALSE(MaterialArchiver::saveMaterial(&writer, Material()));
}

TEST_F(MaterialArchiverTest, ReadsEveryAttributeInAnyOrder)
{
    bool ok = false;
    const Material material =
        load(QStringLiteral("<Material color=\"#80FF0033\" young-modulus=\"1.88e+11\" "
                            "poisson-ratio=\"0.28\" density=\"2329.5\" material-id=\"17\" "
                            "name=\"SiC\" version=\"1\"/>"),
             &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(material.id(), 17U);
    EXPECT_EQ(material.name(), QStringLiteral("SiC"));
    EXPECT_EQ(material.density(), 2329.5F);
    EXPECT_EQ(material.poissonRatio(), 0.28F);
    EXPECT_EQ(material.youngModulus(), 1.88e11F);
    EXPECT_EQ(colorOf(material),
              (std::vector<float>{1.0F, 0.0F, float(51 / 255.0), float(128 / 255.0)}));
}

TEST_F(MaterialArchiverTest, VersionAndUnknownAttributesArePassedOver)
{
    EXPECT_TRUE(accepts(QStringLiteral(
        "<Material version=\"none\" colour=\"?\" name=\"Si\" material-id=\"1\" id=\"x\"/>")));
}

TEST_F(MaterialArchiverTest, MissingNumbersAreZeroAndMissingColorIsGrey)
{
    bool ok = false;
    const Material material =
        load(QStringLiteral("<Material name=\"Si\" material-id=\"1\"/>"), &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(material.density(), 0.0F);
    EXPECT_EQ(material.youngModulus(), 0.0F);
    EXPECT_EQ(material.poissonRatio(), 0.0F);
    EXPECT_EQ(colorOf(material), (std::vector<float>{0.5F, 0.5F, 0.5F, 1.0F}));
}

TEST_F(MaterialArchiverTest, UnparsableNumbersAreZeroWithoutNotice)
{
    bool ok = false;
    const Material material =
        load(QStringLiteral("<Material name=\"Si\" material-id=\"1\" density=\"heavy\" "
                            "young-modulus=\"\" poisson-ratio=\"0,3\"/>"),
             &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(material.density(), 0.0F);
    EXPECT_EQ(material.youngModulus(), 0.0F);
    EXPECT_EQ(material.poissonRatio(), 0.0F);
}

TEST_F(MaterialArchiverTest, IdIsDecimalOnly)
{
    EXPECT_TRUE(accepts(QStringLiteral("<Material name=\"Si\" material-id=\"010\"/>")));
    EXPECT_EQ(load(QStringLiteral("<Material name=\"Si\" material-id=\"010\"/>")).id(), 10U);
    EXPECT_EQ(load(QStringLiteral("<Material name=\"Si\" material-id=\"4294967295\"/>")).id(),
              4294967295U);
    EXPECT_FALSE(accepts(QStringLiteral("<Material name=\"Si\" material-id=\"0x10\"/>")));
    EXPECT_FALSE(accepts(QStringLiteral("<Material name=\"Si\" material-id=\"-1\"/>")));
    EXPECT_FALSE(accepts(QStringLiteral("<Material name=\"Si\" material-id=\"4294967296\"/>")));
}

TEST_F(MaterialArchiverTest, MissingOrZeroIdIsRefusedButTheValuesComeBack)
{
    EXPECT_FALSE(accepts(QStringLiteral("<Material name=\"Si\"/>")));

    bool ok = true;
    const Material material =
        load(QStringLiteral("<Material name=\"Si\" material-id=\"0\" density=\"3\"/>"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(material.id(), 0U);
    EXPECT_EQ(material.name(), QStringLiteral("Si"));
    EXPECT_EQ(material.density(), 3.0F);
}

TEST_F(MaterialArchiverTest, MissingOrEmptyNameIsRefusedButTheValuesComeBack)
{
    EXPECT_FALSE(accepts(QStringLiteral("<Material material-id=\"1\"/>")));

    bool ok = true;
    const Material material =
        load(QStringLiteral("<Material name=\"\" material-id=\"7\" density=\"3\"/>"), &ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(material.id(), 7U);
    EXPECT_EQ(material.name(), QString());
    EXPECT_EQ(material.density(), 3.0F);
}

TEST_F(MaterialArchiverTest, AnotherElementGivesTheEmptyMaterial)
{
    for (const QString &element : {QStringLiteral("material"), QStringLiteral("Materials")}) {
        bool ok = true;
        const Material material =
            load(QStringLiteral("<%1 name=\"Si\" material-id=\"1\"/>").arg(element), &ok);
        EXPECT_FALSE(ok);
        EXPECT_EQ(material.id(), 0U);
        EXPECT_EQ(material.name(), QStringLiteral("Empty"));
    }
}

TEST_F(MaterialArchiverTest, WithoutAReaderTheEmptyMaterialComes)
{
    bool ok = true;
    EXPECT_EQ(MaterialArchiver::loadMaterial(nullptr, &ok).name(), QStringLiteral("Empty"));
    EXPECT_FALSE(ok);
    EXPECT_EQ(MaterialArchiver::loadMaterial(nullptr).id(), 0U);
}

TEST_F(MaterialArchiverTest, TheFlagMayBeLeftOut)
{
    EXPECT_EQ(load(QStringLiteral("<Material name=\"Si\" material-id=\"1\"/>"), nullptr).id(), 1U);
    EXPECT_EQ(load(QStringLiteral("<Other/>"), nullptr).id(), 0U);
}

TEST_F(MaterialArchiverTest, LogsEachAttributeWithItsPlaceInTheSource)
{
    load(QStringLiteral("<Material name=\"Si\" unknown=\"1\"/>"));
    EXPECT_EQ(m_log.texts(),
              (std::vector<std::string>{"attribute:  \"name\"", "attribute:  \"unknown\""}));
    for (const LogRecorder::Line &line : m_log.lines()) {
        EXPECT_EQ(line.type, QtDebugMsg);
        EXPECT_NE(line.file.find("MaterialArchiver.cpp"), std::string::npos) << line.file;
        EXPECT_NE(line.function.find("loadMaterial"), std::string::npos) << line.function;
        EXPECT_GT(line.line, 0);
    }
}
