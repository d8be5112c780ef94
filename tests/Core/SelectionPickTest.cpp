#include "Core/Selection.h"

#include "Fakes.h"

#include "Core/PointerTracker.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Document.h"
#include "Support/Volumes.h"

#include <QGLFormat>
#include <QGLWidget>

#include <GL/gl.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

using Core::PointerTracker;
using Core::Selection;
using Fakes::Log;
using Model::Object;
using ObjectList = PointerTracker::ObjectList;

namespace {

/// Window of 200 by 100 pixels with one drawing unit a pixel: x to the right from the left border,
/// y upward from the lower one. A point (x, y) lies under the window position (x, 100 - y).
constexpr int windowWidth = 200;
constexpr int windowHeight = 100;

void drawSquare(double left, double bottom, double size, double z = 0.0)
{
    glBegin(GL_QUADS);
    glVertex3d(left, bottom, z);
    glVertex3d(left + size, bottom, z);
    glVertex3d(left + size, bottom + size, z);
    glVertex3d(left, bottom + size, z);
    glEnd();
}

class SelectionPickTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_view = new QGLWidget(QGLFormat(QGL::SingleBuffer));
        s_view->resize(windowWidth, windowHeight);
        s_view->show();
    }
    static void TearDownTestSuite()
    {
        delete s_view;
        s_view = nullptr;
    }

    void SetUp() override
    {
        s_view->makeCurrent();
        ASSERT_TRUE(s_view->isValid());
        setView(0, 0, windowWidth, windowHeight);
        m_selection.setSelectionMode(true);
    }

    void TearDown() override { EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)); }

    static void setView(int x, int y, int width, int height)
    {
        glViewport(x, y, width, height);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, width, 0, height, -1000, 1000);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
    }

    boost::shared_ptr<Object> add(Fakes::Action picking)
    {
        const auto object = boost::make_shared<Fakes::Object>(std::move(picking));
        m_document.addObject(object);
        return object;
    }
    boost::shared_ptr<Object> addSquare(double left, double bottom, double size)
    {
        return add([=] { drawSquare(left, bottom, size); });
    }
    boost::shared_ptr<Object> addVolume(double x, double y, double z)
    {
        const auto volume = Support::makeVolume({10, 10, 10}, [](auto, auto, auto) { return 1U; });
        volume->translate(Util::Vector3D(x, y, z));
        m_document.addObject(volume);
        return volume;
    }

    /// A click on a point of the picture.
    bool click(int x, int y) { return m_selection.pick(x, windowHeight - y); }
    ObjectList selected() const { return m_pointer.selectedObjects(); }

    Model::Document m_document;
    PointerTracker m_pointer;
    Selection m_selection{&m_document, &m_pointer};

private:
    static inline QGLWidget *s_view = nullptr;
};

std::array<double, 16> matrix(GLenum name)
{
    std::array<double, 16> values{};
    glGetDoublev(name, values.data());
    return values;
}

GLint integerState(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

} // namespace

TEST_F(SelectionPickTest, ClickSelectsWhatLiesUnderThePointer)
{
    const auto left = addSquare(10, 10, 20);
    const auto right = addSquare(110, 60, 20);
    EXPECT_TRUE(click(20, 20));
    EXPECT_TRUE(left->isSelected());
    EXPECT_FALSE(right->isSelected());
    EXPECT_EQ(selected(), ObjectList{left});
}

TEST_F(SelectionPickTest, SecondClickOnAnObjectTakesItOutAgain)
{
    const auto object = addSquare(10, 10, 20);
    EXPECT_TRUE(click(20, 20));
    EXPECT_TRUE(click(20, 20));
    EXPECT_FALSE(object->isSelected());
    EXPECT_EQ(selected(), ObjectList{});
    EXPECT_TRUE(click(20, 20));
    EXPECT_TRUE(object->isSelected());
    EXPECT_EQ(selected(), ObjectList{object});
}

TEST_F(SelectionPickTest, SelectionHasTheOrderOfTheClicks)
{
    const auto first = addSquare(10, 10, 20);
    const auto second = addSquare(60, 10, 20);
    const auto third = addSquare(110, 10, 20);
    click(120, 20);
    click(20, 20);
    click(70, 20);
    EXPECT_EQ(selected(), (ObjectList{third, first, second}));
    // Taken out of the middle and put back, it is the last.
    click(20, 20);
    EXPECT_EQ(selected(), (ObjectList{third, second}));
    click(20, 20);
    EXPECT_EQ(selected(), (ObjectList{third, second, first}));
}

TEST_F(SelectionPickTest, ClickingEmptySpaceKeepsTheSelectionAsItIs)
{
    const auto object = addSquare(10, 10, 20);
    click(20, 20);
    EXPECT_FALSE(click(150, 80));
    EXPECT_TRUE(object->isSelected());
    EXPECT_EQ(selected(), ObjectList{object});
}

TEST_F(SelectionPickTest, SelectionIsPublishedAlsoWhenNothingIsHit)
{
    const auto object = addSquare(10, 10, 20);
    click(20, 20);
    m_pointer.publishSelected({});
    EXPECT_FALSE(click(150, 80));
    EXPECT_EQ(selected(), ObjectList{object});
}

TEST_F(SelectionPickTest, EmptyDocumentHasNothingToHit)
{
    EXPECT_FALSE(click(20, 20));
    EXPECT_EQ(selected(), ObjectList{});
}

TEST_F(SelectionPickTest, OutsideSelectionModeNothingIsHit)
{
    const auto object = addSquare(10, 10, 20);
    m_selection.setSelectionMode(false);
    m_pointer.publishSelected({object});
    EXPECT_FALSE(click(20, 20));
    EXPECT_FALSE(object->isSelected());
    EXPECT_EQ(selected(), ObjectList{object});
}

TEST_F(SelectionPickTest, TurningSelectionModeOffClearsTheSelectionAndTurningItOnDoesNot)
{
    const auto first = addSquare(10, 10, 20);
    const auto second = addSquare(60, 10, 20);
    click(20, 20);
    click(70, 20);
    m_selection.setSelectionMode(true);
    EXPECT_EQ(selected(), (ObjectList{first, second}));
    EXPECT_TRUE(first->isSelected());

    Log log;
    m_selection.addObserver(Fakes::observing([&] {
        log.push_back(m_selection.isSelectionMode() ? "on" : "off");
        EXPECT_EQ(selected(), ObjectList{});
        EXPECT_FALSE(first->isSelected());
        EXPECT_FALSE(second->isSelected());
    }));
    m_selection.setSelectionMode(false);
    EXPECT_EQ(log, Log{"off"});

    // A state that only looks like a selection stays too.
    first->setSelected(true);
    m_pointer.publishSelected({first});
    log.clear();
    Selection other(&m_document, &m_pointer);
    other.setSelectionMode(true);
    EXPECT_TRUE(first->isSelected());
    EXPECT_EQ(selected(), ObjectList{first});
}

TEST_F(SelectionPickTest, ClearUnselectsEachObjectAndPublishesTheEmptyList)
{
    const auto first = addSquare(10, 10, 20);
    const auto second = addSquare(60, 10, 20);
    click(20, 20);
    click(70, 20);
    m_selection.clear();
    EXPECT_FALSE(first->isSelected());
    EXPECT_FALSE(second->isSelected());
    EXPECT_EQ(selected(), ObjectList{});
    click(70, 20);
    EXPECT_EQ(selected(), ObjectList{second});
}

TEST_F(SelectionPickTest, OfTwoVolumesBehindEachOtherTheFirstDrawnIsHitNotTheNearest)
{
    // The viewer looks down z: more z is nearer.
    const auto far = addVolume(50, 50, -500);
    const auto near = addVolume(50, 50, 500);
    EXPECT_TRUE(click(55, 55));
    EXPECT_EQ(selected(), ObjectList{far});
    // The first stays the one that is hit, selected or not.
    EXPECT_TRUE(click(55, 55));
    EXPECT_EQ(selected(), ObjectList{});
    EXPECT_FALSE(near->isSelected());

    const auto nearFirst = addVolume(150, 50, 500);
    const auto farSecond = addVolume(150, 50, -500);
    EXPECT_TRUE(click(155, 55));
    EXPECT_EQ(selected(), ObjectList{nearFirst});
    EXPECT_FALSE(farSecond->isSelected());
}

TEST_F(SelectionPickTest, WindowYGrowsDownward)
{
    const auto below = addSquare(10, 10, 20);
    const auto above = addSquare(10, 70, 20);
    EXPECT_TRUE(m_selection.pick(20, 80));
    EXPECT_EQ(selected(), ObjectList{below});
    EXPECT_TRUE(m_selection.pick(20, 20));
    EXPECT_EQ(selected(), (ObjectList{below, above}));
}

TEST_F(SelectionPickTest, RegionOfFourByFourPixelsLiesAroundThePointer)
{
    const auto object = addSquare(50, 50, 10);
    // A pixel outside each side and corner, then three. Whether a border that is just touched
    // counts is for OpenGL to say.
    const struct
    {
        int x;
        int y;
        bool hit;
    } clicks[] = {{49, 55, true},  {61, 55, true},  {55, 49, true},  {55, 61, true},
                  {49, 49, true},  {61, 61, true},  {49, 61, true},  {61, 49, true},
                  {47, 55, false}, {63, 55, false}, {55, 47, false}, {55, 63, false},
                  {47, 47, false}, {63, 63, false}, {47, 63, false}, {63, 47, false}};
    for (const auto &point : clicks) {
        EXPECT_EQ(click(point.x, point.y), point.hit) << point.x << " " << point.y;
        EXPECT_EQ(object->isSelected(), point.hit) << point.x << " " << point.y;
        m_selection.clear();
    }
}

TEST_F(SelectionPickTest, PlaceAndHeightOfTheViewportCount)
{
    // One unit a pixel from the viewport's own corner at (30, 20).
    setView(30, 20, 100, 60);
    const auto object = addSquare(40, 10, 20);
    // The centre of the square stands 20 + 20 pixels above the window's lower border, and y counts
    // down from the viewport's upper one, at 20 + 60.
    EXPECT_TRUE(m_selection.pick(30 + 50, (20 + 60) - (20 + 20)));
    EXPECT_EQ(selected(), ObjectList{object});
    m_selection.clear();
    EXPECT_FALSE(m_selection.pick(80, 10));
    EXPECT_FALSE(m_selection.pick(50, 60));
}

TEST_F(SelectionPickTest, ModelviewMatrixInPlaceIsUsed)
{
    const auto object = addSquare(0, 0, 10);
    glTranslated(100, 50, 0);
    EXPECT_FALSE(click(5, 5));
    EXPECT_TRUE(click(105, 55));
    EXPECT_EQ(selected(), ObjectList{object});
}

TEST_F(SelectionPickTest, MatricesAndModesAreLeftAsTheyWere)
{
    addSquare(10, 10, 20);
    glTranslated(1, 2, 3);
    const auto projection = matrix(GL_PROJECTION_MATRIX);
    const auto modelview = matrix(GL_MODELVIEW_MATRIX);
    const GLint projectionDepth = integerState(GL_PROJECTION_STACK_DEPTH);
    const GLint modelviewDepth = integerState(GL_MODELVIEW_STACK_DEPTH);
    for (const int x : {20, 150}) {
        click(x, 20);
        EXPECT_EQ(integerState(GL_MATRIX_MODE), GL_MODELVIEW);
        EXPECT_EQ(integerState(GL_RENDER_MODE), GL_RENDER);
        EXPECT_EQ(integerState(GL_PROJECTION_STACK_DEPTH), projectionDepth);
        EXPECT_EQ(integerState(GL_MODELVIEW_STACK_DEPTH), modelviewDepth);
        EXPECT_EQ(matrix(GL_PROJECTION_MATRIX), projection);
        EXPECT_EQ(matrix(GL_MODELVIEW_MATRIX), modelview);
    }
}

TEST_F(SelectionPickTest, PickedIdThatNoLongerExistsAfterAResetIsIgnored)
{
    const auto gone = addSquare(60, 10, 20);
    const std::uint32_t goneId = gone->id();
    m_document.reset();
    EXPECT_EQ(m_document.findObject(goneId), nullptr);
    EXPECT_FALSE(click(70, 20));

    // A picture that still shows it under its name.
    add([goneId] {
        glLoadName(goneId);
        drawSquare(60, 10, 20);
    });
    EXPECT_TRUE(click(70, 20));
    EXPECT_FALSE(gone->isSelected());
    EXPECT_EQ(selected(), ObjectList{});
}

TEST_F(SelectionPickTest, ResetKeepsWhatIsSelected)
{
    const auto object = addSquare(10, 10, 20);
    click(20, 20);
    m_document.reset();
    EXPECT_FALSE(click(20, 20));
    EXPECT_EQ(selected(), ObjectList{object});
    m_selection.clear();
    EXPECT_FALSE(object->isSelected());
}

TEST_F(SelectionPickTest, EachNameOfTheRecordThatIsHitIsToggledInItsOrder)
{
    const auto other = addSquare(110, 10, 20);
    const std::uint32_t otherId = other->id();
    const auto named = add([otherId] {
        glPushName(0xFFFFFFF0U);
        glPushName(otherId);
        drawSquare(10, 10, 20);
        glPopName();
        glPopName();
    });
    EXPECT_TRUE(click(20, 20));
    EXPECT_EQ(selected(), (ObjectList{named, other}));
    EXPECT_TRUE(click(120, 20));
    EXPECT_EQ(selected(), ObjectList{named});
    // Each by its own state: one leaves, the other comes.
    EXPECT_TRUE(click(20, 20));
    EXPECT_EQ(selected(), ObjectList{other});
}

TEST_F(SelectionPickTest, RecordsAfterTheFirstAreIgnored)
{
    const auto first = addSquare(10, 10, 20);
    const auto second = addSquare(15, 15, 20);
    const auto third = addSquare(5, 5, 30);
    EXPECT_TRUE(click(20, 20));
    EXPECT_EQ(selected(), ObjectList{first});
    EXPECT_FALSE(second->isSelected());
    EXPECT_FALSE(third->isSelected());
}

TEST_F(SelectionPickTest, HitWithoutAnyNameTogglesNothing)
{
    const auto object = add([] {
        glPopName();
        drawSquare(10, 10, 20);
        glPushName(0);
    });
    EXPECT_TRUE(click(20, 20));
    EXPECT_FALSE(object->isSelected());
    EXPECT_EQ(selected(), ObjectList{});
}

TEST_F(SelectionPickTest, ObjectThatIsMarkedAsSelectedIsUnmarkedByAClick)
{
    const auto object = addSquare(10, 10, 20);
    object->setSelected(true);
    EXPECT_TRUE(click(20, 20));
    EXPECT_FALSE(object->isSelected());
    EXPECT_EQ(selected(), ObjectList{});
}

// A hit of one name takes four entries of the buffer.
TEST_F(SelectionPickTest, BufferTakes2048EntriesAndTooManyHitsCountAsNone)
{
    const auto first = addSquare(10, 10, 20);
    for (int i = 1; i < 512; ++i)
        addSquare(10, 10, 20);
    EXPECT_TRUE(click(20, 20));
    EXPECT_EQ(selected(), ObjectList{first});
    addSquare(10, 10, 20);
    EXPECT_FALSE(click(20, 20));
    EXPECT_EQ(selected(), ObjectList{first});
}
