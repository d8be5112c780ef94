#include "Model/Document.h"

#include "GlTestSupport.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <future>
#include <limits>
#include <vector>

using Model::Document;
using Model::Object;

namespace {

using Objects = Document::ObjectList;
using Ids = std::vector<std::uint32_t>;

constexpr std::chrono::milliseconds shortly(50);

class DocumentTest : public GlTest
{
protected:
    boost::shared_ptr<RecordingObject> add(double x = 0, double y = 0)
    {
        const auto object = boost::make_shared<RecordingObject>(x, y);
        object->setJournal(&m_journal);
        m_document.addObject(object);
        return object;
    }

    Document m_document;
    Ids m_journal;
};

} // namespace

TEST_F(DocumentTest, StartsEmptyWithoutAFileName)
{
    EXPECT_TRUE(m_document.objects().empty());
    EXPECT_TRUE(m_document.fileName().isEmpty());
}

TEST_F(DocumentTest, ObjectsStandInTheOrderInWhichTheyWereAdded)
{
    const auto first = add();
    const auto second = add();
    const auto third = add();
    EXPECT_EQ(m_document.objects(), (Objects{first, second, third}));
}

TEST_F(DocumentTest, ObjectsAreHandedOutAsACopyOfTheList)
{
    const auto object = add();
    Objects objects = m_document.objects();
    objects.clear();
    EXPECT_EQ(m_document.objects(), Objects{object});
}

TEST_F(DocumentTest, RemovedObjectIsGone)
{
    const auto first = add();
    const auto second = add();
    m_document.addObject(first);
    m_document.removeObject(first);
    EXPECT_EQ(m_document.objects(), Objects{second});
    EXPECT_FALSE(m_document.findObject(first->id()));
}

TEST_F(DocumentTest, RemovingAnObjectThatIsNotThereDoesNothing)
{
    const auto object = add();
    m_document.removeObject(boost::make_shared<RecordingObject>());
    EXPECT_EQ(m_document.objects(), Objects{object});
    m_document.removeObject(object);
    m_document.removeObject(object);
    EXPECT_TRUE(m_document.objects().empty());
}

TEST_F(DocumentTest, FindsObjectsByTheirIds)
{
    const auto first = add();
    const auto second = add();
    EXPECT_EQ(m_document.findObject(first->id()), first);
    EXPECT_EQ(m_document.findObject(second->id()), second);
}

TEST_F(DocumentTest, YieldsAnEmptyPointerForAnIdThatIsNotThere)
{
    EXPECT_FALSE(m_document.findObject(0));
    const auto object = add();
    EXPECT_FALSE(m_document.findObject(object->id() + 1));
    EXPECT_FALSE(m_document.findObject(std::numeric_limits<std::uint32_t>::max()));
}

TEST_F(DocumentTest, KeepsItsFileName)
{
    m_document.setFileName(QStringLiteral("drawings/\u00e4 b.xml"));
    EXPECT_EQ(m_document.fileName(), QStringLiteral("drawings/\u00e4 b.xml"));
    m_document.setFileName(QString());
    EXPECT_TRUE(m_document.fileName().isEmpty());
}

TEST_F(DocumentTest, ResetLeavesAnEmptyDocumentWithoutAFileName)
{
    add();
    add();
    m_document.setFileName(QStringLiteral("name"));
    m_document.reset();
    EXPECT_TRUE(m_document.objects().empty());
    EXPECT_TRUE(m_document.fileName().isEmpty());
    draw([&] { m_document.draw(true, true); });
    EXPECT_TRUE(m_journal.empty());
}

TEST_F(DocumentTest, AfterResetAnIdThatNoLongerExistsYieldsAnEmptyPointer)
{
    const auto object = add();
    const auto hits = pick([&] { m_document.drawForPicking(); });
    ASSERT_EQ(hits.size(), 1U);
    const std::uint32_t picked = hits[0].names.at(0);
    EXPECT_EQ(m_document.findObject(picked), object);
    m_document.reset();
    EXPECT_FALSE(m_document.findObject(picked));
}

TEST_F(DocumentTest, ObjectsCanBeAddedAfterReset)
{
    add();
    m_document.reset();
    const auto object = add();
    EXPECT_EQ(m_document.objects(), Objects{object});
    EXPECT_EQ(m_document.findObject(object->id()), object);
    m_document.removeObject(object);
    EXPECT_TRUE(m_document.objects().empty());
}

TEST_F(DocumentTest, ResetReleasesWhatNobodyElseHolds)
{
    const auto held = add();
    const boost::weak_ptr<RecordingObject> heldByTheDocument = add();
    EXPECT_FALSE(heldByTheDocument.expired());
    m_document.reset();
    EXPECT_TRUE(heldByTheDocument.expired());
    EXPECT_EQ(held.use_count(), 1);
    m_document.addObject(held);
    EXPECT_EQ(m_document.findObject(held->id()), held);
}

TEST_F(DocumentTest, DrawsEachObjectInOrderWithBothFlags)
{
    const auto first = add();
    const auto second = add();
    for (const bool objects : {false, true}) {
        for (const bool edges : {false, true}) {
            m_journal.clear();
            m_document.draw(objects, edges);
            EXPECT_EQ(m_journal, (Ids{first->id(), second->id()}));
            for (const auto &object : {first, second}) {
                EXPECT_FALSE(object->calls().back().isPick);
                EXPECT_EQ(object->calls().back().renderObjects, objects);
                EXPECT_EQ(object->calls().back().renderEdges, edges);
            }
        }
    }
}

TEST_F(DocumentTest, DrawingLeavesTheMatrixStackAsItWas)
{
    glPushMatrix();
    glTranslated(1, 2, 3);
    const auto before = modelview();
    add()->setHook([] {
        glPushMatrix();
        glTranslated(1, 1, 1);
    });
    add()->setHook([] { glPopMatrix(); });
    const auto last = add();
    last->setHook([] { glPushMatrix(); });
    m_document.draw(false, false);
    EXPECT_EQ(last->calls().back().matrix, before);
    EXPECT_EQ(modelview(), before);
    EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 2);
    EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
}

TEST_F(DocumentTest, ObjectsArePickedUnderTheirIds)
{
    const auto first = add(0, 0);
    const auto outside = add(50, 0);
    const auto second = add(3, 0);
    for (const bool drawing : {false, true}) {
        SCOPED_TRACE(drawing);
        const auto hits = pick([&] {
            if (drawing)
                m_document.draw(true, false);
            else
                m_document.drawForPicking();
        });
        ASSERT_EQ(hits.size(), 2U);
        EXPECT_EQ(hits[0].names, Ids{first->id()});
        EXPECT_EQ(hits[1].names, Ids{second->id()});
        EXPECT_TRUE(outside->calls().back().isPick);
    }
}

TEST_F(DocumentTest, ObjectsCannotBeListedFoundOrAddedWhileTheyAreDrawn)
{
    for (const bool picking : {false, true}) {
        SCOPED_TRACE(picking);
        Document document;
        const auto object = boost::make_shared<RecordingObject>();
        const auto added = boost::make_shared<RecordingObject>();
        std::future<Objects> listing;
        std::future<boost::shared_ptr<Object>> finding;
        std::future<void> adding;
        document.addObject(object);
        object->setHook([&] {
            listing = std::async(std::launch::async, [&] { return document.objects(); });
            finding =
                std::async(std::launch::async, [&] { return document.findObject(object->id()); });
            adding = std::async(std::launch::async, [&] { document.addObject(added); });
            EXPECT_EQ(listing.wait_for(shortly), std::future_status::timeout);
            EXPECT_EQ(finding.wait_for(shortly), std::future_status::timeout);
            EXPECT_EQ(adding.wait_for(shortly), std::future_status::timeout);
        });
        if (picking)
            document.drawForPicking();
        else
            document.draw(true, false);
        ASSERT_TRUE(listing.valid());
        EXPECT_EQ(listing.get().front(), object);
        EXPECT_EQ(finding.get(), object);
        adding.get();
        EXPECT_EQ(document.objects(), (Objects{object, added}));
    }
}

TEST_F(DocumentTest, DrawingDoesNotHoldTheFileName)
{
    std::future<QString> reading;
    add()->setHook([&] {
        reading = std::async(std::launch::async, [&] {
            m_document.setFileName(QStringLiteral("name"));
            return m_document.fileName();
        });
        EXPECT_EQ(reading.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    });
    m_document.draw(true, false);
    ASSERT_TRUE(reading.valid());
    EXPECT_EQ(reading.get(), QStringLiteral("name"));
}

TEST_F(DocumentTest, RemovingTakesNoLock)
{
    const auto drawn = add();
    const auto removed = boost::make_shared<RecordingObject>();
    std::future<void> removing;
    drawn->setHook([&] {
        removing = std::async(std::launch::async, [&] { m_document.removeObject(removed); });
        EXPECT_EQ(removing.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    });
    m_document.draw(true, false);
    ASSERT_TRUE(removing.valid());
    removing.get();
    EXPECT_EQ(m_document.objects(), Objects{drawn});
}

TEST_F(DocumentTest, ObjectsAreAddedAndFoundFromManyThreads)
{
    const auto object = add();
    const auto other = boost::make_shared<RecordingObject>();
    std::vector<std::future<int>> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.push_back(std::async(std::launch::async, [&] {
            int found = 0;
            for (int i = 0; i < 200; ++i) {
                found += m_document.findObject(object->id()) == object;
                found += m_document.objects().front() == object;
                m_document.addObject(other);
            }
            return found;
        }));
    }
    for (auto &thread : threads)
        EXPECT_EQ(thread.get(), 400);
    EXPECT_EQ(m_document.objects().size(), 801U);
}
