#include "System/WaferRoad.h"

#include "UI/MaskFiles.h"

#include <QColor>
#include <QComboBox>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>

namespace {

using MaskFiles::path;
using Support::DialogAnswer;

constexpr std::uint32_t NegativeResist = 12;

class PhotolithographyRoadTest : public WaferRoad
{
protected:
    PhotolithographyRoadTest()
    {
        // Black for the ten columns on the left, red for the three rows on the far side.
        QImage corner(40, 30, QImage::Format_RGB32);
        corner.fill(Qt::white);
        for (int x = 0; x < 40; ++x)
            for (int y = 0; y < 30; ++y)
                if (isMasked(std::uint32_t(x), std::uint32_t(29 - y)))
                    corner.setPixelColor(x, y, x < 10 ? Qt::black : Qt::red);
        corner.save(path("corner.png"));
        QImage black(40, 30, QImage::Format_RGB32);
        black.fill(Qt::black);
        black.save(path("black.bmp"));
    }

    static bool isMasked(std::uint32_t x, std::uint32_t y) { return x < 10 || y >= 27; }

    static DialogAnswer film(const char *material = "Si")
    {
        return DialogAnswer().choose("cbxMaterial", material);
    }
    static DialogAnswer masked(const char *top, const char *bottom = nullptr)
    {
        DialogAnswer answer = film();
        answer.type("ledTopMask", path(top)).click("btnApplyTopMask");
        if (bottom)
            answer.type("ledBottomMask", path(bottom)).click("btnApplyBottomMask");
        return answer;
    }
    /// Selects the wafer and starts the process, with answers for the boxes that its dialog opens.
    void develop(const std::vector<DialogAnswer> &answers)
    {
        m_driver.trigger("actionSelect");
        pick();
        m_driver.trigger("actionPhotolithography", answers);
    }
    Model::Automaton::TotalVolume &volume() { return *m_driver.volumes().front(); }
    void expectMasks(std::uint32_t topWidth, std::uint32_t topHeight, std::uint32_t bottomWidth,
                     std::uint32_t bottomHeight)
    {
        std::uint32_t width = 1;
        std::uint32_t height = 1;
        volume().topMaskExtent(width, height);
        EXPECT_EQ(width, topWidth);
        EXPECT_EQ(height, topHeight);
        EXPECT_EQ(volume().topMask().size(), std::size_t{topWidth} * topHeight);
        volume().bottomMaskExtent(width, height);
        EXPECT_EQ(width, bottomWidth);
        EXPECT_EQ(height, bottomHeight);
        EXPECT_EQ(volume().bottomMask().size(), std::size_t{bottomWidth} * bottomHeight);
    }
    static int changedPixels(const QImage &before, const QImage &after)
    {
        int changed = 0;
        for (int y = 0; y < before.height(); ++y)
            for (int x = 0; x < before.width(); ++x)
                changed += before.pixel(x, y) != after.pixel(x, y);
        return changed;
    }
    static DialogAnswer note(QStringList &texts)
    {
        return DialogAnswer()
            .look([&texts](QWidget &box) {
                texts << dynamic_cast<QMessageBox &>(box).text();
                EXPECT_TRUE(box.windowTitle().isEmpty());
            })
            .accept();
    }
};

TEST_F(PhotolithographyRoadTest, OpaquePixelsProtectTheirColumns)
{
    develop({masked("corner.png").accept()});
    expectCells([](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return isMasked(x, y) && z < 12 ? Silicon : 0u;
    });
    EXPECT_EQ(lastLines(2), (QStringList{"Photolithography: Cell volume selected.",
                                         "Photolithography: Operation finished."}));
    EXPECT_TRUE(idle());
    // It is not undone.
    EXPECT_EQ(undoText(), "Undo Create Substrate");
    expectMasks(0, 0, 0, 0);
}

TEST_F(PhotolithographyRoadTest, TheVolumeCanBePickedAtThePrompt)
{
    m_driver.trigger("actionPhotolithography");
    EXPECT_EQ(lastLines(1),
              QStringList("Photolithography: Select a cell volume and press Enter/Return."));
    pick();
    m_driver.answering({masked("black.bmp").accept()}, [this] { m_driver.press(Qt::Key_Return); });
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Photolithography: Operation finished."));
}

TEST_F(PhotolithographyRoadTest, MasksHangOverAndUnderTheVolumeWhileTheDialogIsOpen)
{
    QImage bare;
    QImage top;
    QImage bareBelow;
    QImage below;
    QImage removed;
    const auto picture = [this](const char *view, QImage &into) {
        return [this, view, &into](QWidget &) {
            m_driver.action(view).trigger();
            into = m_driver.picture();
        };
    };
    develop({film()
                 .look(picture("actionTop_View", bare))
                 .type("ledTopMask", path("corner.png"))
                 .click("btnApplyTopMask")
                 .look([this](QWidget &) {
                     expectMasks(40, 30, 0, 0);
                     for (std::uint32_t x = 0; x < 40; ++x)
                         for (std::uint32_t y = 0; y < 30; ++y)
                             ASSERT_EQ(volume().topMask()[x * 30 + y], isMasked(x, y))
                                 << x << " " << y;
                 })
                 .look(picture("actionTop_View", top))
                 .look(picture("actionBottom_View", bareBelow))
                 .type("ledBottomMask", path("black.bmp"))
                 .click("btnApplyBottomMask")
                 .look([this](QWidget &) {
                     expectMasks(40, 30, 40, 30);
                     EXPECT_EQ(volume().bottomMask(), std::vector<bool>(1200, true));
                 })
                 .look(picture("actionBottom_View", below))
                 .click("btnRemoveTopMask")
                 .click("btnRemoveBottomMask")
                 .look([this](QWidget &) { expectMasks(0, 0, 0, 0); })
                 .look(picture("actionTop_View", removed))
                 .reject()});
    EXPECT_GT(changedPixels(bare, top), 200);
    EXPECT_GT(changedPixels(bareBelow, below), 200);
    EXPECT_EQ(changedPixels(bare, removed), 0);
}

TEST_F(PhotolithographyRoadTest, WithoutMasksTheWholeFilmGoes)
{
    develop({film().accept()});
    expectLayers(0);
}

TEST_F(PhotolithographyRoadTest, AMaskThatWasRemovedProtectsNothing)
{
    develop({masked("black.bmp", "black.bmp")
                 .click("btnRemoveTopMask")
                 .click("btnRemoveBottomMask")
                 .accept()});
    expectLayers(0);
    expectMasks(0, 0, 0, 0);
}

TEST_F(PhotolithographyRoadTest, AFilmThatHangsFreeIsDevelopedFromBelowThroughTheMaskBelow)
{
    createBlock(20, 10);
    develop({masked("black.bmp", "corner.png").accept()});
    expectCells([](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return x >= 10 && x < 30 && y >= 27 && z >= 10 && z < 22 ? Silicon : 0u;
    });
}

TEST_F(PhotolithographyRoadTest, OfNegativeResistOpaquePixelsAreDeveloped)
{
    run("actionSpin_Coating",
        DialogAnswer().choose("cbxMaterial", "Photoresist -").type("sbxHeight", "15").accept());
    develop({film("Photoresist -")
                 .type("ledTopMask", path("corner.png"))
                 .click("btnApplyTopMask")
                 .accept()});
    expectCells([](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return z < 12 ? Silicon : z < 15 && !isMasked(x, y) ? NegativeResist : 0u;
    });
}

TEST_F(PhotolithographyRoadTest, ASmallerMaskLeavesTheRestOfTheWaferOpen)
{
    MaskFiles::imageOf({"##", "##", "##"}).save(path("small.png"));
    develop({masked("small.png").accept()});
    expectCells([](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return x < 2 && y < 3 && z < 12 ? Silicon : 0u;
    });
}

TEST_F(PhotolithographyRoadTest, OfAMaskTwentyThousandPixelsWideTheFirstFortyCount)
{
    QImage wide(20000, 30, QImage::Format_RGB32);
    wide.fill(Qt::black);
    for (int y = 0; y < 30; ++y)
        wide.setPixelColor(7, y, Qt::white);
    wide.save(path("wide.png"));
    develop({masked("wide.png")
                 .look([this](QWidget &) {
                     expectMasks(20000, 30, 0, 0);
                     m_driver.picture();
                 })
                 .accept()});
    expectCells([](std::uint32_t x, std::uint32_t, std::uint32_t z) {
        return x != 7 && z < 12 ? Silicon : 0u;
    });
}

TEST_F(PhotolithographyRoadTest, AFileThatIsOnlyTypedProtectsNothing)
{
    develop({film().type("ledTopMask", path("black.bmp")).accept()});
    expectLayers(0);
}

TEST_F(PhotolithographyRoadTest, AFileCanBeChosenInADialog)
{
    develop({film()
                 .click("tbtTopMask")
                 .look([](QWidget &dialog) {
                     EXPECT_EQ(dialog.findChild<QLineEdit *>("ledTopMask")->text(),
                               path("black.bmp"));
                 })
                 .click("btnApplyTopMask")
                 .accept(),
             DialogAnswer()
                 .look([](QWidget &dialog) {
                     EXPECT_EQ(dialog.windowTitle(), "Choose Mask File");
                     EXPECT_EQ(dynamic_cast<QFileDialog &>(dialog).nameFilters(),
                               QStringList("Image Files (*.png *.jpg *.bmp)"));
                 })
                 .fileName(path("black.bmp"))
                 .accept()});
    expectLayers(12);
}

TEST_F(PhotolithographyRoadTest, MasksThatCannotBeReadAreToldAndTheEarlierOnesCount)
{
    MaskFiles::write("cut.png", MaskFiles::bytesOf("corner.png").left(40));
    QStringList texts;
    develop({masked("black.bmp", "black.bmp")
                 .type("ledTopMask", path("missing.png"))
                 .click("btnApplyTopMask")
                 .type("ledBottomMask", path("cut.png"))
                 .click("btnApplyBottomMask")
                 .look([this](QWidget &) { expectMasks(40, 30, 40, 30); })
                 .accept(),
             note(texts), note(texts)});
    EXPECT_EQ(texts,
              (QStringList{"Top Mask file not found!<br/>Please verify the filename is correct and "
                           "you have the correct permissions.",
                           "Bottom mask not found error!<br/>Please verify if the filename is "
                           "correct and you have the correct permissions."}));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Photolithography: Operation finished."));
}

TEST_F(PhotolithographyRoadTest, ARejectedDialogCancelsAndLeavesTheMasksOverTheVolume)
{
    int materials = 0;
    develop({masked("corner.png", "black.bmp")
                 .look([&](QWidget &dialog) {
                     materials = dialog.findChild<QComboBox *>("cbxMaterial")->count();
                 })
                 .reject()});
    EXPECT_EQ(materials, 15);
    EXPECT_TRUE(idle());
    EXPECT_EQ(lastLines(2), (QStringList{"Photolithography: Cell volume selected.",
                                         "Photolithography: Operation Canceled!"}));
    expectLayers(12);
    expectMasks(40, 30, 40, 30);
    // They are not in the next dialog, and its end takes them away.
    develop({film("Au (bulk)")
                 .look([this](QWidget &dialog) {
                     EXPECT_TRUE(dialog.findChild<QLineEdit *>("ledTopMask")->text().isEmpty());
                     expectMasks(40, 30, 40, 30);
                 })
                 .accept()});
    expectLayers(12);
    expectMasks(0, 0, 0, 0);
}

} // namespace
