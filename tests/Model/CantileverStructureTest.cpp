#include "Model/ModelExtraction/CantileverStructure.h"

#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"

#include <QLocale>
#include <QString>
#include <QTextStream>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

using Model::ModelExtraction::CantileverStructure;
using Model::ModelExtraction::EnvelopeList;
using Model::ModelExtraction::RectangularCuboidEnvelope;

namespace {

struct Beam
{
    std::int32_t width;
    std::int32_t depth;
    std::int32_t height;
    std::int32_t material;
};

/// Where the beams are plays no part: each one is somewhere else.
EnvelopeList envelopesOf(const std::vector<Beam> &beams)
{
    EnvelopeList envelopes;
    for (const Beam &beam : beams) {
        const auto place = std::int32_t(7 * envelopes.size());
        envelopes.push_back(boost::make_shared<RectangularCuboidEnvelope>(
            place, place + 1, place + 2, beam.width, beam.depth, beam.height, beam.material));
    }
    return envelopes;
}

std::string netlistOf(const std::vector<Beam> &beams)
{
    return CantileverStructure(envelopesOf(beams)).netlist().toStdString();
}

/// The text of one beam with these two values.
std::string text(const std::string &capacitance, const std::string &inductance)
{
    return "Model extracted by Lithara\n"
           "c1 1 0 " +
           capacitance +
           " \n"
           "l1 1 0 " +
           inductance +
           " \n"
           ".end \n";
}

/// 32-bit product, wrapped.
std::int32_t product(std::initializer_list<std::int32_t> factors)
{
    std::uint32_t result = 1;
    for (const std::int32_t factor : factors)
        result *= std::uint32_t(factor);
    std::int32_t wrapped;
    std::memcpy(&wrapped, &result, sizeof wrapped);
    return wrapped;
}

/// The text by the rule, stated plainly.
std::string ruleOf(const std::vector<Beam> &beams)
{
    const double densities[] = {0,    2329, 2700, 8940, 8908, 2648, 2810, 1000,
                                1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000};
    const double cellVolume = 2.00129819772e-17;
    QString netlist("Model extracted by Lithara\n");
    int node = 0;
    for (const Beam &beam : beams) {
        ++node;
        const bool isKnown = beam.material >= 0 && beam.material <= 15;
        const double density = isKnown ? densities[beam.material] : 0;
        const double modulus = isKnown && beam.material != 0 ? 70000000000.0 : 0;
        const std::int32_t cells = product({beam.height, beam.depth, beam.width});
        const std::int32_t length = std::max(beam.width, beam.depth);
        const std::int32_t breadth = std::min(beam.width, beam.depth);
        const std::int32_t cube = product({length, length, length});
        const std::int32_t section = product({beam.height, beam.height, beam.height, breadth});
        const double capacitance = double(cells) * cellVolume * density * 33 / 140;
        const double stiffness = modulus * 3 * (double(section) / 12) / double(cube);
        const double inductance = 1 / stiffness;
        netlist += QString("c%1 %2 0 %3 \n")
                       .arg(QString::number(node), QString::number(node),
                            QString::number(capacitance, 'g', 6));
        netlist += QString("l%1 %2 0 %3 \n")
                       .arg(QString::number(node), QString::number(node),
                            QString::number(inductance, 'g', 6));
    }
    return (netlist + ".end \n").toStdString();
}

TEST(CantileverStructureTest, BeamOfOneEnvelopeGivesExactlyFourLines)
{
    const std::string netlist = netlistOf({{20, 4, 3, 3}});
    EXPECT_EQ(netlist, "Model extracted by Lithara\n"
                       "c1 1 0 1.01215e-11 \n"
                       "l1 1 0 4.2328e-09 \n"
                       ".end \n");
    EXPECT_EQ(std::count(netlist.begin(), netlist.end(), '\n'), 4);
}

TEST(CantileverStructureTest, NodeNumbersRiseByOneForEachBeam)
{
    EXPECT_EQ(netlistOf({{20, 4, 3, 3}, {6, 6, 2, 2}, {100, 10, 5, 1}}),
              "Model extracted by Lithara\n"
              "c1 1 0 1.01215e-11 \n"
              "l1 1 0 4.2328e-09 \n"
              "c2 2 0 9.17052e-13 \n"
              "l2 2 0 2.57143e-10 \n"
              "c3 3 0 5.49335e-11 \n"
              "l3 3 0 4.57143e-08 \n"
              ".end \n");
}

TEST(CantileverStructureTest, NodeNumbersHaveAsManyDigitsAsTheyNeed)
{
    const std::vector<Beam> beams(1234, {1, 1, 1, 1});
    std::string expected = "Model extracted by Lithara\n";
    for (int n = 1; n <= 1234; ++n) {
        const std::string node = std::to_string(n);
        expected += "c" + node + " " + node + " 0 1.09867e-14 \n";
        expected += "l" + node + " " + node + " 0 5.71429e-11 \n";
    }
    EXPECT_EQ(netlistOf(beams), expected + ".end \n");
}

TEST(CantileverStructureTest, SquarePlanTakesItsSideForBothLengths)
{
    EXPECT_EQ(netlistOf({{6, 6, 2, 2}}), text("9.17052e-13", "2.57143e-10"));
}

TEST(CantileverStructureTest, LongerSideIsTheLengthWhicheverItIs)
{
    EXPECT_EQ(netlistOf({{20, 4, 3, 3}}), text("1.01215e-11", "4.2328e-09"));
    EXPECT_EQ(netlistOf({{4, 20, 3, 3}}), text("1.01215e-11", "4.2328e-09"));
    EXPECT_EQ(netlistOf({{12, 5, 4, 7}}), text("1.13216e-12", "3.08571e-10"));
}

TEST(CantileverStructureTest, DensityGoesWithTheMaterialAndTheModulusIsOneForAll)
{
    const char *const capacitances[] = {"2.63681e-12", "3.05684e-12", "1.01215e-11",
                                        "1.00853e-11", "2.99797e-12", "3.18138e-12"};
    for (std::int32_t material = 1; material <= 15; ++material)
        EXPECT_EQ(netlistOf({{20, 4, 3, material}}),
                  text(material <= 6 ? capacitances[material - 1] : "1.13216e-12", "4.2328e-09"))
            << "material " << material;
}

TEST(CantileverStructureTest, ValuesHaveSixDigitsInTheShorterForm)
{
    // Fixed from 0.0001 on, scientific below.
    EXPECT_EQ(netlistOf({{1000, 1, 1, 2}}), text("1.27368e-11", "0.0571429"));
    EXPECT_EQ(netlistOf({{1290, 1, 1, 2}}), text("1.64305e-11", "0.122668"));
    EXPECT_EQ(netlistOf({{700, 196, 1, 2}}), text("1.74749e-09", "0.0001"));
    EXPECT_EQ(netlistOf({{699, 196, 1, 2}}), text("1.745e-09", "9.9572e-05"));
}

TEST(CantileverStructureTest, ProductsOfCellCountsWrapInThirtyTwoBits)
{
    // 1291 cubed is just beyond 2^31, 1626 cubed beyond 2^32.
    EXPECT_EQ(netlistOf({{1291, 1, 1, 2}}), text("1.64433e-11", "-0.122473"));
    EXPECT_EQ(netlistOf({{1626, 1, 1, 2}}), text("2.07101e-11", "0.000227147"));
    EXPECT_EQ(netlistOf({{2000, 2000, 1000, 2}}), text("-3.75695e-06", "2.31726e-11"));
    EXPECT_EQ(netlistOf({{10, 8, 1300, 4}}), text("4.3703e-09", "1.44252e-16"));
    EXPECT_EQ(netlistOf({{1291, 3, 1291, 2}}), text("6.36847e-08", "5.73678e-11"));
}

TEST(CantileverStructureTest, LengthThatWrapsToZeroGivesNoInductance)
{
    EXPECT_EQ(netlistOf({{2048, 3, 2, 2}}), text("1.5651e-10", "0"));
    EXPECT_EQ(netlistOf({{65536, 65536, 1, 2}}), text("0", "0"));
}

TEST(CantileverStructureTest, StiffnessOfZeroGivesAnInfiniteInductance)
{
    EXPECT_EQ(netlistOf({{20, 4, 0, 3}}), text("0", "inf"));
    EXPECT_EQ(netlistOf({{10, 4, 2048, 2}}), text("1.0434e-09", "inf"));
    // Zero divided by a length that has wrapped below zero.
    EXPECT_EQ(netlistOf({{1291, 3, 65536, 2}}), text("3.23287e-06", "-inf"));
}

TEST(CantileverStructureTest, NothingDividedByNothingIsNoNumber)
{
    EXPECT_EQ(netlistOf({{2048, 3, 65536, 2}}), text("5.12853e-06", "nan"));
    EXPECT_EQ(netlistOf({{0, 0, 3, 2}}), text("0", "nan"));
}

TEST(CantileverStructureTest, MaterialsBeyondTheTablesHaveNeitherMassNorStiffness)
{
    for (const std::int32_t material : {0, 16, 17, 1000, 2147483647, -1})
        EXPECT_EQ(netlistOf({{20, 4, 3, material}}), text("0", "inf")) << material;
}

TEST(CantileverStructureTest, TellsTheMaterialsBeyondTheTablesInOrderAndOnce)
{
    EXPECT_EQ(CantileverStructure(envelopesOf({{1, 1, 1, 40},
                                               {1, 1, 1, 3},
                                               {1, 1, 1, 16},
                                               {1, 1, 1, -1},
                                               {1, 1, 1, 40},
                                               {1, 1, 1, 15}}))
                  .unknownMaterials(),
              (std::vector<std::uint32_t>{16, 40, 4294967295}));
    EXPECT_TRUE(CantileverStructure(envelopesOf({{1, 1, 1, 0}, {1, 1, 1, 1}, {1, 1, 1, 15}}))
                    .unknownMaterials()
                    .empty());
}

TEST(CantileverStructureTest, TextIsTheSameEachTime)
{
    const CantileverStructure structure(envelopesOf({{20, 4, 3, 3}, {6, 6, 2, 2}}));
    const QString first = structure.netlist();
    EXPECT_EQ(structure.netlist(), first);
}

TEST(CantileverStructureTest, LocaleChangesNoDigit)
{
    struct Restore
    {
        QLocale locale;
        std::string numbers = std::setlocale(LC_NUMERIC, nullptr);
        ~Restore()
        {
            QLocale::setDefault(locale);
            std::setlocale(LC_NUMERIC, numbers.c_str());
        }
    } restore;
    for (const QLocale &locale :
         {QLocale(QLocale::German, QLocale::Germany), QLocale(QLocale::Arabic, QLocale::Egypt)}) {
        QLocale::setDefault(locale);
        std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
        std::string expected = "Model extracted by Lithara\n";
        for (int n = 1; n <= 1200; ++n) {
            const std::string node = std::to_string(n);
            expected += "c" + node + " " + node + " 0 1.27368e-11 \n";
            expected += "l" + node + " " + node + " 0 0.0571429 \n";
        }
        expected += ".end \n";
        const std::string netlist = netlistOf(std::vector<Beam>(1200, {1000, 1, 1, 2}));
        EXPECT_EQ(netlist, expected);
        // Nor does it where the text is written.
        QString written;
        QTextStream stream(&written);
        stream.setLocale(locale);
        stream << QString::fromStdString(netlist);
        EXPECT_EQ(written.toStdString(), expected);
    }
}

TEST(CantileverStructureTest, RandomBeamsFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const std::uint32_t limits[] = {10, 300, 5000, 2147483648U};
        const std::uint32_t limit = limits[random() % 4];
        const auto extent = [&] { return std::int32_t(random() % limit); };
        std::vector<Beam> beams;
        for (int i = 0; i < 20; ++i)
            beams.push_back({extent(), extent(), extent(), std::int32_t(random() % 18)});
        EXPECT_EQ(netlistOf(beams), ruleOf(beams));
    }
}

} // namespace
