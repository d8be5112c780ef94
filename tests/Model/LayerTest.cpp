#include "Model/Layer.h"

#include "GlTestSupport.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <list>
#include <vector>

using Model::Layer;
using Model::Object;

namespace {

using Objects = Layer::ObjectList;
using Ids = std::vector<std::uint32_t>;

class LayerTest : public GlTest
{
protected:
    /// Added to the layer, with its square's corner at (x, y).
    boost::shared_ptr<RecordingObject> add(double x = 0, double y = 0)
    {
        const auto object = boost::make_shared<RecordingObject>(x, y);
        object->setJournal(&m_journal);
        m_layer.add(object);
        return object;
    }

    Layer m_layer;
    Ids m_journal;
};

} // namespace

TEST_F(LayerTest, StartsEmptyVisibleAndWithIdZero)
{
    EXPECT_EQ(m_layer.id(), 0U);
    EXPECT_TRUE(m_layer.isVisible());
    EXPECT_TRUE(m_layer.objects().empty());
    EXPECT_EQ(Layer(7).id(), 7U);
}

TEST_F(LayerTest, ObjectsStandInTheOrderInWhichTheyWereAdded)
{
    const auto first = add();
    const auto second = add();
    const auto third = add();
    EXPECT_EQ(m_layer.objects(), (Objects{first, second, third}));
}

TEST_F(LayerTest, ObjectsAreHandedOutAsACopyOfTheList)
{
    const auto object = add();
    Objects objects = m_layer.objects();
    objects.clear();
    EXPECT_EQ(m_layer.objects(), Objects{object});
}

TEST_F(LayerTest, RemovingTakesEveryEntryOfTheObject)
{
    const auto first = add();
    const auto second = add();
    m_layer.add(first);
    m_layer.add(first);
    EXPECT_EQ(m_layer.objects(), (Objects{first, second, first, first}));
    m_layer.remove(first);
    EXPECT_EQ(m_layer.objects(), Objects{second});
}

TEST_F(LayerTest, RemovingAnObjectThatIsNotThereDoesNothing)
{
    const auto object = add();
    m_layer.remove(boost::make_shared<RecordingObject>());
    m_layer.remove(boost::shared_ptr<Object>());
    EXPECT_EQ(m_layer.objects(), Objects{object});
}

TEST_F(LayerTest, FindsObjectsByTheirIds)
{
    const auto first = add();
    const auto second = add();
    bool found = false;
    EXPECT_EQ(m_layer.find(second->id(), found), second);
    EXPECT_TRUE(found);
    found = false;
    EXPECT_EQ(m_layer.find(first->id(), found), first);
    EXPECT_TRUE(found);
}

TEST_F(LayerTest, ReportsAnIdThatIsNotThere)
{
    const auto object = add();
    bool found = true;
    EXPECT_FALSE(m_layer.find(object->id() + 1, found));
    EXPECT_FALSE(found);

    found = true;
    EXPECT_FALSE(Layer().find(0, found));
    EXPECT_FALSE(found);
}

TEST_F(LayerTest, KeepsItsObjectsAlive)
{
    boost::weak_ptr<RecordingObject> object = add();
    EXPECT_FALSE(object.expired());
    m_layer.remove(object.lock());
    EXPECT_TRUE(object.expired());
}

TEST_F(LayerTest, DrawsEachObjectInOrderWithBothFlags)
{
    const auto first = add();
    const auto second = add();
    const auto third = add();
    for (const bool objects : {false, true}) {
        for (const bool edges : {false, true}) {
            m_journal.clear();
            m_layer.draw(objects, edges);
            EXPECT_EQ(m_journal, (Ids{first->id(), second->id(), third->id()}));
            for (const auto &object : {first, second, third}) {
                EXPECT_FALSE(object->calls().back().isPick);
                EXPECT_EQ(object->calls().back().renderObjects, objects);
                EXPECT_EQ(object->calls().back().renderEdges, edges);
            }
        }
    }
    EXPECT_EQ(first->calls().size(), 4U);
}

TEST_F(LayerTest, EveryObjectGetsTheMatrixOfTheLayerWhateverTheOneBeforeLeft)
{
    glPushMatrix();
    glTranslated(1, 2, 3);
    const auto expected = modelview();
    const auto pushing = add();
    pushing->setHook([] {
        glPushMatrix();
        glPushMatrix();
        glTranslated(4, 5, 6);
    });
    const auto popping = add();
    popping->setHook([] { glPopMatrix(); });
    const auto moving = add();
    moving->setHook([] { glTranslated(4, 5, 6); });
    const auto switching = add();
    switching->setHook([] { glMatrixMode(GL_PROJECTION); });
    const auto last = add();

    m_layer.draw(true, true);
    for (const auto &object : {pushing, popping, moving, switching, last}) {
        ASSERT_EQ(object->calls().size(), 1U);
        EXPECT_EQ(object->calls().front().matrix, expected);
        EXPECT_EQ(object->calls().front().depth, 2);
    }
}

TEST_F(LayerTest, DrawingRestoresTheMatrixAndTheDepthOfItsStack)
{
    const std::vector<std::function<void()>> hooks = {
        [] { glPushMatrix(); },
        [] {
            glPushMatrix();
            glTranslated(4, 5, 6);
            glPushMatrix();
        },
        [] { glPopMatrix(); },
        [] { glRotated(30, 1, 2, 3); },
        [] {},
    };
    const auto outermost = modelview();
    for (std::size_t i = 0; i < hooks.size(); ++i) {
        SCOPED_TRACE(i);
        glPushMatrix();
        glTranslated(1, 2, 3);
        const auto before = modelview();
        Layer layer;
        for (int copies = 0; copies < 3; ++copies) {
            const auto object = boost::make_shared<RecordingObject>();
            object->setHook(hooks[i]);
            layer.add(object);
        }
        layer.draw(false, true);
        EXPECT_EQ(modelview(), before);
        EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 2);
        EXPECT_EQ(integer(GL_MATRIX_MODE), GL_MODELVIEW);
        glPopMatrix();
        EXPECT_EQ(modelview(), outermost);
    }
    EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
}

TEST_F(LayerTest, ManyObjectsThatLeaveAMatrixPushedDoNotFillTheStack)
{
    for (int i = 0; i < 200; ++i)
        add()->setHook([] { glPushMatrix(); });
    m_layer.draw(false, false);
    EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
    EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 1);
}

TEST_F(LayerTest, DrawingAnEmptyLayerDoesNothing)
{
    const auto before = modelview();
    m_layer.draw(true, true);
    m_layer.drawForPicking();
    EXPECT_EQ(modelview(), before);
    EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 1);
    EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
}

TEST_F(LayerTest, InSelectionModeDrawingPicksUnderTheIdsOfTheObjects)
{
    const auto first = add(0, 0);
    const auto second = add(3, 0);
    const auto outside = add(50, 0);
    const auto hits = pick([&] { m_layer.draw(true, true); });
    ASSERT_EQ(hits.size(), 2U);
    EXPECT_EQ(hits[0].names, Ids{first->id()});
    EXPECT_EQ(hits[1].names, Ids{second->id()});
    for (const auto &object : {first, second, outside}) {
        ASSERT_EQ(object->calls().size(), 1U);
        EXPECT_TRUE(object->calls().front().isPick);
    }
    EXPECT_EQ(m_journal, (Ids{first->id(), second->id(), outside->id()}));
}

TEST_F(LayerTest, NamesAreStackedOnThoseOfTheCaller)
{
    const auto object = add();
    const auto hits = pick([&] {
        glPushName(4000000000U);
        m_layer.drawForPicking();
        EXPECT_EQ(integer(GL_NAME_STACK_DEPTH), 1);
        glPopName();
    });
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits[0].names, (Ids{4000000000U, object->id()}));
}

TEST_F(LayerTest, OneNameIsOnTheStackWhileAnObjectIsPicked)
{
    Ids depths;
    for (int i = 0; i < 3; ++i)
        add(i)->setHook(
            [&] { depths.push_back(static_cast<std::uint32_t>(integer(GL_NAME_STACK_DEPTH))); });
    pick([&] { m_layer.drawForPicking(); });
    EXPECT_EQ(depths, (Ids{1, 1, 1}));
}

TEST_F(LayerTest, DrawingForPickingDoesNotAskForTheRenderMode)
{
    const auto first = add();
    const auto second = add();
    m_layer.drawForPicking();
    for (const auto &object : {first, second}) {
        ASSERT_EQ(object->calls().size(), 1U);
        EXPECT_TRUE(object->calls().front().isPick);
    }
    EXPECT_EQ(m_journal, (Ids{first->id(), second->id()}));
}

TEST_F(LayerTest, DrawnObjectsAppearWhereTheyAre)
{
    const auto red = add(0, 0);
    red->setColor({1, 0, 0, 1});
    red->setHook([] {
        glTranslated(5, 5, 0);
        glPushMatrix();
    });
    const auto green = add(2, 0);
    green->setColor({0, 1, 0, 1});
    draw([&] { m_layer.draw(false, false); });
    expectColorAt(0.5, 0.5, 0, {1, 0, 0});
    expectColorAt(2.5, 0.5, 0, {0, 1, 0});
    EXPECT_EQ(pixelsOf({1, 0, 0}), 100);
    EXPECT_EQ(pixelsOf({0, 1, 0}), 100);
}
