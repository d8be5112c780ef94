#include "Core/ObjectRecords.h"

#include <gtest/gtest.h>

#include <limits>

using Core::ObjectRecords;

TEST(ObjectRecordsTest, MissingKeyReadsAsStaleAndWithoutAnOperation)
{
    const ObjectRecords records;
    EXPECT_TRUE(records.isLatticeStale(0));
    EXPECT_TRUE(records.isLatticeStale(7));
    EXPECT_EQ(records.lastOperation(0), 0U);
    EXPECT_EQ(records.lastOperation(7), 0U);
}

TEST(ObjectRecordsTest, ReadingAMissingKeyDoesNotRecordIt)
{
    ObjectRecords records;
    records.setLatticeStale(1, false);
    EXPECT_TRUE(records.isLatticeStale(2));
    EXPECT_TRUE(records.isLatticeStale(2));
    EXPECT_EQ(records.lastOperation(2), 0U);
}

TEST(ObjectRecordsTest, EachObjectHasARecordOfItsOwn)
{
    const std::uint32_t last = std::numeric_limits<std::uint32_t>::max();
    ObjectRecords records;
    records.setLastOperation(0, 13);
    records.setLastOperation(last, 1000);
    records.setLatticeStale(last, false);
    EXPECT_EQ(records.lastOperation(0), 13U);
    EXPECT_EQ(records.lastOperation(1), 0U);
    EXPECT_EQ(records.lastOperation(last), 1000U);
    EXPECT_TRUE(records.isLatticeStale(0));
    EXPECT_FALSE(records.isLatticeStale(last));
}

TEST(ObjectRecordsTest, LaterOperationReplacesTheEarlierOne)
{
    ObjectRecords records;
    records.setLastOperation(3, 28);
    records.setLastOperation(3, 29);
    EXPECT_EQ(records.lastOperation(3), 29U);
}

TEST(ObjectRecordsTest, ClearedFlagCanBeSetAgain)
{
    ObjectRecords records;
    records.setLatticeStale(3, true);
    EXPECT_TRUE(records.isLatticeStale(3));
    records.setLatticeStale(3, false);
    EXPECT_FALSE(records.isLatticeStale(3));
    records.setLatticeStale(3, true);
    EXPECT_TRUE(records.isLatticeStale(3));
}

TEST(ObjectRecordsTest, OperationAndFlagAreKeptApart)
{
    ObjectRecords records;
    records.setLastOperation(1, 28);
    EXPECT_TRUE(records.isLatticeStale(1));
    records.setLatticeStale(2, false);
    EXPECT_EQ(records.lastOperation(2), 0U);
    records.setLastOperation(2, 28);
    EXPECT_FALSE(records.isLatticeStale(2));
}

TEST(ObjectRecordsTest, ClearForgetsBothMaps)
{
    ObjectRecords records;
    records.setLastOperation(1, 28);
    records.setLatticeStale(1, false);
    records.setLatticeStale(2, false);
    records.clear();
    EXPECT_EQ(records.lastOperation(1), 0U);
    EXPECT_TRUE(records.isLatticeStale(1));
    EXPECT_TRUE(records.isLatticeStale(2));
}
