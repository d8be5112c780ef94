#include "UI/BatchRun/ProcessData.h"

#include "Model/RegistryTestSupport.h"

#include <QColor>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

using Ui::ProcessData;

namespace {

const char *const freshProcessVariable = "LITHARA_TEST_FRESH_PROCESS";

} // namespace

TEST(ProcessDataTest, StepKeepsItsProcessTypeAndStartsWithoutParameters)
{
    const ProcessData step(12);
    EXPECT_EQ(step.processType(), 12);
    EXPECT_TRUE(step.parameters().isEmpty());
    EXPECT_EQ(ProcessData(-1).processType(), -1);
    EXPECT_EQ(ProcessData(std::numeric_limits<std::int32_t>::max()).processType(), 2147483647);
}

TEST(ProcessDataTest, EachStepThatIsConstructedFromATypeGetsTheNextId)
{
    const ProcessData first(4);
    const ProcessData second(4);
    const ProcessData third(16);
    EXPECT_EQ(second.id(), first.id() + 1);
    EXPECT_EQ(third.id(), first.id() + 2);
}

// Says nothing of a process that has made steps before, so it goes on in a new one.
TEST(ProcessDataTest, FirstStepOfAProgramHasIdZero)
{
    if (qEnvironmentVariableIsSet(freshProcessVariable)) {
        EXPECT_EQ(ProcessData(9).id(), 0U);
        EXPECT_EQ(ProcessData(9).id(), 1U);
    } else {
        EXPECT_TRUE(passesInNewProcess("ProcessDataTest.FirstStepOfAProgramHasIdZero",
                                       {{freshProcessVariable, "1"}}));
    }
}

TEST(ProcessDataTest, CopiesKeepTheIdAndTakeNone)
{
    const ProcessData original(4);
    const ProcessData copy(original);
    ProcessData assigned(5);
    assigned = original;
    std::vector<ProcessData> list(3, original);
    EXPECT_EQ(copy.id(), original.id());
    EXPECT_EQ(assigned.id(), original.id());
    EXPECT_EQ(list.back().id(), original.id());
    // `assigned` was constructed from a type, the others were not.
    EXPECT_EQ(ProcessData(4).id(), original.id() + 2);
}

TEST(ProcessDataTest, CopiesHaveParametersOfTheirOwn)
{
    ProcessData original(4);
    original.setParameter("Thickness", 2.0, true);
    ProcessData copy(original);
    copy.setParameter("Thickness", 3.0, false);
    EXPECT_EQ(original.parameter("Thickness"), QVariant(2.0));
    EXPECT_TRUE(original.isVisible("Thickness"));
    EXPECT_EQ(copy.processType(), 4);
    EXPECT_EQ(copy.parameter("Thickness"), QVariant(3.0));
    EXPECT_FALSE(copy.isVisible("Thickness"));
}

TEST(ProcessDataTest, IsAPlainValue)
{
    EXPECT_FALSE(std::is_polymorphic_v<ProcessData>);
    EXPECT_TRUE(std::is_copy_constructible_v<ProcessData>);
    EXPECT_TRUE(std::is_copy_assignable_v<ProcessData>);
}

TEST(ProcessDataTest, SettingAParameterEntersValueAndVisibility)
{
    ProcessData step(0);
    step.setParameter("Material", "Cu", true);
    step.setParameter("MaterialId", 5U, false);
    EXPECT_EQ(step.parameter("Material"), QVariant("Cu"));
    EXPECT_TRUE(step.isVisible("Material"));
    EXPECT_EQ(step.parameter("MaterialId"), QVariant(5U));
    EXPECT_FALSE(step.isVisible("MaterialId"));
}

TEST(ProcessDataTest, SettingAParameterAgainReplacesValueAndVisibility)
{
    ProcessData step(0);
    step.setParameter("Depth", 1.5, true);
    step.setParameter("Depth", "deep", false);
    EXPECT_EQ(step.parameters().size(), 1);
    EXPECT_EQ(step.parameter("Depth"), QVariant("deep"));
    EXPECT_FALSE(step.isVisible("Depth"));
}

TEST(ProcessDataTest, UnknownParameterIsAnInvalidValue)
{
    ProcessData step(0);
    step.setParameter("Depth", 1.5, true);
    EXPECT_FALSE(step.parameter("depth").isValid());
    EXPECT_FALSE(step.parameter("").isValid());
    EXPECT_EQ(step.parameters().size(), 1);
}

TEST(ProcessDataTest, UnknownNameIsNotVisibleAndBecomesNoParameter)
{
    ProcessData step(0);
    EXPECT_FALSE(step.isVisible("Depth"));
    EXPECT_FALSE(step.isVisible("Depth"));
    EXPECT_TRUE(step.parameters().isEmpty());
    EXPECT_FALSE(step.parameter("Depth").isValid());

    step.setParameter("Depth", 1.5, true);
    EXPECT_TRUE(step.isVisible("Depth"));
}

TEST(ProcessDataTest, ParametersAreOrderedByName)
{
    ProcessData step(0);
    for (const char *name : {"b", "Z", "", "a", "B 2", "B 10"}) {
        step.setParameter(name, name, true);
    }
    EXPECT_EQ(step.parameters().keys(), QStringList({"", "B 10", "B 2", "Z", "a", "b"}));
}

TEST(ProcessDataTest, ParametersAreACopy)
{
    ProcessData step(0);
    step.setParameter("Depth", 1.5, true);
    QMap<QString, QVariant> parameters = step.parameters();
    parameters.insert("Depth", 2.5);
    parameters.insert("Other", 1);
    EXPECT_EQ(step.parameter("Depth"), QVariant(1.5));
    EXPECT_EQ(step.parameters().size(), 1);
}

TEST(ProcessDataTest, EachProcessTypeHasItsText)
{
    const std::vector<std::string> texts = {"Photolithography",
                                            "Si wet etching",
                                            "Moore deposition",
                                            "Moore etching",
                                            "CVD",
                                            "Isotropic etching",
                                            "Planarization",
                                            "Electroplating",
                                            "Doping",
                                            "Spin Coating",
                                            "Save Image",
                                            "Create Substrate",
                                            "PVD",
                                            "Simple RIE",
                                            "Ion Implantation",
                                            "Si Oxidation"};
    for (int type = 0; type < 16; ++type) {
        EXPECT_EQ(Ui::processTypeName(type).toStdString(), texts[std::size_t(type)]) << type;
    }
}

TEST(ProcessDataTest, AnyOtherProcessTypeIsUnknown)
{
    for (const int type :
         {16, 17, 100, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        EXPECT_EQ(Ui::processTypeName(type), "Unknown process") << type;
    }
}

TEST(ProcessDataTest, NamedTypesHaveTheNumbersOfTheirTexts)
{
    EXPECT_EQ(ProcessData::Photolithography, 0);
    EXPECT_EQ(Ui::processTypeName(ProcessData::SiWetEtching), "Si wet etching");
    EXPECT_EQ(Ui::processTypeName(ProcessData::MooreDeposition), "Moore deposition");
    EXPECT_EQ(Ui::processTypeName(ProcessData::MooreEtching), "Moore etching");
    EXPECT_EQ(Ui::processTypeName(ProcessData::Cvd), "CVD");
    EXPECT_EQ(Ui::processTypeName(ProcessData::IsotropicEtching), "Isotropic etching");
    EXPECT_EQ(Ui::processTypeName(ProcessData::Planarization), "Planarization");
    EXPECT_EQ(Ui::processTypeName(ProcessData::Electroplating), "Electroplating");
    EXPECT_EQ(Ui::processTypeName(ProcessData::Doping), "Doping");
    EXPECT_EQ(Ui::processTypeName(ProcessData::SpinCoating), "Spin Coating");
    EXPECT_EQ(Ui::processTypeName(ProcessData::SaveImage), "Save Image");
    EXPECT_EQ(Ui::processTypeName(ProcessData::CreateSubstrate), "Create Substrate");
    EXPECT_EQ(Ui::processTypeName(ProcessData::Pvd), "PVD");
    EXPECT_EQ(Ui::processTypeName(ProcessData::SimpleRie), "Simple RIE");
    EXPECT_EQ(Ui::processTypeName(ProcessData::IonImplantation), "Ion Implantation");
    EXPECT_EQ(Ui::processTypeName(ProcessData::SiOxidation), "Si Oxidation");
    EXPECT_EQ(ProcessData::Unreadable, 16);
}

// In a new process nothing has asked for the types yet, so they are there from before main().
TEST(ProcessDataTest, MasksAndVectorsAreRegisteredUnderTheirNames)
{
    if (qEnvironmentVariableIsSet(freshProcessVariable)) {
        const int mask = QMetaType::type("std::vector");
        const int vector = QMetaType::type("Util::Vector3D");
        EXPECT_GE(mask, int(QMetaType::User));
        EXPECT_GE(vector, int(QMetaType::User));
        EXPECT_EQ(mask, qMetaTypeId<std::vector<bool>>());
        EXPECT_EQ(vector, qMetaTypeId<Util::Vector3D>());
    } else {
        EXPECT_TRUE(
            passesInNewProcess("ProcessDataTest.MasksAndVectorsAreRegisteredUnderTheirNames",
                               {{freshProcessVariable, "1"}}));
    }
}

TEST(ProcessDataTest, MasksAndVectorsTravelInParameters)
{
    const std::vector<bool> mask = {true, false, true};
    ProcessData step(0);
    step.setParameter("Top Mask", QVariant::fromValue(mask), false);
    step.setParameter("Corner", QVariant::fromValue(Util::Vector3D(1, 2, 3)), true);
    EXPECT_EQ(step.parameter("Top Mask").value<std::vector<bool>>(), mask);
    const auto corner = step.parameter("Corner").value<Util::Vector3D>();
    EXPECT_EQ(corner[0], 1.0);
    EXPECT_EQ(corner[1], 2.0);
    EXPECT_EQ(corner[2], 3.0);
}
