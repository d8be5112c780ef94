#include "UI/Operations/MaskImage.h"

#include "UI/MaskFiles.h"

#include <QColor>
#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

namespace {

using MaskFiles::bytesOf;
using MaskFiles::imageOf;
using MaskFiles::path;
using MaskFiles::write;
using Ui::Operations::MaskImage;

/// What the pixels say, each by itself.
std::vector<bool> bitsByPixels(const QImage &image)
{
    const QColor red(Qt::red);
    const QColor black(Qt::black);
    std::vector<bool> bits;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = image.height() - 1; y >= 0; --y) {
            const QColor color(image.pixel(x, y));
            bits.push_back(color == red || color == black);
        }
    }
    return bits;
}

void expectMask(const MaskImage &mask, const QImage &image)
{
    EXPECT_EQ(mask.width(), std::uint32_t(image.width()));
    EXPECT_EQ(mask.height(), std::uint32_t(image.height()));
    EXPECT_EQ(mask.bits(), bitsByPixels(image));
}

TEST(MaskImageTest, ExactRedAndExactBlackAloneAreOpaque)
{
    const std::vector<std::pair<QRgb, bool>> colors = {
        {0xffff0000, true},  {0xff000000, true},  {0xffffffff, false}, {0xff010101, false},
        {0xff000001, false}, {0xff010000, false}, {0xfffe0000, false}, {0xffff0100, false},
        {0xffff0001, false}, {0xff00ff00, false}, {0xff0000ff, false}, {0xff404040, false},
        {0xff800000, false}, {0xffffff00, false}, {0xffff00ff, false}, {0xff000100, false}};
    QImage image(int(colors.size()), 1, QImage::Format_RGB32);
    std::vector<bool> wanted;
    for (int x = 0; x < image.width(); ++x) {
        image.setPixel(x, 0, colors[std::size_t(x)].first);
        wanted.push_back(colors[std::size_t(x)].second);
    }
    EXPECT_EQ(MaskImage(image).bits(), wanted);
    for (const char *file : {"colors.png", "colors.bmp"}) {
        ASSERT_TRUE(image.save(path(file)));
        MaskImage loaded;
        ASSERT_TRUE(loaded.load(path(file))) << file;
        EXPECT_EQ(loaded.bits(), wanted) << file;
    }
}

TEST(MaskImageTest, DarkGreyImageIsAllClear)
{
    QImage image(5, 3, QImage::Format_RGB32);
    image.fill(QColor(1, 1, 1));
    ASSERT_TRUE(image.save(path("dark.png")));
    MaskImage loaded;
    ASSERT_TRUE(loaded.load(path("dark.png")));
    EXPECT_EQ(loaded.bits(), std::vector<bool>(15, false));
}

TEST(MaskImageTest, HowTransparentAPixelIsPlaysNoPart)
{
    QImage image(6, 1, QImage::Format_ARGB32);
    const QRgb pixels[] = {0x00000000, 0x80000000, 0x00ff0000, 0x01ff0000, 0x00ffffff, 0x00000001};
    for (int x = 0; x < 6; ++x)
        image.setPixel(x, 0, pixels[x]);
    const std::vector<bool> wanted{true, true, true, true, false, false};
    EXPECT_EQ(MaskImage(image).bits(), wanted);
    ASSERT_TRUE(image.save(path("alpha.png")));
    MaskImage loaded;
    ASSERT_TRUE(loaded.load(path("alpha.png")));
    EXPECT_EQ(loaded.bits(), wanted);
}

TEST(MaskImageTest, EachColumnRunsFromTheLowestRowUp)
{
    // Rows from the top, as the file has them.
    const QImage image = imageOf({"#..", "##."});
    const MaskImage mask(image);
    EXPECT_EQ(mask.width(), 3u);
    EXPECT_EQ(mask.height(), 2u);
    EXPECT_EQ(mask.bits(), (std::vector<bool>{true, true, true, false, false, false}));
}

TEST(MaskImageTest, EveryFormatAgreesWithItsPixels)
{
    const unsigned seed = 20240611;
    std::mt19937 random(seed);
    const QRgb colors[] = {0xff000000, 0xffff0000, 0xffffffff, 0xff0000ff,
                           0x00ff0000, 0x80000000, 0xff010101, 0xfffefefe};
    for (const int width : {1, 7, 8, 33}) {
        QImage source(width, 5, QImage::Format_ARGB32);
        for (int y = 0; y < source.height(); ++y)
            for (int x = 0; x < width; ++x)
                source.setPixel(x, y, colors[random() % 8]);
        for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " format " << format);
            const QImage image = source.convertToFormat(QImage::Format(format));
            ASSERT_FALSE(image.isNull());
            expectMask(MaskImage(image), image);
        }
    }
}

TEST(MaskImageTest, ColorTablesMayBeInAnyOrder)
{
    for (const auto format : {QImage::Format_Mono, QImage::Format_MonoLSB, QImage::Format_Indexed8})
        for (const auto &table :
             {QVector<QRgb>{0xffffffff, 0xff000000}, QVector<QRgb>{0xffff0000, 0xff123456},
              QVector<QRgb>{0xff000000, 0xffff0000}}) {
            QImage image(10, 3, format);
            image.setColorTable(table);
            image.fill(0);
            image.setPixel(9, 0, 1);
            image.setPixel(0, 2, 1);
            expectMask(MaskImage(image), image);
        }
}

TEST(MaskImageTest, EntriesThatTheColorTableLacksAreClear)
{
    QImage image(3, 1, QImage::Format_Indexed8);
    image.setColorTable({0xff000000, 0xffff0000});
    uchar *line = image.scanLine(0);
    line[0] = 1;
    line[1] = 2;
    line[2] = 255;
    EXPECT_EQ(MaskImage(image).bits(), (std::vector<bool>{true, false, false}));
    image.setColorTable({});
    EXPECT_EQ(MaskImage(image).bits(), (std::vector<bool>{false, false, false}));
}

TEST(MaskImageTest, ABmpOfOneBitAPixelIsRead)
{
    QImage image(10, 2, QImage::Format_Mono);
    image.setColorTable({0xffffffff, 0xff000000});
    image.fill(0);
    image.setPixel(9, 1, 1);
    image.setPixel(2, 0, 1);
    ASSERT_TRUE(image.save(path("mono.bmp")));
    MaskImage mask;
    ASSERT_TRUE(mask.load(path("mono.bmp")));
    std::vector<bool> wanted(20);
    wanted[9 * 2 + 0] = true;
    wanted[2 * 2 + 1] = true;
    EXPECT_EQ(mask.bits(), wanted);
}

TEST(MaskImageTest, AJpegIsReadByTheColorsThatAreLeftOfIt)
{
    // Whole blocks of black and of white survive; red does not have to.
    QImage image(64, 32, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 48; ++x)
            image.setPixel(x, y, x < 16 ? 0xff000000 : x >= 32 ? 0xffff0000 : 0xffffffff);
    ASSERT_TRUE(image.save(path("mask.jpg"), nullptr, 100));
    MaskImage mask;
    ASSERT_TRUE(mask.load(path("mask.jpg")));
    expectMask(mask, QImage(path("mask.jpg")));
    EXPECT_TRUE(mask.bits()[4 * 32 + 7]);
    EXPECT_FALSE(mask.bits()[20 * 32 + 7]);
    EXPECT_FALSE(mask.bits()[60 * 32 + 7]);
}

TEST(MaskImageTest, WhatCannotBeReadLeavesTheMaskAsItWas)
{
    ASSERT_TRUE(imageOf({"#.#"}).save(path("good.png")));
    MaskImage mask;
    ASSERT_TRUE(mask.load(path("good.png")));
    const QByteArray good = bytesOf("good.png");
    write("empty.png", {});
    write("text.png", "no image at all");
    write("signature.png", good.left(8));
    write("header.png", good.left(33));
    write("flat.bmp", MaskFiles::bmpHeader(0, 3));
    write("empty.bmp", MaskFiles::bmpHeader(3, 0));
    write("flat-png.png", MaskFiles::pngOfNoPixels());
    for (const char *file : {"missing.png", "empty.png", "text.png", "signature.png", "header.png",
                             "flat.bmp", "empty.bmp", "flat-png.png", "", "."}) {
        EXPECT_FALSE(mask.load(*file ? path(file) : QString())) << file;
        EXPECT_EQ(mask.width(), 3u) << file;
        EXPECT_EQ(mask.height(), 1u) << file;
        EXPECT_EQ(mask.bits(), (std::vector<bool>{true, false, true})) << file;
    }
}

TEST(MaskImageTest, AnImageWithoutPixelsGivesNoBits)
{
    const MaskImage mask{QImage()};
    EXPECT_EQ(mask.width(), 0u);
    EXPECT_EQ(mask.height(), 0u);
    EXPECT_TRUE(mask.bits().empty());
}

// Damage behind the header: what is taken for an image is what Qt takes for one, and its size
// holds.
TEST(MaskImageTest, DamagedFilesAreReadAsFarAsTheyAreImages)
{
    const unsigned seed = 4711;
    std::mt19937 random(seed);
    QImage image(40, 20, QImage::Format_RGB32);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 40; ++x)
            image.setPixel(x, y, random() % 2 ? 0xff000000 : 0xff000000 | (random() & 0xffffff));
    QImage indexed = image.convertToFormat(QImage::Format_Indexed8);
    ASSERT_TRUE(image.save(path("whole.png")));
    ASSERT_TRUE(image.save(path("whole.jpg")));
    ASSERT_TRUE(image.save(path("whole.bmp")));
    ASSERT_TRUE(indexed.save(path("indexed.png")));
    ASSERT_TRUE(indexed.save(path("indexed.bmp")));
    constexpr int header = 64;
    for (const char *file : {"whole.png", "whole.jpg", "whole.bmp", "indexed.png", "indexed.bmp"}) {
        const QByteArray whole = bytesOf(file);
        for (int round = 0; round < 60; ++round) {
            SCOPED_TRACE(testing::Message() << file << " seed " << seed << " round " << round);
            QByteArray damaged = whole;
            if (round % 2)
                damaged.truncate(header + int(random() % unsigned(whole.size() - header)));
            for (int i = 0; i < round / 4; ++i)
                damaged[header + int(random() % unsigned(damaged.size() - header + 1)) - 1] =
                    char(random());
            write("damaged", damaged);
            MaskImage mask;
            const QImage expected(path("damaged"));
            ASSERT_EQ(mask.load(path("damaged")), !expected.isNull());
            ASSERT_EQ(mask.width(), std::uint32_t(expected.width()));
            ASSERT_EQ(mask.height(), std::uint32_t(expected.height()));
            ASSERT_EQ(mask.bits().size(), std::size_t{mask.width()} * mask.height());
            // What a file leaves open may differ at each reading, so the bits are those of one
            // reading; entries that a colour table lacks are not for QImage::pixel().
            const MaskImage again(expected);
            if (expected.colorCount() == 0) {
                ASSERT_EQ(again.bits(), bitsByPixels(expected));
            }
        }
    }
}

TEST(MaskImageTest, AnImageTwentyThousandPixelsWideIsRead)
{
    QImage image(20000, 3, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setPixel(19999, 0, 0xff000000);
    image.setPixel(0, 2, 0xffff0000);
    ASSERT_TRUE(image.save(path("wide.png")));
    MaskImage mask;
    ASSERT_TRUE(mask.load(path("wide.png")));
    EXPECT_EQ(mask.width(), 20000u);
    std::vector<bool> wanted(60000);
    wanted[59999] = true;
    wanted[0] = true;
    EXPECT_EQ(mask.bits(), wanted);
}

} // namespace
