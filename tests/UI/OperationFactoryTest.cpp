#include "Support/WindowDriver.h"

#include "Core/Operations/ObjectOperation.h"
#include "UI/MainWindow.h"
#include "UI/OperationFactory.h"

#include <boost/pointer_cast.hpp>
#include <gtest/gtest.h>

#include <cstdint>

namespace {

using Core::Operations::ObjectOperation;

struct Row
{
    std::uint32_t id;
    const char *name;
    std::uint32_t ownId;
    bool undoable;
};

/// The operations that the program has.
const Row Rows[] = {
    {1, "Copy Objects", 1, true},           {2, "Create Substrate", 2, true},
    {4, "Delete Objects", 4, true},         {7, "Move Objects", 7, true},
    {13, "Isotropic Deposition", 13, true}, {14, "Isotropic Etching", 14, true},
    {24, "Select volumes", 24, false},
};

class OperationFactoryTest : public testing::Test
{
protected:
    Support::WindowDriver m_driver;
    Ui::OperationFactory m_factory{&m_driver.window().presenter()};
};

TEST_F(OperationFactoryTest, EachRowHasItsNameItsOwnIdAndItsPlaceOnTheUndoStack)
{
    for (const Row &row : Rows) {
        const auto operation = m_factory.create(row.id);
        ASSERT_TRUE(operation) << row.id;
        EXPECT_EQ(operation->name(), row.name);
        EXPECT_EQ(operation->id(), row.ownId) << row.id;
        EXPECT_EQ(boost::dynamic_pointer_cast<ObjectOperation>(operation) != nullptr, row.undoable)
            << row.id;
    }
}

TEST_F(OperationFactoryTest, NumbersOutsideTheTableYieldNoOperation)
{
    for (const std::uint32_t id : {0u, 5u, 21u, 25u, 31u, 32u, 500u, 999u, 1001u, 4294967295u})
        EXPECT_FALSE(m_factory.create(id)) << id;
}

TEST_F(OperationFactoryTest, EachCallMakesANewOperation)
{
    EXPECT_NE(m_factory.create(2), m_factory.create(2));
}

} // namespace
