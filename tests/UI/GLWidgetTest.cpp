#include "Support/Volumes.h"
#include "Support/WindowDriver.h"

#include "Core/Operations/Operation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/ColorTable.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QApplication>
#include <QGLFormat>
#include <QMouseEvent>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using Support::Grid;
using Util::Vector3D;

/// Waits for the pointer and remembers what it got.
class PointerWaiter final : public Core::Operations::Operation
{
public:
    PointerWaiter() : Operation("Waiter", 1) {}
    void next() override { ++nextCalls; }
    void cancel() override {}
    void end() override {}

    int nextCalls = 0;
    Vector3D position;
    Vector3D secondary;
    std::int32_t button = Core::PointerTracker::NoButton;
};

class GLWidgetTest : public testing::Test
{
protected:
    GLWidgetTest() : m_view(m_driver.view()) {}
    ~GLWidgetTest() override
    {
        m_driver.workspace().pointer().clearRequests();
        Model::ColorTable::setCurrentScheme(Model::ColorTable::DefaultScheme);
    }

    double centerX() const { return m_view.width() / 2.0; }
    double centerY() const { return m_view.height() / 2.0; }

    /// A block of silicon whose low corner lies at the position.
    void addBlock(const Vector3D &position, std::uint32_t edge)
    {
        m_view.makeCurrent();
        const Grid grid{edge, edge, edge};
        const auto block = Support::makeVolume(
            grid, [](std::uint32_t, std::uint32_t, std::uint32_t) { return 1u; });
        block->translate(position);
        block->painter().rebuild();
        m_driver.workspace().document().addObject(block);
        m_view.updateGL();
    }

    QColor pixel(const QImage &image, double worldX, double worldY) const
    {
        return image.pixelColor(static_cast<int>(centerX() + worldX),
                                static_cast<int>(centerY() - worldY));
    }

    QVector3D turned(const QVector3D &vector) const
    {
        return m_view.rotation().rotatedVector(vector);
    }

    void expectTurned(const QVector3D &from, const QVector3D &to)
    {
        const QVector3D got = turned(from);
        EXPECT_NEAR(got.x(), to.x(), 1e-5);
        EXPECT_NEAR(got.y(), to.y(), 1e-5);
        EXPECT_NEAR(got.z(), to.z(), 1e-5);
    }

    Support::WindowDriver m_driver;
    Ui::GLWidget &m_view;
};

TEST_F(GLWidgetTest, AsksForADoubleBufferedViewWithDepthAndAlphaAndNothingElse)
{
    const QGLFormat format = m_view.context()->requestedFormat();
    EXPECT_TRUE(format.doubleBuffer());
    EXPECT_TRUE(format.depth());
    EXPECT_TRUE(format.rgba());
    EXPECT_TRUE(format.alpha());
    EXPECT_TRUE(format.directRendering());
    EXPECT_FALSE(format.accum());
    EXPECT_FALSE(format.stencil());
    EXPECT_FALSE(format.stereo());
    EXPECT_FALSE(format.hasOverlay());
    EXPECT_FALSE(format.sampleBuffers());
}

TEST_F(GLWidgetTest, StartsFromTheTopAtNaturalScaleWithLightAndNoGrid)
{
    EXPECT_EQ(m_view.zoomFactor(), 1.0f);
    EXPECT_EQ(m_view.rotation(), QQuaternion(1, 0, 0, 0));
    EXPECT_EQ(m_view.translation(), (std::array<double, 3>{0, 0, 0}));
    EXPECT_EQ(m_view.gridSpacing(), 10.0f);
    EXPECT_TRUE(m_view.hasMouseTracking());
}

TEST_F(GLWidgetTest, TheWheelForwardZoomsOutAndBackwardZoomsIn)
{
    m_driver.turnWheel(1);
    EXPECT_FLOAT_EQ(m_view.zoomFactor(), 2.2f);
    m_driver.turnWheel(-1);
    EXPECT_FLOAT_EQ(m_view.zoomFactor(), 1.0f);
    m_driver.turnWheel(-1);
    EXPECT_FLOAT_EQ(m_view.zoomFactor(), 1.0f / 2.2f);
}

TEST_F(GLWidgetTest, TheWheelNeverZoomsToNothingOrToEverything)
{
    for (int i = 0; i < 400; ++i)
        m_driver.turnWheel(-1);
    EXPECT_GT(m_view.zoomFactor(), 0.0f);
    for (int i = 0; i < 800; ++i)
        m_driver.turnWheel(1);
    EXPECT_TRUE(std::isfinite(m_view.zoomFactor()));
}

TEST_F(GLWidgetTest, ZoomingOutEnlargesTheGridRectangle)
{
    const float before = m_view.grid().maxX - m_view.grid().minX;
    EXPECT_FLOAT_EQ(before, static_cast<float>(m_view.width()));
    m_driver.turnWheel(1);
    EXPECT_FLOAT_EQ(m_view.grid().maxX - m_view.grid().minX, before * 2.2f);
    EXPECT_FLOAT_EQ(m_view.grid().maxY - m_view.grid().minY,
                    static_cast<float>(m_view.height()) * 2.2f);
}

TEST_F(GLWidgetTest, TheKeysMoveTheSceneByFivePixelsAndTheGridTheOtherWay)
{
    m_view.setZoom(2.0f);
    const Ui::ViewGrid before = m_view.grid();
    m_driver.press(Qt::Key_Q);
    m_driver.press(Qt::Key_Q);
    m_driver.press(Qt::Key_A);
    m_driver.press(Qt::Key_W);
    m_driver.press(Qt::Key_W);
    m_driver.press(Qt::Key_W);
    m_driver.press(Qt::Key_S);
    m_driver.press(Qt::Key_D);
    EXPECT_EQ(m_view.translation(), (std::array<double, 3>{10, 20, -10}));
    m_driver.press(Qt::Key_E);
    m_driver.press(Qt::Key_E);
    EXPECT_EQ(m_view.translation(), (std::array<double, 3>{10, 20, 10}));
    EXPECT_FLOAT_EQ(m_view.grid().minX, before.minX - 10);
    EXPECT_FLOAT_EQ(m_view.grid().maxX, before.maxX - 10);
    EXPECT_FLOAT_EQ(m_view.grid().minY, before.minY - 20);
    EXPECT_FLOAT_EQ(m_view.grid().maxY, before.maxY - 20);
}

TEST_F(GLWidgetTest, SetTranslationPlacesTheSceneAndTheGrid)
{
    m_view.setTranslation(3, -4, 5);
    EXPECT_EQ(m_view.translation(), (std::array<double, 3>{3, -4, 5}));
    EXPECT_FLOAT_EQ(m_view.grid().minX, static_cast<float>(-3 - centerX()));
    EXPECT_FLOAT_EQ(m_view.grid().maxY, static_cast<float>(centerY() + 4));
}

TEST_F(GLWidgetTest, TheNamedViewsLookAlongTheAxes)
{
    // Where the world's up (z) and right-hand (x) directions come to lie on the screen.
    m_driver.trigger("actionFront_View");
    expectTurned({0, 0, 1}, {0, 1, 0});
    expectTurned({1, 0, 0}, {1, 0, 0});
    m_driver.trigger("actionBack_view");
    expectTurned({0, 0, 1}, {0, 1, 0});
    expectTurned({1, 0, 0}, {-1, 0, 0});
    m_driver.trigger("actionLeft_View");
    expectTurned({0, 0, 1}, {0, 1, 0});
    expectTurned({0, 1, 0}, {-1, 0, 0});
    m_driver.trigger("actionRight_View");
    expectTurned({0, 0, 1}, {0, 1, 0});
    expectTurned({0, 1, 0}, {1, 0, 0});
    m_driver.trigger("actionTop_View");
    expectTurned({0, 0, 1}, {0, 0, 1});
    expectTurned({1, 0, 0}, {1, 0, 0});
    m_driver.trigger("actionBottom_View");
    expectTurned({0, 0, 1}, {0, 0, -1});
    expectTurned({1, 0, 0}, {1, 0, 0});
}

TEST_F(GLWidgetTest, SetViewTurnsAboutZThenYThenX)
{
    m_view.setView(90, 0, 90);
    // About z first: x to y; then about x: y to z.
    expectTurned({1, 0, 0}, {0, 0, 1});
    expectTurned({0, 1, 0}, {-1, 0, 0});
    m_view.setView(0, 90, 0);
    expectTurned({1, 0, 0}, {0, 0, -1});
}

TEST_F(GLWidgetTest, ALeftDragTurnsTheSceneFromPointToPointOfTheSphere)
{
    // From the middle to the right edge's middle: a quarter turn about the screen's y axis, which
    // brings the near point of the sphere to the right.
    m_driver.drag(QPoint(m_view.width() / 2, m_view.height() / 2),
                  QPoint(m_view.width() - 1, m_view.height() / 2));
    const QVector3D nearPoint = turned({0, 0, 1});
    EXPECT_GT(nearPoint.x(), 0.99f);
    EXPECT_NEAR(nearPoint.y(), 0.0, 0.01);
}

TEST_F(GLWidgetTest, ALeftDragAlongARadiusOutsideTheSphereKeepsTheRotation)
{
    // The corner lies outside the unit circle, where points on one radius are the same point: the
    // cross product is below its limit.
    const QPoint corner(m_view.width() - 1, m_view.height() - 1);
    const QPoint inside(m_view.width() / 2 + (m_view.width() - 1 - m_view.width() / 2) * 9 / 10,
                        m_view.height() / 2 + (m_view.height() - 1 - m_view.height() / 2) * 9 / 10);
    m_driver.drag(corner, corner);
    EXPECT_EQ(m_view.rotation(), QQuaternion(1, 0, 0, 0));
    m_driver.drag(corner, inside);
    EXPECT_NEAR(std::abs(m_view.rotation().scalar()), 1.0, 1e-3);
}

TEST_F(GLWidgetTest, ALeftDragAlongARadiusKeepsRotating)
{
    const QPoint center(m_view.width() / 2, m_view.height() / 2);
    m_driver.drag(center, center + QPoint(100, 0));
    const float first = m_view.rotation().scalar();
    m_driver.drag(center + QPoint(100, 0), center + QPoint(200, 0));
    EXPECT_LT(first, 1.0f);
    EXPECT_LT(m_view.rotation().scalar(), first);
    EXPECT_NEAR(m_view.rotation().length(), 1.0, 1e-5);
}

TEST_F(GLWidgetTest, ARightDragMovesTheSceneWithThePointerAndTheGridTheOtherWay)
{
    m_view.setZoom(0.5f);
    const Ui::ViewGrid before = m_view.grid();
    const QPoint center = m_driver.viewCenter();
    m_driver.drag(center, center + QPoint(40, -24), Qt::RightButton);
    EXPECT_NEAR(m_view.translation()[0], 20, 1e-3);
    EXPECT_NEAR(m_view.translation()[1], 12, 1e-3);
    EXPECT_EQ(m_view.translation()[2], 0);
    EXPECT_NEAR(m_view.grid().minX, before.minX - 20, 1e-3);
    EXPECT_NEAR(m_view.grid().maxY, before.maxY - 12, 1e-3);
    EXPECT_EQ(m_view.rotation(), QQuaternion(1, 0, 0, 0));
}

TEST_F(GLWidgetTest, AClickOnTheBackgroundGivesAPointInTheMiddleOfTheDepthRange)
{
    PointerWaiter waiter;
    m_driver.workspace().pointer().awaitClick(&waiter, waiter.position, waiter.button);
    m_driver.click(QPoint(10, 20));
    EXPECT_EQ(waiter.nextCalls, 1);
    EXPECT_EQ(waiter.button, 0);
    EXPECT_NEAR(waiter.position[0], 10 - centerX(), 1e-3);
    EXPECT_NEAR(waiter.position[1], centerY() - 20, 1e-3);
    EXPECT_NEAR(waiter.position[2], 0.0, 1e-3);
}

TEST_F(GLWidgetTest, AClickOnAnObjectGivesItsDepth)
{
    addBlock(Vector3D(-20, -20, -20), 40);
    PointerWaiter waiter;
    m_driver.workspace().pointer().awaitClick(&waiter, waiter.position, waiter.button);
    m_driver.click(m_driver.viewCenter(), Qt::RightButton);
    EXPECT_EQ(waiter.button, 1);
    EXPECT_NEAR(waiter.position[2], 20.0, 0.01);
}

TEST_F(GLWidgetTest, AFreeMoveReachesTheTrackerAndADragDoesNot)
{
    PointerWaiter waiter;
    m_driver.workspace().pointer().awaitMove(&waiter, waiter.secondary, waiter.position);
    m_driver.drag(QPoint(100, 100), QPoint(110, 100));
    EXPECT_EQ(waiter.nextCalls, 0);
    m_driver.movePointer(QPoint(30, 40));
    EXPECT_EQ(waiter.nextCalls, 1);
    EXPECT_NEAR(waiter.position[0], 30 - centerX(), 1e-3);
    EXPECT_NEAR(waiter.position[1], centerY() - 40, 1e-3);
}

TEST_F(GLWidgetTest, ADragWithBothButtonsDoesNothing)
{
    const QPoint center = m_driver.viewCenter();
    m_driver.click(center);
    for (int step = 0; step < 5; ++step) {
        const QPoint at = center + QPoint(10, 7) * step;
        QMouseEvent move(QEvent::MouseMove, at, m_view.mapToGlobal(at), Qt::NoButton,
                         Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
        QApplication::sendEvent(&m_view, &move);
        EXPECT_TRUE(move.isAccepted());
    }
    EXPECT_EQ(m_view.rotation(), QQuaternion(1, 0, 0, 0));
    EXPECT_EQ(m_view.translation(), (std::array<double, 3>{0, 0, 0}));
}

TEST_F(GLWidgetTest, SnapMovesThePointThatOperationsSee)
{
    m_view.setSnapToGrid(true);
    PointerWaiter waiter;
    m_driver.workspace().pointer().awaitClick(&waiter, waiter.position, waiter.button);
    m_driver.click(QPoint(static_cast<int>(centerX()) + 13, static_cast<int>(centerY()) + 28));
    EXPECT_EQ(std::remainder(waiter.position[0], 10.0), 0.0);
    EXPECT_EQ(std::remainder(waiter.position[1], 10.0), 0.0);
    EXPECT_NEAR(waiter.position[0], 13.0, 5.5);
    EXPECT_NEAR(waiter.position[1], -28.0, 5.5);
    EXPECT_EQ(waiter.position[2], 0.0);
}

TEST_F(GLWidgetTest, SnapNeverMovesThePointThatPickingUses)
{
    // A block of 4 units between two grid points, which a snapped click would miss.
    addBlock(Vector3D(3, 3, 0), 4);
    m_view.setSnapToGrid(true);
    m_driver.workspace().selection().setSelectionMode(true);
    m_driver.click(QPoint(static_cast<int>(centerX()) + 5, static_cast<int>(centerY()) - 5));
    EXPECT_EQ(m_driver.workspace().pointer().selectedObjects().size(), 1u);
    m_driver.workspace().selection().setSelectionMode(false);
}

TEST_F(GLWidgetTest, AClickTurnsNothingUntilThePointerMoves)
{
    m_driver.click(QPoint(5, 5));
    EXPECT_EQ(m_view.rotation(), QQuaternion(1, 0, 0, 0));
}

TEST_F(GLWidgetTest, TheBackgroundFollowsThePresentScheme)
{
    EXPECT_EQ(m_driver.picture().pixelColor(5, 5), QColor(Qt::black));
    Model::ColorTable::setCurrentScheme(Model::ColorTable::LowScheme);
    EXPECT_EQ(m_driver.picture().pixelColor(5, 5), QColor(Qt::white));
}

TEST_F(GLWidgetTest, TheGridIsDrawnInItsColourAtItsSpacing)
{
    m_view.setRenderGrid(true);
    m_view.setGridSpacing(50.0f);
    const QImage picture = m_driver.picture();
    const QColor grey(102, 102, 102);
    const int y = static_cast<int>(centerY()) - 27;
    // A line a spacing along the row, each a pixel wide.
    int lines = 0;
    for (int x = 0; x < picture.width(); ++x)
        lines += picture.pixelColor(x, y) == grey ? 1 : 0;
    EXPECT_NEAR(lines, picture.width() / 50.0, 1.0);
    // One goes through the origin.
    bool throughOrigin = false;
    for (int dx = -1; dx <= 1; ++dx)
        throughOrigin |= picture.pixelColor(static_cast<int>(centerX()) + dx, y) == grey;
    EXPECT_TRUE(throughOrigin);
}

TEST_F(GLWidgetTest, AGridWithASpacingOfZeroDrawsNothing)
{
    m_view.setRenderGrid(true);
    m_view.setGridSpacing(0.0f);
    const QImage picture = m_driver.picture();
    for (int x = 0; x < picture.width(); ++x)
        ASSERT_EQ(picture.pixelColor(x, 27), QColor(Qt::black)) << x;
}

TEST_F(GLWidgetTest, AGridFinerThanThePixelsFillsTheView)
{
    m_view.setRenderGrid(true);
    const QColor grey(102, 102, 102);
    // The smallest zoom of the dialog at the spacing of the start, and a spacing that would take
    // ten million lines.
    for (const auto &[zoom, spacing] : {std::pair(1000.0f, 10.0f), std::pair(1.0f, 1e-4f)}) {
        m_view.setZoom(zoom);
        m_view.setGridSpacing(spacing);
        const QImage picture = m_driver.picture();
        for (int x = 1; x < picture.width() - 1; ++x)
            ASSERT_EQ(picture.pixelColor(x, 27), grey) << x << ", spacing " << spacing;
    }
}

TEST_F(GLWidgetTest, TurningOffRenderObjectsLeavesGridAndAxesAndTheyStandStill)
{
    addBlock(Vector3D(100, 100, 0), 40);
    m_view.setRenderGrid(true);
    m_view.setShowAxes(true);
    const QImage withObject = m_driver.picture();
    EXPECT_NE(pixel(withObject, 125, 125), QColor(Qt::black));
    m_view.setRenderObjects(false);
    const QImage first = m_driver.picture();
    EXPECT_EQ(pixel(first, 125, 125), QColor(Qt::black));
    for (int frame = 0; frame < 50; ++frame)
        EXPECT_EQ(m_driver.picture(), first) << frame;
}

TEST_F(GLWidgetTest, LightingChangesTheShadeOfAFace)
{
    addBlock(Vector3D(-20, -20, -20), 40);
    m_view.setLighting(false);
    // Unlit, silicon shows its own colour, half grey.
    EXPECT_NEAR(pixel(m_driver.picture(), 3, 3).red(), 127.5, 1.0);
    m_view.setLighting(true);
    EXPECT_GT(pixel(m_driver.picture(), 3, 3).red(), 140);
}

TEST_F(GLWidgetTest, RenderEdgesOutlinesTheObjectWithoutLight)
{
    m_view.setZoom(0.1f);
    addBlock(Vector3D(-2, -2, -2), 4);
    const QImage plain = m_driver.picture();
    m_view.setRenderEdges(true);
    const QImage edged = m_driver.picture();
    // The lines are two pixels wide, so that one lies outside the block, which ends at 20 pixels.
    const auto outline = [this](const QImage &image) {
        int brightest = 0;
        for (int x = 19; x <= 22; ++x)
            if (pixel(image, x, 5).red() < 140)
                brightest = std::max(brightest, pixel(image, x, 5).red());
        return brightest;
    };
    EXPECT_EQ(outline(plain), 0);
    EXPECT_NEAR(outline(edged), 127.5, 1.0);
    EXPECT_EQ(pixel(edged, 5, 5), pixel(plain, 5, 5));
}

TEST_F(GLWidgetTest, TheAxisSignShowsRedAndGreenFromTheTop)
{
    m_view.setLighting(true);
    m_view.setShowAxes(true);
    const QImage picture = m_driver.picture();
    const double length = 0.3 * std::min(m_view.width(), m_view.height());
    const int originX = static_cast<int>(0.1 * m_view.width());
    const int originY = static_cast<int>(0.9 * m_view.height());
    const auto shows = [&](int x, int y, const QColor &color) {
        for (int dx = -2; dx <= 2; ++dx)
            for (int dy = -2; dy <= 2; ++dy)
                if (picture.pixelColor(x + dx, y + dy) == color)
                    return true;
        return false;
    };
    EXPECT_TRUE(shows(originX + static_cast<int>(length / 2), originY, QColor(255, 0, 0)));
    EXPECT_TRUE(shows(originX, originY - static_cast<int>(length / 2), QColor(0, 255, 0)));
    EXPECT_FALSE(shows(originX + static_cast<int>(length * 1.2), originY, QColor(255, 0, 0)));
    // The rest of the view stands as before.
    EXPECT_EQ(picture.pixelColor(picture.width() - 5, 5), QColor(Qt::black));
}

TEST_F(GLWidgetTest, AnImageOfTheViewIsNeverBlackHoweverEarlyItIsTaken)
{
    Model::ColorTable::setCurrentScheme(Model::ColorTable::LowScheme);
    EXPECT_EQ(m_view.image().pixelColor(3, 3), QColor(Qt::white));
}

TEST_F(GLWidgetTest, OneObjectsPictureNeverMovesAnothers)
{
    addBlock(Vector3D(-150, 0, 0), 40);
    addBlock(Vector3D(100, 0, 0), 40);
    const QImage picture = m_driver.picture();
    EXPECT_NE(pixel(picture, -130, 20), QColor(Qt::black));
    EXPECT_NE(pixel(picture, 120, 20), QColor(Qt::black));
    EXPECT_EQ(pixel(picture, -30, 20), QColor(Qt::black));
}

TEST_F(GLWidgetTest, AHorizontalWheelChangesNothing)
{
    QWheelEvent event(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(120, 0), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_view, &event);
    EXPECT_EQ(m_view.zoomFactor(), 1.0f);
}

TEST_F(GLWidgetTest, SnapMovesThePointsOfRightPressesAndFreeMovesAndNotThePan)
{
    m_view.setSnapToGrid(true);
    const QPoint at = m_driver.viewCenter() + QPoint(13, 0);
    PointerWaiter waiter;
    m_driver.workspace().pointer().awaitMove(&waiter, waiter.secondary, waiter.position);
    m_driver.movePointer(at);
    EXPECT_EQ(std::remainder(waiter.position[0], 10.0), 0.0);
    m_driver.workspace().pointer().awaitClick(&waiter, waiter.position, waiter.button);
    m_driver.drag(at, at + QPoint(3, 0), Qt::RightButton);
    EXPECT_EQ(waiter.button, 1);
    EXPECT_EQ(std::remainder(waiter.position[0], 10.0), 0.0);
    // Three pixels, from where the pointer was and not from the grid point.
    EXPECT_NEAR(m_view.translation()[0], 3.0, 1e-3);
}

TEST_F(GLWidgetTest, TheLightsAndTheMaterialAreSetOnceAndLightOneStaysOn)
{
    m_view.setLighting(false);
    m_view.updateGL();
    m_view.makeCurrent();
    EXPECT_FALSE(glIsEnabled(GL_LIGHTING));
    EXPECT_FALSE(glIsEnabled(GL_LIGHT0));
    EXPECT_TRUE(glIsEnabled(GL_LIGHT1));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
    EXPECT_TRUE(glIsEnabled(GL_COLOR_MATERIAL));
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    const auto light = [](GLenum number, GLenum name) {
        std::array<float, 4> values{};
        glGetLightfv(number, name, values.data());
        return values;
    };
    using Values = std::array<float, 4>;
    EXPECT_EQ(light(GL_LIGHT0, GL_AMBIENT), (Values{0.5f, 0.5f, 0.5f, 1.0f}));
    EXPECT_EQ(light(GL_LIGHT0, GL_DIFFUSE), (Values{0.5f, 0.5f, 0.5f, 1.0f}));
    EXPECT_EQ(light(GL_LIGHT0, GL_SPECULAR), (Values{1.0f, 1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(light(GL_LIGHT0, GL_POSITION), (Values{1.0f, 1.0f, 1.0f, 0.0f}));
    EXPECT_EQ(light(GL_LIGHT1, GL_AMBIENT), (Values{0.2f, 0.2f, 0.2f, 1.0f}));
    EXPECT_EQ(light(GL_LIGHT1, GL_DIFFUSE), (Values{0.3f, 0.3f, 0.3f, 1.0f}));
    EXPECT_EQ(light(GL_LIGHT1, GL_POSITION), (Values{-1.0f, -1.0f, -1.0f, 0.0f}));
    Values specular{};
    glGetMaterialfv(GL_FRONT, GL_SPECULAR, specular.data());
    EXPECT_EQ(specular, (Values{0.5f, 0.5f, 0.5f, 1.0f}));
    float shininess = 0.0f;
    glGetMaterialfv(GL_FRONT, GL_SHININESS, &shininess);
    EXPECT_EQ(shininess, 64.0f);
    GLint source = 0;
    GLint destination = 0;
    glGetIntegerv(GL_BLEND_SRC, &source);
    glGetIntegerv(GL_BLEND_DST, &destination);
    EXPECT_EQ(source, GL_SRC_ALPHA);
    EXPECT_EQ(destination, GL_ONE_MINUS_SRC_ALPHA);
}

TEST_F(GLWidgetTest, TheGridHidesNothingThatIsDrawnBehindIt)
{
    // The block's top lies at -5, behind the grid's plane; the grid is drawn first and leaves no
    // depth, so the block covers its lines.
    m_view.setRenderGrid(true);
    m_view.setLighting(false);
    addBlock(Vector3D(-20, -20, -25), 20);
    const QImage picture = m_driver.picture();
    for (int x = -18; x < -2; ++x)
        EXPECT_NEAR(pixel(picture, x, -10).red(), 127.5, 1.0) << x;
}

} // namespace
