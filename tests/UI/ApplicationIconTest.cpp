#include "UI/ApplicationIcon.h"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

namespace {

QColor colorOfIcon()
{
    return Ui::applicationIcon().pixmap(32, 32).toImage().pixelColor(16, 16);
}

TEST(ApplicationIconTest, IsPlainRedWithoutAnIconFileInTheWorkingDirectory)
{
    ASSERT_FALSE(QFile::exists("icon.ico"));
    const QImage image = Ui::applicationIcon().pixmap(32, 32).toImage();
    ASSERT_EQ(image.size(), QSize(32, 32));
    for (int x = 0; x < 32; ++x)
        for (int y = 0; y < 32; ++y)
            ASSERT_EQ(image.pixelColor(x, y), QColor(207, 8, 12, 255)) << x << ", " << y;
}

TEST(ApplicationIconTest, IsTheIconFileOfTheWorkingDirectory)
{
    QImage blue(32, 32, QImage::Format_ARGB32);
    blue.fill(QColor(10, 20, 200));
    ASSERT_TRUE(blue.save("icon.ico", "ico"));
    const QColor color = colorOfIcon();
    QFile::remove("icon.ico");
    EXPECT_EQ(color, QColor(10, 20, 200));
}

TEST(ApplicationIconTest, IsPlainRedWhenTheIconFileIsNoImage)
{
    QFile file("icon.ico");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not an image");
    file.close();
    const QColor color = colorOfIcon();
    file.remove();
    EXPECT_EQ(color, QColor(207, 8, 12));
}

} // namespace
