#include "UI/BatchRun/ProcessListArchiver.h"

#include "Model/RegistryTestSupport.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <unistd.h>

using Ui::ProcessData;
using Ui::ProcessListArchiver;
using Util::Vector3D;

using Mask = std::vector<bool>;

/// Converts to a mask and to a vector.
struct MaskAndVector
{
    Mask mask;
    Vector3D vector;
};
Q_DECLARE_METATYPE(MaskAndVector)

/// Converts to a vector and to a text.
struct VectorAndText
{
    Vector3D vector;
};
Q_DECLARE_METATYPE(VectorAndText)

namespace {

class ProcessListArchiverTest : public ::testing::Test
{
protected:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    LogRecorder m_log;
    QTemporaryDir m_folder;
};

QByteArray write(const std::vector<ProcessData> &list)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    ProcessListArchiver archiver(list);
    EXPECT_TRUE(archiver.writeProcessList(device));
    return device.data();
}

bool read(const QByteArray &xml, std::vector<ProcessData> &list)
{
    QBuffer device;
    device.setData(xml);
    device.open(QIODevice::ReadOnly);
    return ProcessListArchiver().readProcessList(device, list);
}

std::vector<ProcessData> readAll(const QByteArray &xml)
{
    std::vector<ProcessData> list;
    EXPECT_TRUE(read(xml, list));
    return list;
}

/// What one parameter of this value becomes, from its type on.
std::string written(const QVariant &value)
{
    ProcessData step(0);
    step.setParameter("n", value, true);
    const QString xml = QString::fromUtf8(write({step}));
    return xml.section(" parameter-name=\"n\" ", 1)
        .section(" parameter-visibility", 0, 0)
        .toStdString();
}

QVariant readValue(const QString &type, const QString &data)
{
    const QString xml = QString("<?xml version=\"1.0\"?><Process-List><Process-Data "
                                "process-type=\"0\"><Parameter parameter-name=\"n\" "
                                "parameter-type=\"%1\" parameter-data=\"%2\"/>"
                                "</Process-Data></Process-List>")
                            .arg(type, data);
    const std::vector<ProcessData> list = readAll(xml.toUtf8());
    EXPECT_EQ(list.size(), 1U);
    EXPECT_EQ(list.at(0).parameters().keys(), QStringList("n"));
    return list.at(0).parameter("n");
}

QVariant saveAndLoad(const QVariant &value)
{
    ProcessData step(0);
    step.setParameter("n", value, true);
    const std::vector<ProcessData> list = readAll(write({step}));
    EXPECT_EQ(list.size(), 1U);
    return list.at(0).parameter("n");
}

std::vector<double> components(const QVariant &value)
{
    EXPECT_EQ(value.userType(), qMetaTypeId<Vector3D>());
    const auto vector = value.value<Vector3D>();
    return {vector[0], vector[1], vector[2]};
}

std::vector<int> types(const std::vector<ProcessData> &list)
{
    std::vector<int> result;
    for (const ProcessData &step : list) {
        result.push_back(step.processType());
    }
    return result;
}

/// The list of all-values.plst, with the parameters entered in another order than the map's.
std::vector<ProcessData> listOfAllValues()
{
    ProcessData substrate(11);
    substrate.setParameter("Vector", QVariant::fromValue(Vector3D(1.5, -2.0, 1.0 / 3.0)), true);
    substrate.setParameter("Uint", 4294967295U, true);
    substrate.setParameter("Text", QString::fromUtf8("<5 & \"6\">\nΩm"), true);
    substrate.setParameter("Mask", QVariant::fromValue(Mask{false, true, true, false, true}),
                           false);
    substrate.setParameter("Int", std::numeric_limits<int>::min(), false);
    substrate.setParameter("Float", 0.1F, true);
    substrate.setParameter("Double", 0.1, true);
    substrate.setParameter("Color", QColor(10, 20, 255), false);
    substrate.setParameter("Bool Yes", true, false);
    substrate.setParameter("Bool No", false, true);
    ProcessData image(10);
    image.setParameter("Filename", QString(), true);
    return {substrate, image, ProcessData(1)};
}

} // namespace

TEST_F(ProcessListArchiverTest, WritesTheNineTypesOfValuesInTheOrderOfTheirNames)
{
    ASSERT_TRUE(ProcessListArchiver(listOfAllValues()).saveProcessList(path("list.plst")));
    QFile file(path("list.plst"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), expectedFile("all-values.plst"));
    EXPECT_EQ(write(listOfAllValues()), expectedFile("all-values.plst"));
    EXPECT_TRUE(m_log.texts().empty());
}

TEST_F(ProcessListArchiverTest, ReadsTheNineTypesOfValues)
{
    std::vector<ProcessData> list;
    ASSERT_TRUE(
        ProcessListArchiver().loadProcessList(LITHARA_TEST_DATA_DIR "/all-values.plst", list));
    ASSERT_EQ(types(list), (std::vector<int>{11, 10, 1}));
    ProcessData &step = list[0];
    EXPECT_EQ(step.parameters().keys(),
              QStringList({"Bool No", "Bool Yes", "Color", "Double", "Float", "Int", "Mask", "Text",
                           "Uint", "Vector"}));

    const auto expect = [&](const QString &name, int type, bool visible) {
        EXPECT_EQ(step.parameter(name).userType(), type) << name.toStdString();
        EXPECT_EQ(step.isVisible(name), visible) << name.toStdString();
    };
    expect("Bool No", QMetaType::Bool, true);
    expect("Bool Yes", QMetaType::Bool, false);
    expect("Color", QMetaType::QColor, false);
    expect("Double", QMetaType::Double, true);
    expect("Float", QMetaType::Float, true);
    expect("Int", QMetaType::Int, false);
    expect("Mask", qMetaTypeId<Mask>(), false);
    expect("Text", QMetaType::QString, true);
    expect("Uint", QMetaType::UInt, true);
    expect("Vector", qMetaTypeId<Vector3D>(), true);

    EXPECT_FALSE(step.parameter("Bool No").toBool());
    EXPECT_TRUE(step.parameter("Bool Yes").toBool());
    EXPECT_EQ(step.parameter("Color").value<QColor>(), QColor(10, 20, 255));
    EXPECT_EQ(step.parameter("Double").toDouble(), 0.1);
    EXPECT_EQ(step.parameter("Float").toFloat(), 0.1F);
    EXPECT_EQ(step.parameter("Int").toInt(), std::numeric_limits<int>::min());
    EXPECT_EQ(step.parameter("Mask").value<Mask>(), (Mask{false, true, true, false, true}));
    EXPECT_EQ(step.parameter("Text").toString(), QString::fromUtf8("<5 & \"6\">\nΩm"));
    EXPECT_EQ(step.parameter("Uint").toUInt(), 4294967295U);
    EXPECT_EQ(components(step.parameter("Vector")), (std::vector<double>{1.5, -2, 0.3333333333}));

    EXPECT_EQ(list[1].parameter("Filename"), QVariant(QString()));
    EXPECT_TRUE(list[2].parameters().isEmpty());
}

TEST_F(ProcessListArchiverTest, WhatIsReadIsWrittenTheSame)
{
    EXPECT_EQ(write(readAll(expectedFile("all-values.plst"))), expectedFile("all-values.plst"));
}

TEST_F(ProcessListArchiverTest, EmptyListIsAnElementWithoutChildrenAndComesBackEmpty)
{
    ASSERT_TRUE(ProcessListArchiver().saveProcessList(path("empty.plst")));
    QFile file(path("empty.plst"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), expectedFile("empty.plst"));

    std::vector<ProcessData> list;
    EXPECT_TRUE(ProcessListArchiver().loadProcessList(path("empty.plst"), list));
    EXPECT_TRUE(list.empty());
}

TEST_F(ProcessListArchiverTest, StepsOfAFileAreAppended)
{
    std::vector<ProcessData> list = {ProcessData(4)};
    const std::uint32_t id = list[0].id();
    EXPECT_TRUE(read(expectedFile("all-values.plst"), list));
    EXPECT_TRUE(read(expectedFile("all-values.plst"), list));
    EXPECT_EQ(types(list), (std::vector<int>{4, 11, 10, 1, 11, 10, 1}));
    EXPECT_EQ(list[0].id(), id);
}

TEST_F(ProcessListArchiverTest, IdsOfStepsThatAreReadAreNew)
{
    const std::vector<ProcessData> saved = listOfAllValues();
    const std::vector<ProcessData> loaded = readAll(write(saved));
    ASSERT_EQ(loaded.size(), 3U);
    EXPECT_EQ(loaded[0].id(), saved[2].id() + 1);
    EXPECT_EQ(loaded[1].id(), saved[2].id() + 2);
    EXPECT_EQ(loaded[2].id(), saved[2].id() + 3);
}

TEST_F(ProcessListArchiverTest, ParameterWithoutVisibilityIsVisible)
{
    std::vector<ProcessData> list = readAll(expectedFile("visibility.plst"));
    ASSERT_EQ(list.size(), 1U);
    ASSERT_EQ(list[0].parameters().size(), 6);
    EXPECT_TRUE(list[0].isVisible("absent"));
    EXPECT_TRUE(list[0].isVisible("empty"));
}

TEST_F(ProcessListArchiverTest, VisibilityIsTheExactWordTrue)
{
    std::vector<ProcessData> list = readAll(expectedFile("visibility.plst"));
    ASSERT_EQ(list.size(), 1U);
    EXPECT_TRUE(list[0].isVisible("true"));
    EXPECT_FALSE(list[0].isVisible("True"));
    EXPECT_FALSE(list[0].isVisible("1"));
    EXPECT_FALSE(list[0].isVisible("false"));
}

TEST_F(ProcessListArchiverTest, MaskWithoutElementsWritesEmptyDataAndComesBackEmpty)
{
    EXPECT_EQ(written(QVariant::fromValue(Mask())), R"(parameter-type="vector" parameter-data="")");
    const QVariant value = saveAndLoad(QVariant::fromValue(Mask()));
    EXPECT_EQ(value.userType(), qMetaTypeId<Mask>());
    EXPECT_TRUE(value.value<Mask>().empty());
}

TEST_F(ProcessListArchiverTest, MaskOfOneBitIsOneCharacter)
{
    EXPECT_EQ(written(QVariant::fromValue(Mask{true})),
              R"(parameter-type="vector" parameter-data="1")");
    EXPECT_EQ(written(QVariant::fromValue(Mask{false})),
              R"(parameter-type="vector" parameter-data="0")");
    EXPECT_EQ(saveAndLoad(QVariant::fromValue(Mask{true})).value<Mask>(), Mask{true});
    EXPECT_EQ(saveAndLoad(QVariant::fromValue(Mask{false})).value<Mask>(), Mask{false});
}

TEST_F(ProcessListArchiverTest, MaskOfTenThousandBitsSurvives)
{
    std::mt19937 random(20);
    Mask mask;
    std::string text;
    for (int i = 0; i < 10000; ++i) {
        mask.push_back(random() % 2 == 1);
        text += mask.back() ? '1' : '0';
    }
    EXPECT_EQ(written(QVariant::fromValue(mask)),
              "parameter-type=\"vector\" parameter-data=\"" + text + "\"");
    EXPECT_EQ(saveAndLoad(QVariant::fromValue(mask)).value<Mask>(), mask);
}

TEST_F(ProcessListArchiverTest, EveryCharacterOfAMaskButOneIsFalse)
{
    EXPECT_EQ(readValue("vector", "10x1 2").value<Mask>(),
              (Mask{true, false, false, true, false, false}));
}

TEST_F(ProcessListArchiverTest, ColorWithAlphaBelowOneComesBackOpaque)
{
    const QColor color(10, 20, 255, 128);
    EXPECT_EQ(written(color), R"(parameter-type="QColor" parameter-data="#0a14ff")");
    EXPECT_EQ(saveAndLoad(color).value<QColor>(), QColor(10, 20, 255, 255));
    EXPECT_EQ(saveAndLoad(QColor(0, 0, 0, 0)).value<QColor>(), QColor(0, 0, 0, 255));
}

TEST_F(ProcessListArchiverTest, TextThatIsNoColorGivesAnInvalidColor)
{
    for (const QString &text : {QString(), QString("#12"), QString("no color")}) {
        const QVariant value = readValue("QColor", text);
        EXPECT_EQ(value.userType(), int(QMetaType::QColor)) << text.toStdString();
        EXPECT_FALSE(value.value<QColor>().isValid()) << text.toStdString();
    }
    EXPECT_EQ(readValue("QColor", "#0f0").value<QColor>(), QColor(0, 255, 0));
}

TEST_F(ProcessListArchiverTest, VectorHasTenDigitsAComponent)
{
    EXPECT_EQ(written(QVariant::fromValue(Vector3D(0, -0.5, 12345678901.0))),
              R"(parameter-type="Util::Vector3D" parameter-data="0;-0.5;1.23456789e+10")");
    EXPECT_EQ(written(QVariant::fromValue(Vector3D(2.0 / 3.0, 1e-7, 1234567890))),
              R"(parameter-type="Util::Vector3D" parameter-data="0.6666666667;1e-07;1234567890")");
    EXPECT_EQ(components(saveAndLoad(QVariant::fromValue(Vector3D(2.0 / 3.0, 1e-7, -8)))),
              (std::vector<double>{0.6666666667, 1e-7, -8}));
}

TEST_F(ProcessListArchiverTest, VectorWithEmptyDataIsZero)
{
    EXPECT_EQ(components(readValue("Util::Vector3D", "")), (std::vector<double>{0, 0, 0}));
}

TEST_F(ProcessListArchiverTest, FirstThreePartsMakeAVectorAndEmptyPartsCount)
{
    EXPECT_EQ(components(readValue("Util::Vector3D", "1;2;3;4")), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(components(readValue("Util::Vector3D", ";;3")), (std::vector<double>{0, 0, 3}));
    EXPECT_EQ(components(readValue("Util::Vector3D", "1;x;1e2")), (std::vector<double>{1, 0, 100}));
    EXPECT_EQ(components(readValue("Util::Vector3D", "1,2;3;4")), (std::vector<double>{0, 3, 4}));
}

TEST_F(ProcessListArchiverTest, VectorOfFewerPartsIsFilledWithZeros)
{
    EXPECT_EQ(components(readValue("Util::Vector3D", "7")), (std::vector<double>{7, 0, 0}));
    EXPECT_EQ(components(readValue("Util::Vector3D", "7;8")), (std::vector<double>{7, 8, 0}));
}

TEST_F(ProcessListArchiverTest, ConversionToAMaskIsTriedBeforeConversionToAVector)
{
    QMetaType::registerConverter<MaskAndVector, Vector3D>(
        [](const MaskAndVector &value) { return value.vector; });
    QMetaType::registerConverter<MaskAndVector, Mask>(
        [](const MaskAndVector &value) { return value.mask; });
    EXPECT_EQ(written(QVariant::fromValue(MaskAndVector{{true, false}, {1, 2, 3}})),
              R"(parameter-type="vector" parameter-data="10")");
}

TEST_F(ProcessListArchiverTest, ConversionToAVectorIsTriedBeforeTheValuesOwnType)
{
    QMetaType::registerConverter<VectorAndText, QString>(
        [](const VectorAndText &) { return QString("text"); });
    QMetaType::registerConverter<VectorAndText, Vector3D>(
        [](const VectorAndText &value) { return value.vector; });
    EXPECT_EQ(written(QVariant::fromValue(VectorAndText{{1, 2, 3}})),
              R"(parameter-type="Util::Vector3D" parameter-data="1;2;3")");
}

TEST_F(ProcessListArchiverTest, BoolIsTrueForTheExactWordOnly)
{
    EXPECT_EQ(readValue("bool", "true"), QVariant(true));
    for (const char *text : {"false", "True", "1", "", " true"}) {
        EXPECT_EQ(readValue("bool", text), QVariant(false)) << text;
    }
}

TEST_F(ProcessListArchiverTest, IntegersAreDecimalAndZeroOutOfRange)
{
    EXPECT_EQ(readValue("int", "-017"), QVariant(-17));
    EXPECT_EQ(readValue("int", "0x10"), QVariant(0));
    EXPECT_EQ(readValue("int", "2147483647"), QVariant(2147483647));
    EXPECT_EQ(readValue("int", "2147483648"), QVariant(0));
    EXPECT_EQ(readValue("int", "1.5"), QVariant(0));
    EXPECT_EQ(readValue("uint", "010"), QVariant(10U));
    EXPECT_EQ(readValue("uint", "0x10"), QVariant(0U));
    EXPECT_EQ(readValue("uint", "-1"), QVariant(0U));
    EXPECT_EQ(readValue("uint", "4294967296"), QVariant(0U));
    EXPECT_EQ(readValue("uint", ""), QVariant(0U));
}

TEST_F(ProcessListArchiverTest, TextThatIsNoNumberIsZeroOfItsType)
{
    EXPECT_EQ(readValue("double", "thick"), QVariant(0.0));
    EXPECT_EQ(readValue("double", "1,5"), QVariant(0.0));
    EXPECT_EQ(readValue("float", ""), QVariant(0.0F));
    EXPECT_EQ(readValue("float", "").userType(), int(QMetaType::Float));
    EXPECT_EQ(readValue("int", "x").userType(), int(QMetaType::Int));
}

TEST_F(ProcessListArchiverTest, FloatsSurviveExactly)
{
    for (const double value :
         {0.0, 1.0 / 3.0, -1e-300, 123456789.123456789, std::numeric_limits<double>::max(),
          std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::infinity()}) {
        const QVariant back = saveAndLoad(value);
        EXPECT_EQ(back.userType(), int(QMetaType::Double));
        EXPECT_EQ(back.toDouble(), value);
    }
    for (const float value :
         {0.0F, 1.0F / 3.0F, -16777216.0F, 1e-30F, std::numeric_limits<float>::max(),
          std::numeric_limits<float>::min()}) {
        const QVariant back = saveAndLoad(value);
        EXPECT_EQ(back.userType(), int(QMetaType::Float));
        EXPECT_EQ(back.toFloat(), value);
    }
    EXPECT_TRUE(std::isnan(saveAndLoad(std::nan("")).toDouble()));
}

TEST_F(ProcessListArchiverTest, NumbersBeyondTheirTypeAreInfiniteAndTooSmallOnesZero)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(readValue("float", "1e39"), QVariant(float(infinity)));
    EXPECT_EQ(readValue("float", "-1e39"), QVariant(-float(infinity)));
    EXPECT_EQ(readValue("float", "1e400"), QVariant(float(infinity)));
    EXPECT_EQ(readValue("float", "1e-60"), QVariant(0.0F));
    EXPECT_EQ(readValue("double", "1e39"), QVariant(1e39));
    EXPECT_EQ(readValue("double", "1e400"), QVariant(infinity));
    EXPECT_EQ(readValue("double", "-1e400"), QVariant(-infinity));
    EXPECT_EQ(readValue("double", "1e-400"), QVariant(0.0));
    EXPECT_EQ(components(readValue("Util::Vector3D", "1e400;-1e400;1e39")),
              (std::vector<double>{infinity, -infinity, 1e39}));
}

TEST_F(ProcessListArchiverTest, TextsSurviveExactly)
{
    const QStringList texts = {QString(),
                               "  two  spaces ",
                               "a\tb\nc\r\nd",
                               "<!-- & ]]> '\"",
                               "&amp;",
                               "true",
                               QString::fromUtf8("/home/Jörg/Maske №1 \xF0\x9F\x94\xAC.png")};
    for (const QString &text : texts) {
        EXPECT_EQ(saveAndLoad(text), QVariant(text)) << text.toStdString();
        ProcessData step(0);
        step.setParameter(text, 1, true);
        EXPECT_EQ(readAll(write({step})).at(0).parameters().keys(), QStringList(text));
    }
}

TEST_F(ProcessListArchiverTest, UnknownTypeOfValueIsAnInvalidParameter)
{
    for (const char *type : {"", "Bool", "QByteArray", "std::vector", "std::vector&lt;bool&gt;",
                             "Vector3D", "unsigned int"}) {
        EXPECT_FALSE(readValue(type, "1").isValid()) << type;
    }
}

TEST_F(ProcessListArchiverTest, OtherValuesAreWrittenWithTheirOwnTypeAndText)
{
    EXPECT_EQ(written(QVariant(qlonglong(-5))),
              R"(parameter-type="qlonglong" parameter-data="-5")");
    EXPECT_EQ(written(QVariant()), R"(parameter-type="" parameter-data="")");
}

/// The one step of a list with these parameters.
ProcessData stepOf(const QByteArray &parameters)
{
    const std::vector<ProcessData> list =
        readAll("<?xml version=\"1.0\"?><Process-List><Process-Data process-type=\"4\">" +
                parameters + "</Process-Data></Process-List>");
    EXPECT_EQ(list.size(), 1U);
    return list.at(0);
}

TEST_F(ProcessListArchiverTest, ParameterWithoutANameStandsUnderTheEmptyOne)
{
    const ProcessData step = stepOf("<Parameter parameter-type=\"int\" parameter-data=\"7\"/>"
                                    "<Parameter parameter-name=\"n\" parameter-type=\"int\" "
                                    "parameter-data=\"8\"/>");
    EXPECT_EQ(step.parameters().keys(), QStringList({QString(), "n"}));
    EXPECT_EQ(step.parameter(QString()), QVariant(7));
    EXPECT_EQ(step.parameter("n"), QVariant(8));
}

TEST_F(ProcessListArchiverTest, ParameterWithoutATypeIsInvalid)
{
    const ProcessData step = stepOf("<Parameter parameter-name=\"n\" parameter-data=\"7\"/>");
    EXPECT_EQ(step.parameters().keys(), QStringList("n"));
    EXPECT_FALSE(step.parameter("n").isValid());
}

TEST_F(ProcessListArchiverTest, ParameterWithoutDataIsTheEmptyValueOfItsType)
{
    const auto valueOf = [](const QByteArray &type) {
        return stepOf("<Parameter parameter-name=\"n\" parameter-type=\"" + type + "\"/>")
            .parameter("n");
    };
    EXPECT_EQ(valueOf("bool"), QVariant(false));
    EXPECT_EQ(valueOf("float"), QVariant(0.0F));
    EXPECT_EQ(valueOf("double"), QVariant(0.0));
    EXPECT_EQ(valueOf("int"), QVariant(0));
    EXPECT_EQ(valueOf("uint"), QVariant(0U));
    EXPECT_EQ(valueOf("QString"), QVariant(QString()));
    EXPECT_EQ(valueOf("QColor").userType(), int(QMetaType::QColor));
    EXPECT_FALSE(valueOf("QColor").value<QColor>().isValid());
    EXPECT_EQ(valueOf("vector").userType(), qMetaTypeId<Mask>());
    EXPECT_TRUE(valueOf("vector").value<Mask>().empty());
    EXPECT_EQ(components(valueOf("Util::Vector3D")), (std::vector<double>{0, 0, 0}));
}

TEST_F(ProcessListArchiverTest, RepeatedAttributeOfAParameterEndsTheListBeforeIt)
{
    const std::vector<ProcessData> list =
        readAll("<?xml version=\"1.0\"?><Process-List><Process-Data process-type=\"7\"/>"
                "<Process-Data process-type=\"8\"><Parameter parameter-name=\"n\" "
                "parameter-type=\"int\" parameter-data=\"1\"/><Parameter parameter-name=\"a\" "
                "parameter-name=\"b\"/></Process-Data><Process-Data process-type=\"9\"/>"
                "</Process-List>");
    ASSERT_EQ(types(list), (std::vector<int>{7, 8}));
    EXPECT_EQ(list[1].parameters().keys(), QStringList("n"));
}

TEST_F(ProcessListArchiverTest, LastOfTwoParametersOfOneNameStands)
{
    std::vector<ProcessData> list =
        readAll("<?xml version=\"1.0\"?><Process-List><Process-Data process-type=\"4\">"
                "<Parameter parameter-name=\"n\" parameter-type=\"int\" parameter-data=\"1\" "
                "parameter-visibility=\"false\"/>"
                "<Parameter parameter-data=\"2\" parameter-type=\"uint\" parameter-name=\"n\"/>"
                "</Process-Data></Process-List>");
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0].parameter("n").userType(), int(QMetaType::UInt));
    EXPECT_EQ(list[0].parameter("n").toUInt(), 2U);
    EXPECT_TRUE(list[0].isVisible("n"));
}

TEST_F(ProcessListArchiverTest, ProcessTypeOutsideTheTableSurvivesLoadingAsAnUnknownProcess)
{
    const std::vector<ProcessData> list = readAll(expectedFile("process-types.plst"));
    ASSERT_EQ(types(list), (std::vector<int>{0, 15, 16, 99, -1, 0, 0, 0}));
    EXPECT_EQ(Ui::processTypeName(list[3].processType()), "Unknown process");
    EXPECT_EQ(Ui::processTypeName(list[4].processType()), "Unknown process");
    EXPECT_EQ(types(readAll(write(list))), types(list));
}

TEST_F(ProcessListArchiverTest, ForeignElementAmongTheStepsIsLoggedAndSkipped)
{
    const std::vector<ProcessData> list = readAll(expectedFile("foreign-elements.plst"));
    ASSERT_EQ(types(list), (std::vector<int>{4, 5, 6}));
    EXPECT_EQ(list[0].parameter("Thickness"), QVariant(2.5));
    // What follows a foreign element inside a step is foreign too.
    EXPECT_EQ(list[1].parameters().keys(), QStringList("Depth"));

    EXPECT_EQ(
        m_log.texts(),
        (std::vector<std::string>{
            R"(CurrentTag:  "Archive"  in line  2)", R"(CurrentTag:  "Process-List"  in line  3)",
            R"(CurrentTag:  "Comment"  in line  4)",
            R"(Unknown tag found in file:  "Comment"  in line  4)",
            R"(Unknown tag found in file:  "Author"  in line  4)",
            R"(Starting parse of :  "Process-Data"  in line  5)",
            R"(CurrentTag:  "Parameter"  in line  6)", R"(CurrentTag:  "Note"  in line  8)",
            R"(Unknown tag found in file:  "Note"  in line  8)",
            R"(Starting parse of :  "Process-Data"  in line  9)",
            R"(CurrentTag:  "Parameter"  in line  10)", R"(CurrentTag:  "Note"  in line  11)",
            R"(Unknown tag found in file:  "Note"  in line  11)",
            R"(Unknown tag found in file:  "Parameter"  in line  12)",
            R"(Starting parse of :  "Process-Data"  in line  15)",
            R"(CurrentTag:  ""  in line  17)"}));
}

TEST_F(ProcessListArchiverTest, LogLinesCarryTheirPlaceInTheSource)
{
    readAll(expectedFile("foreign-elements.plst"));
    ASSERT_FALSE(m_log.lines().empty());
    for (const LogRecorder::Line &line : m_log.lines()) {
        EXPECT_EQ(line.type, QtDebugMsg);
        EXPECT_NE(line.file.find("ProcessListArchiver.cpp"), std::string::npos) << line.file;
        EXPECT_NE(line.function.find("ProcessListArchiver"), std::string::npos) << line.function;
        EXPECT_GT(line.line, 0);
    }
}

TEST_F(ProcessListArchiverTest, ContentWithoutAListIsRefusedAtItsEnd)
{
    for (const char *xml : {"", "x", "no markup at all", "<?xml version=\"1.0\"?>",
                            "<?xml version=\"1.0\"?><process-list><Process-Data/></process-list>",
                            "<?xml version=\"1.0\"?><Process-Lists><Process-Data "
                            "process-type=\"1\"/></Process-Lists>",
                            "<?xml version=\"1.0\"?><A><B></A>"}) {
        std::vector<ProcessData> list = {ProcessData(4)};
        EXPECT_FALSE(read(xml, list)) << xml;
        EXPECT_EQ(list.size(), 1U) << xml;
    }
}

TEST_F(ProcessListArchiverTest, ElementsOnTheWayToTheListAreLogged)
{
    std::vector<ProcessData> list;
    EXPECT_FALSE(read("<?xml version=\"1.0\"?>\n<A>\n<Process-Data/></A>\n", list));
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(m_log.texts(), (std::vector<std::string>{R"(CurrentTag:  "A"  in line  2)",
                                                       R"(CurrentTag:  "Process-Data"  in line  3)",
                                                       R"(CurrentTag:  ""  in line  4)"}));
}

TEST_F(ProcessListArchiverTest, TruncatedFileGivesTheStepsBeforeItsEnd)
{
    const QByteArray whole = expectedFile("all-values.plst");
    const QRegularExpression stepTag("<Process-Data [^>]*>");
    const QRegularExpression parameterTag("<Parameter [^>]*>");
    // Every byte, and with them every place where an element begins or ends.
    for (int size = 0; size < whole.size(); ++size) {
        const QByteArray cut = whole.left(size);
        std::vector<ProcessData> list;
        const bool result = read(cut, list);
        int parameters = 0;
        for (const ProcessData &step : list) {
            parameters += step.parameters().size();
        }
        const QString text = QString::fromUtf8(cut);
        ASSERT_EQ(result, text.contains("<Process-List>")) << size;
        ASSERT_EQ(int(list.size()), text.count(stepTag)) << size;
        ASSERT_EQ(parameters, text.count(parameterTag)) << size;
    }
}

TEST_F(ProcessListArchiverTest, DamagedFileGivesTheStepsBeforeTheDamageAndSuccess)
{
    // The reader stands on the name of the element that is closed wrongly; it counts once.
    const QByteArray head = "<?xml version=\"1.0\"?><Process-List><Process-Data "
                            "process-type=\"7\"/>";
    EXPECT_EQ(types(readAll(head + "<Process-Data process-type=\"8\"></Wrong>")),
              (std::vector<int>{7, 8}));
    const std::vector<ProcessData> list =
        readAll(head + "<Process-Data process-type=\"8\"><Parameter parameter-name=\"n\" "
                       "parameter-type=\"int\" parameter-data=\"1\"></Process-Data>");
    EXPECT_EQ(types(list), (std::vector<int>{7, 8}));
    EXPECT_EQ(list.back().parameters().keys(), QStringList("n"));
    EXPECT_EQ(types(readAll(head + "<Process-Data process-type=\"8\" process-type=\"9\"/>")),
              (std::vector<int>{7}));
    EXPECT_EQ(types(readAll(head + "&unknown;")), (std::vector<int>{7}));
}

TEST_F(ProcessListArchiverTest, StepsBeforeRandomDamageAreReadUnlessTheEncodingSuffers)
{
    const QByteArray whole = expectedFile("all-values.plst");
    const unsigned seed = 7;
    std::mt19937 random(seed);
    int certain = 0;
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        // Bytes from 128 on may be no UTF-8, which the reader notices a block of bytes at a time.
        const bool ascii = round % 2 == 0;
        QByteArray xml = whole;
        const int start = int(random() % unsigned(xml.size()));
        for (int i = 0; i < 3; ++i) {
            const int place = start + int(random() % unsigned(xml.size() - start));
            xml[place] = char(random() % (ascii ? 128 : 256));
        }
        std::vector<ProcessData> list;
        const bool result = read(xml, list);
        ASSERT_TRUE(result || list.empty());
        if (ascii && whole.left(start).contains("\n    </Process-Data>")) {
            ++certain;
            ASSERT_TRUE(result);
            ASSERT_FALSE(list.empty());
            ASSERT_EQ(list[0].processType(), 11);
            ASSERT_EQ(list[0].parameters().size(), 10);
        }
    }
    EXPECT_GT(certain, 10);
}

TEST_F(ProcessListArchiverTest, ReadingElsewhereThanOnAStepGivesTheUnreadableType)
{
    ProcessListArchiver archiver;
    EXPECT_EQ(archiver.readProcessData().processType(), 16);
    EXPECT_EQ(m_log.texts(), (std::vector<std::string>{R"(Starting parse of :  ""  in line  1)"}));

    std::vector<ProcessData> list;
    EXPECT_TRUE(archiver.loadProcessList(LITHARA_TEST_DATA_DIR "/all-values.plst", list));
    const ProcessData step = archiver.readProcessData();
    EXPECT_EQ(step.processType(), ProcessData::Unreadable);
    EXPECT_TRUE(step.parameters().isEmpty());
}

TEST_F(ProcessListArchiverTest, EmptyFileIsNotLoaded)
{
    QFile file(path("empty.plst"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    std::vector<ProcessData> list = {ProcessData(4)};
    EXPECT_FALSE(ProcessListArchiver().loadProcessList(path("empty.plst"), list));
    EXPECT_EQ(types(list), std::vector<int>{4});
    EXPECT_TRUE(QFile::exists(path("empty.plst")));
}

TEST_F(ProcessListArchiverTest, FileWithoutPermissionIsNeitherLoadedNorSaved)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "nothing is forbidden to root";
    ASSERT_TRUE(ProcessListArchiver(listOfAllValues()).saveProcessList(path("list.plst")));
    ASSERT_TRUE(QFile::setPermissions(path("list.plst"), QFile::Permissions()));
    std::vector<ProcessData> list = {ProcessData(4)};
    EXPECT_FALSE(ProcessListArchiver().loadProcessList(path("list.plst"), list));
    EXPECT_FALSE(ProcessListArchiver().saveProcessList(path("list.plst")));
    EXPECT_EQ(types(list), std::vector<int>{4});
    ASSERT_TRUE(QFile::setPermissions(path("list.plst"), QFile::ReadOwner));
    EXPECT_TRUE(ProcessListArchiver().loadProcessList(path("list.plst"), list));
    EXPECT_EQ(types(list), (std::vector<int>{4, 11, 10, 1}));
}

TEST_F(ProcessListArchiverTest, FullDiskShowsInTheResultOfALongList)
{
    // By a link, so that nothing can take the device itself away.
    if (!QFile::link("/dev/full", path("full.plst")) || !QFile::exists(path("full.plst")))
        GTEST_SKIP() << "there is no device that is always full";
    // Much longer than what the file keeps back until it is flushed.
    ProcessData step(0);
    step.setParameter("Mask", QVariant::fromValue(Mask(1000000)), false);
    EXPECT_FALSE(ProcessListArchiver({step, step}).saveProcessList(path("full.plst")));
    EXPECT_TRUE(QFile::exists(path("full.plst")));
}

TEST_F(ProcessListArchiverTest, FileThatCannotBeOpenedIsNotLoaded)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("folder.plst"));
    ASSERT_TRUE(ProcessListArchiver().saveProcessList(path("file")));
    std::vector<ProcessData> list = {ProcessData(4)};
    for (const QString &name : {path("missing.plst"), path("missing/list.plst"),
                                path("folder.plst"), path("file/list.plst"), QString()}) {
        EXPECT_FALSE(ProcessListArchiver().loadProcessList(name, list)) << name.toStdString();
    }
    EXPECT_EQ(list.size(), 1U);
}

TEST_F(ProcessListArchiverTest, FileThatCannotBeOpenedIsNotSaved)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("folder.plst"));
    ASSERT_TRUE(ProcessListArchiver().saveProcessList(path("file")));
    for (const QString &name :
         {path("missing/list.plst"), path("folder.plst"), path("file/list.plst"), QString()}) {
        EXPECT_FALSE(ProcessListArchiver(listOfAllValues()).saveProcessList(name))
            << name.toStdString();
    }
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList({"file", "folder.plst"}));
}

TEST_F(ProcessListArchiverTest, SavingReplacesAFileThatIsLonger)
{
    QFile file(path("list.plst"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100000, 'x'));
    file.close();
    EXPECT_TRUE(ProcessListArchiver(listOfAllValues()).saveProcessList(path("list.plst")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), expectedFile("all-values.plst"));
}

TEST_F(ProcessListArchiverTest, SavesACopyOfTheListAndMayDoSoAgain)
{
    std::vector<ProcessData> list = listOfAllValues();
    ProcessListArchiver archiver(list);
    list[0].setParameter("Double", 9.0, true);
    list.clear();
    for (const QString &name : {path("first.plst"), path("second.plst")}) {
        EXPECT_TRUE(archiver.saveProcessList(name));
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), expectedFile("all-values.plst"));
    }
}

TEST_F(ProcessListArchiverTest, ErrorOfTheWriterShowsInEveryLaterResult)
{
    QBuffer readOnly;
    ASSERT_TRUE(readOnly.open(QIODevice::ReadOnly));
    ProcessListArchiver archiver(listOfAllValues());
    EXPECT_FALSE(archiver.writeProcessList(readOnly));

    std::vector<ProcessData> list;
    EXPECT_FALSE(archiver.loadProcessList(LITHARA_TEST_DATA_DIR "/all-values.plst", list));
    EXPECT_EQ(types(list), (std::vector<int>{11, 10, 1}));
}

TEST_F(ProcessListArchiverTest, CharactersThatXmlHasNotAreLeftOutAndReported)
{
    ProcessData step(10);
    step.setParameter("Filename", QString("a") + QChar(1) + "b.png", true);
    EXPECT_FALSE(ProcessListArchiver({step, ProcessData(1)}).saveProcessList(path("list.plst")));

    std::vector<ProcessData> list;
    EXPECT_TRUE(ProcessListArchiver().loadProcessList(path("list.plst"), list));
    ASSERT_EQ(types(list), (std::vector<int>{10, 1}));
    EXPECT_EQ(list[0].parameter("Filename"), QVariant("ab.png"));
}
