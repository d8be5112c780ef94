#include "Core/Selection.h"

#include "Fakes.h"

#include "Core/PointerTracker.h"
#include "Model/Document.h"

#include <gtest/gtest.h>

#include <string>

using Core::PointerTracker;
using Core::Selection;
using Fakes::Log;

namespace {

class SelectionTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_document.addObject(boost::make_shared<Fakes::Object>());
        // So that it shows whether a call publishes.
        m_pointer.publishSelected(m_document.objects());
        m_selection.addObserver(Fakes::observing([this] {
            m_log.push_back(m_selection.isSelectionMode() ? "on" : "off");
            m_log.push_back(std::to_string(m_pointer.selectedObjects().size()) + " published");
        }));
    }

    Log m_log;
    Model::Document m_document;
    PointerTracker m_pointer;
    Selection m_selection{&m_document, &m_pointer};
};

} // namespace

TEST_F(SelectionTest, StartsWithSelectionModeOff)
{
    EXPECT_FALSE(m_selection.isSelectionMode());
}

TEST_F(SelectionTest, TurningSelectionModeOnDoesNotClearTheSelection)
{
    m_selection.setSelectionMode(true);
    EXPECT_TRUE(m_selection.isSelectionMode());
    EXPECT_EQ(m_log, (Log{"on", "1 published"}));
    EXPECT_EQ(m_pointer.selectedObjects().size(), 1U);
}

TEST_F(SelectionTest, TurningSelectionModeOffPublishesTheEmptyListBeforeTheObserversAreTold)
{
    m_selection.setSelectionMode(true);
    m_log.clear();
    m_selection.setSelectionMode(false);
    EXPECT_FALSE(m_selection.isSelectionMode());
    EXPECT_EQ(m_log, (Log{"off", "0 published"}));
}

TEST_F(SelectionTest, EqualSelectionModeDoesNothing)
{
    m_selection.setSelectionMode(false);
    EXPECT_EQ(m_log, Log{});
    EXPECT_EQ(m_pointer.selectedObjects().size(), 1U);
    m_selection.setSelectionMode(true);
    m_log.clear();
    m_selection.setSelectionMode(true);
    EXPECT_EQ(m_log, Log{});
    EXPECT_EQ(m_pointer.selectedObjects().size(), 1U);
}

TEST_F(SelectionTest, ObserversAreToldInTheOrderOfTheirRegistration)
{
    m_selection.addObserver(Fakes::logging(m_log, "second"));
    m_selection.addObserver(Fakes::logging(m_log, "third"));
    m_selection.setSelectionMode(true);
    EXPECT_EQ(m_log, (Log{"on", "1 published", "second", "third"}));
}

TEST_F(SelectionTest, ClearPublishesTheEmptyListAndTellsNobody)
{
    m_selection.clear();
    EXPECT_TRUE(m_pointer.selectedObjects().empty());
    EXPECT_EQ(m_log, Log{});
}

TEST_F(SelectionTest, ClearLeavesTheSelectionModeAsItIs)
{
    m_selection.setSelectionMode(true);
    m_selection.clear();
    EXPECT_TRUE(m_selection.isSelectionMode());
}

// No picture is needed for that: the mode is looked at first.
TEST_F(SelectionTest, PickOutsideSelectionModeHitsNothingAndPublishesNothing)
{
    EXPECT_FALSE(m_selection.pick(10, 10));
    EXPECT_EQ(m_pointer.selectedObjects().size(), 1U);
    EXPECT_EQ(m_log, Log{});
}
