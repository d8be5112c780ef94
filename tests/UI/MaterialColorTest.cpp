#include "UI/MaterialColor.h"

#include <QImage>
#include <QPixmap>

#include <gtest/gtest.h>

#include <limits>

namespace {

using Ui::colorOf;
using Ui::componentsOf;

TEST(MaterialColorTest, ChannelsAreTruncatedAndAlphaIsTaken)
{
    const float components[] = {0.5F, 0.999F, 0.7F, 0.3F};
    EXPECT_EQ(colorOf(components), QColor(127, 254, 178, 76));
}

TEST(MaterialColorTest, NumbersBeyondTheRangeAreTakenAsItsNearerEnd)
{
    const float components[] = {-1.0F, 7.0F, std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity()};
    EXPECT_EQ(colorOf(components), QColor(0, 255, 0, 255));
}

TEST(MaterialColorTest, EachWholeChannelComesBackAsItWas)
{
    for (int whole = 0; whole < 256; ++whole) {
        const QColor color(whole, 255 - whole, whole / 2, 255 - whole / 2);
        EXPECT_EQ(colorOf(componentsOf(color).data()), color);
        EXPECT_EQ(componentsOf(color)[0], static_cast<float>(whole / 255.0));
    }
}

TEST(MaterialColorTest, AnInvalidColourIsTakenByTheChannelsThatItHas)
{
    EXPECT_EQ(componentsOf(QColor()), (std::array<float, 4>{0, 0, 0, 1}));
}

TEST(MaterialColorTest, ASwatchIsAHundredPixelsOfTheColour)
{
    const QImage swatch = Ui::swatchOf(QColor(10, 20, 30)).toImage();
    EXPECT_EQ(swatch.size(), QSize(100, 100));
    for (const QPoint at : {QPoint(0, 0), QPoint(99, 99), QPoint(50, 50)})
        EXPECT_EQ(swatch.pixelColor(at), QColor(10, 20, 30));
}

} // namespace
