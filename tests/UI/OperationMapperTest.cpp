#include "UI/OperationMapper.h"

#include <QAction>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

TEST(OperationMapperTest, AnActionEmitsItsIdAsDecimalText)
{
    Ui::OperationMapper mapper;
    QAction copy;
    QAction extract;
    mapper.map(&copy, 1u);
    mapper.map(&extract, 1000u);
    QSignalSpy spy(&mapper, SIGNAL(activated(const QString &)));
    extract.trigger();
    copy.trigger();
    ASSERT_EQ(spy.count(), 2);
    EXPECT_EQ(spy.at(0).at(0).toString(), "1000");
    EXPECT_EQ(spy.at(1).at(0).toString(), "1");
}

TEST(OperationMapperTest, AnActionEmitsItsText)
{
    Ui::OperationMapper mapper;
    QAction front;
    mapper.map(&front, QStringLiteral("front"));
    QSignalSpy spy(&mapper, SIGNAL(activated(const QString &)));
    front.trigger();
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), "front");
}

} // namespace
