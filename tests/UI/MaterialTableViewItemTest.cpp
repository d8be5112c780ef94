#include "UI/MaterialTableViewItem.h"

#include "Model/Materials/MaterialFactory.h"

#include <QBuffer>
#include <QColor>
#include <QFont>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace {

using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Ui::MaterialTableViewItem;

class MaterialTableViewItemTest : public testing::Test
{
protected:
    void TearDown() override { MaterialFactory::instance()->loadDefaultMaterials(); }

    /// Adds materials to the registry, as a user's file may bring them.
    static void enterMaterials(const std::vector<std::uint32_t> &ids)
    {
        QByteArray text = "<Materials>";
        for (const std::uint32_t id : ids)
            text += "<Material material-id=\"" + QByteArray::number(id) + "\" name=\"M\"/>";
        text += "</Materials>";
        QBuffer buffer(&text);
        buffer.open(QIODevice::ReadOnly);
        MaterialFactory::instance()->readMaterials(buffer);
    }
    static std::unique_ptr<MaterialTableViewItem> make()
    {
        return std::make_unique<MaterialTableViewItem>();
    }
    /// A model of the first so many materials.
    static std::unique_ptr<MaterialTableViewItem> makeOf(int rows)
    {
        auto model = make();
        EXPECT_TRUE(model->removeRows(rows, model->rowCount() - rows));
        EXPECT_EQ(model->rowCount(), rows);
        return model;
    }
    static std::array<float, 4> colorOf(const Material &material)
    {
        std::array<float, 4> color{};
        std::copy_n(material.color(), 4, color.begin());
        return color;
    }
    static std::vector<std::uint32_t> idsOf(const MaterialTableViewItem &model)
    {
        std::vector<std::uint32_t> ids;
        for (const Material &material : model.materials())
            ids.push_back(material.id());
        return ids;
    }
};

constexpr int AllRoles[] = {Qt::DisplayRole,
                            Qt::DecorationRole,
                            Qt::EditRole,
                            Qt::ToolTipRole,
                            Qt::StatusTipRole,
                            Qt::WhatsThisRole,
                            Qt::FontRole,
                            Qt::TextAlignmentRole,
                            Qt::BackgroundRole,
                            Qt::ForegroundRole,
                            Qt::CheckStateRole,
                            Qt::AccessibleTextRole,
                            Qt::SizeHintRole,
                            Qt::InitialSortOrderRole,
                            Qt::UserRole,
                            Qt::UserRole + 1,
                            -1};

TEST_F(MaterialTableViewItemTest, HoldsTheRegistryInAscendingOrderOfIds)
{
    const auto model = make();
    EXPECT_EQ(model->rowCount(), 15);
    EXPECT_EQ(model->columnCount(), 6);
    EXPECT_EQ(idsOf(*model),
              (std::vector<std::uint32_t>{1, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
}

TEST_F(MaterialTableViewItemTest, ShowsEachValueInItsColumn)
{
    const auto model = make();
    const auto shown = [&](int column) { return model->data(model->index(3, column)); };
    EXPECT_EQ(shown(0), QVariant(5U));
    EXPECT_EQ(shown(1), QVariant("Cu (bulk)"));
    // Truncated: 0.3 is 76, not 77.
    EXPECT_EQ(shown(2).value<QColor>(), QColor(255, 204, 76, 255));
    EXPECT_EQ(shown(3), QVariant(8960.0F));
    EXPECT_EQ(shown(4), QVariant(128e9F));
    EXPECT_EQ(shown(5), QVariant(0.36F));
    EXPECT_EQ(static_cast<QMetaType::Type>(shown(2).type()), QMetaType::QColor);
    EXPECT_EQ(static_cast<QMetaType::Type>(shown(4).type()), QMetaType::Float);
}

TEST_F(MaterialTableViewItemTest, ShowsTheAlphaOfAColour)
{
    Material gold = MaterialFactory::instance()->material(9);
    const float color[] = {0.0F, 0.999F, 0.5F, 0.25F};
    gold.setColor(color);
    MaterialFactory::instance()->updateMaterial(gold);
    const auto model = make();
    EXPECT_EQ(model->data(model->index(7, 2)).value<QColor>(), QColor(0, 254, 127, 63));
}

TEST_F(MaterialTableViewItemTest, AnswersTheDisplayRoleOnly)
{
    const auto model = make();
    for (int column = 0; column < 6; ++column)
        for (const int role : AllRoles)
            EXPECT_EQ(model->data(model->index(0, column), role).isValid(), role == Qt::DisplayRole)
                << "column " << column << ", role " << role;
}

TEST_F(MaterialTableViewItemTest, AnIndexThatIsNotThereHasNoValue)
{
    auto model = make();
    EXPECT_FALSE(model->data(QModelIndex()).isValid());
    EXPECT_FALSE(model->index(15, 0).isValid());
    EXPECT_FALSE(model->index(0, 6).isValid());
    // One that was there.
    const QModelIndex last = model->index(14, 1);
    ASSERT_TRUE(model->removeRows(14, 1));
    EXPECT_FALSE(model->data(last).isValid());
    EXPECT_FALSE(model->setData(last, "late"));
}

TEST_F(MaterialTableViewItemTest, HeadersNameTheColumnsAndCountTheRows)
{
    const auto model = make();
    const QStringList names{"Material Id", "Material Name", "Color",
                            "Density",     "Young Modulus", "Poisson Ratio"};
    for (int section = 0; section < 6; ++section)
        EXPECT_EQ(model->headerData(section, Qt::Horizontal), QVariant(names[section]));
    EXPECT_EQ(model->headerData(6, Qt::Horizontal), QVariant("Column 6"));
    EXPECT_EQ(model->headerData(99, Qt::Horizontal), QVariant("Column 99"));
    EXPECT_EQ(model->headerData(0, Qt::Vertical), QVariant("1"));
    EXPECT_EQ(model->headerData(14, Qt::Vertical), QVariant("15"));
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical})
        for (const int role : AllRoles)
            EXPECT_EQ(model->headerData(1, orientation, role).isValid(), role == Qt::DisplayRole);
}

TEST_F(MaterialTableViewItemTest, AllButTheIdCanBeEditedWithManyMaterials)
{
    const auto model = make();
    for (int column = 0; column < 6; ++column)
        EXPECT_EQ(model->flags(model->index(2, column)),
                  Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren |
                      (column > 0 ? Qt::ItemIsEditable : Qt::NoItemFlags));
    EXPECT_EQ(model->flags(QModelIndex()), Qt::NoItemFlags);
}

TEST_F(MaterialTableViewItemTest, WithFewMaterialsTheLastColumnsCannotBeEdited)
{
    for (int rows = 1; rows <= 7; ++rows) {
        const auto model = makeOf(rows);
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < 6; ++column)
                EXPECT_EQ(model->flags(model->index(row, column)).testFlag(Qt::ItemIsEditable),
                          column > 0 && column < rows)
                    << rows << " rows, column " << column;
    }
}

TEST_F(MaterialTableViewItemTest, EachValueButTheIdCanBeSet)
{
    const auto model = make();
    QSignalSpy changes(model.get(), &QAbstractItemModel::dataChanged);
    const QVariant values[] = {QVariant(), "Copper", QColor(51, 102, 255, 128), "2.5", 3, -0.25};
    for (int column = 1; column < 6; ++column) {
        const QModelIndex index = model->index(3, column);
        EXPECT_TRUE(model->setData(index, values[column]));
        ASSERT_EQ(changes.size(), column);
        EXPECT_EQ(changes.back()[0].toModelIndex(), index);
        EXPECT_EQ(changes.back()[1].toModelIndex(), index);
        EXPECT_EQ(changes.back()[2].value<QVector<int>>(), QVector<int>{Qt::EditRole});
    }
    const Material &copper = model->materials()[3];
    EXPECT_EQ(copper.id(), 5U);
    EXPECT_EQ(copper.name(), "Copper");
    EXPECT_EQ(colorOf(copper), (std::array<float, 4>{0.2F, 0.4F, 1.0F, 128 / 255.0F}));
    EXPECT_EQ(copper.density(), 2.5F);
    EXPECT_EQ(copper.youngModulus(), 3.0F);
    EXPECT_EQ(copper.poissonRatio(), -0.25F);
    // The registry is as it was.
    EXPECT_EQ(MaterialFactory::instance()->material(5).name(), "Cu (bulk)");
}

TEST_F(MaterialTableViewItemTest, TheIdCannotBeSet)
{
    const auto model = make();
    QSignalSpy changes(model.get(), &QAbstractItemModel::dataChanged);
    EXPECT_FALSE(model->setData(model->index(3, 0), 99));
    EXPECT_EQ(model->materials()[3].id(), 5U);
    EXPECT_TRUE(changes.isEmpty());
}

TEST_F(MaterialTableViewItemTest, OnlyTheEditRoleSets)
{
    const auto model = make();
    QSignalSpy changes(model.get(), &QAbstractItemModel::dataChanged);
    for (const int role : AllRoles)
        if (role != Qt::EditRole) {
            EXPECT_FALSE(model->setData(model->index(3, 1), "Copper", role)) << role;
        }
    EXPECT_FALSE(model->setData(QModelIndex(), "Copper"));
    EXPECT_EQ(model->materials()[3].name(), "Cu (bulk)");
    EXPECT_TRUE(changes.isEmpty());
}

TEST_F(MaterialTableViewItemTest, EmptyEditorsSetAnEmptyNameAndZeros)
{
    const auto model = make();
    for (const int column : {1, 3, 4, 5})
        EXPECT_TRUE(model->setData(model->index(0, column), QString()));
    const Material &material = model->materials()[0];
    EXPECT_EQ(material.name(), "");
    EXPECT_EQ(material.density(), 0.0F);
    EXPECT_EQ(material.youngModulus(), 0.0F);
    EXPECT_EQ(material.poissonRatio(), 0.0F);
}

TEST_F(MaterialTableViewItemTest, ATextThatIsNoNumberIsZero)
{
    const auto model = make();
    EXPECT_TRUE(model->setData(model->index(0, 3), "heavy"));
    EXPECT_EQ(model->materials()[0].density(), 0.0F);
}

TEST_F(MaterialTableViewItemTest, ANumberBeyondAFloatIsInfinite)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float largest = std::numeric_limits<float>::max();
    constexpr double step = 0x1p104; // between the largest floats
    const std::pair<QVariant, float> numbers[] = {
        {"1e39", infinity},
        {"-1e39", -infinity},
        {std::numeric_limits<double>::max(), infinity},
        {-std::numeric_limits<double>::infinity(), -infinity},
        {largest + step / 2, infinity},
        {-(largest + step / 2), -infinity},
        // These are still nearer to it than to what would come behind it.
        {largest + step / 4, largest},
        {-(largest + step / 4), -largest},
        {"3.4028235e38", largest},
        {double{largest}, largest},
    };
    const auto model = make();
    for (const auto &[number, expected] : numbers) {
        for (const int column : {3, 4, 5})
            EXPECT_TRUE(model->setData(model->index(0, column), number));
        const Material &material = model->materials()[0];
        EXPECT_EQ(material.density(), expected);
        EXPECT_EQ(material.youngModulus(), expected);
        EXPECT_EQ(material.poissonRatio(), expected);
    }
    EXPECT_TRUE(model->setData(model->index(0, 3), std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(std::isnan(model->materials()[0].density()));
}

TEST_F(MaterialTableViewItemTest, AColourMayComeAsItsName)
{
    const auto model = make();
    EXPECT_TRUE(model->setData(model->index(0, 2), "#80ff0000"));
    EXPECT_EQ(colorOf(model->materials()[0]), (std::array<float, 4>{1, 0, 0, 128 / 255.0F}));
}

TEST_F(MaterialTableViewItemTest, WhatIsNoColourIsTakenByTheChannelsOfAnInvalidOne)
{
    for (const QVariant &value : {QVariant("no colour"), QVariant(), QVariant(3.5)}) {
        const auto model = make();
        EXPECT_TRUE(model->setData(model->index(0, 2), value));
        EXPECT_EQ(colorOf(model->materials()[0]), (std::array<float, 4>{0, 0, 0, 1}));
    }
}

TEST_F(MaterialTableViewItemTest, EachWholeChannelComesBackAsItWasSet)
{
    const auto model = make();
    for (int whole = 0; whole < 256; ++whole) {
        const QColor color(whole, 255 - whole, whole / 2, 255 - whole / 2);
        model->setData(model->index(0, 2), color);
        EXPECT_EQ(model->data(model->index(0, 2)).value<QColor>(), color);
    }
}

TEST_F(MaterialTableViewItemTest, NewMaterialsGetTheIdsBehindTheBuiltInOnes)
{
    const auto model = make();
    EXPECT_TRUE(model->insertRows(0, 1));
    EXPECT_EQ(model->materials().back().id(), 17U);
    EXPECT_TRUE(model->insertRows(0, 1));
    EXPECT_EQ(model->materials().back().id(), 18U);
    EXPECT_EQ(model->rowCount(), 17);
}

TEST_F(MaterialTableViewItemTest, ANewMaterialGetsTheFirstGapFromThreeOn)
{
    auto model = make();
    // Without Al, whose id is 4, and without silicon.
    ASSERT_TRUE(model->removeRows(2, 1));
    ASSERT_TRUE(model->removeRows(0, 1));
    EXPECT_TRUE(model->insertRows(0, 3));
    const std::vector<std::uint32_t> ids = idsOf(*model);
    EXPECT_EQ(std::vector<std::uint32_t>(ids.end() - 3, ids.end()),
              (std::vector<std::uint32_t>{4, 17, 18}));
}

TEST_F(MaterialTableViewItemTest, NewMaterialsPassOverIdsOfTheUsersFile)
{
    enterMaterials({17, 18, 20, 2000});
    const auto model = make();
    EXPECT_TRUE(model->insertRows(0, 2));
    const std::vector<std::uint32_t> ids = idsOf(*model);
    EXPECT_EQ(ids[ids.size() - 2], 19U);
    EXPECT_EQ(ids.back(), 21U);
}

TEST_F(MaterialTableViewItemTest, NewMaterialsHaveTheirFirstValuesAndStandAtTheEnd)
{
    const auto model = make();
    for (const int row : {0, 7, 15, -5, 1000}) {
        const int before = model->rowCount();
        QSignalSpy inserted(model.get(), &QAbstractItemModel::rowsInserted);
        EXPECT_TRUE(model->insertRows(row, 2));
        ASSERT_EQ(inserted.size(), 1);
        // The views hear where the rows are.
        EXPECT_EQ(inserted[0][1].toInt(), before);
        EXPECT_EQ(inserted[0][2].toInt(), before + 1);
        ASSERT_EQ(model->rowCount(), before + 2);
        for (int added = before; added < before + 2; ++added) {
            const Material &material = model->materials()[static_cast<std::size_t>(added)];
            EXPECT_EQ(material.name(), "New Material");
            EXPECT_EQ(material.density(), 1.0F);
            EXPECT_EQ(material.youngModulus(), 1.0F);
            EXPECT_EQ(material.poissonRatio(), 1.0F);
            EXPECT_EQ(colorOf(material), (std::array<float, 4>{0.5F, 0.5F, 0.5F, 1.0F}));
        }
    }
    const std::vector<std::uint32_t> ids = idsOf(*model);
    EXPECT_EQ(std::set<std::uint32_t>(ids.begin(), ids.end()).size(), ids.size());
}

TEST_F(MaterialTableViewItemTest, ACountBelowOneInsertsNothing)
{
    const auto model = make();
    EXPECT_FALSE(model->insertRows(0, 0));
    EXPECT_FALSE(model->insertRows(0, -1));
    EXPECT_EQ(model->rowCount(), 15);
}

TEST_F(MaterialTableViewItemTest, ColumnsCannotBeInserted)
{
    const auto model = make();
    EXPECT_FALSE(model->insertColumns(0, 1));
    EXPECT_EQ(model->columnCount(), 6);
}

TEST_F(MaterialTableViewItemTest, RemovedRowsLeaveTheOthersInOrder)
{
    const auto model = make();
    QSignalSpy removed(model.get(), &QAbstractItemModel::rowsRemoved);
    EXPECT_TRUE(model->removeRows(1, 10));
    EXPECT_EQ(idsOf(*model), (std::vector<std::uint32_t>{1, 13, 14, 15, 16}));
    EXPECT_TRUE(model->removeRows(3, 2));
    EXPECT_EQ(idsOf(*model), (std::vector<std::uint32_t>{1, 13, 14}));
    EXPECT_EQ(removed.size(), 2);
}

TEST_F(MaterialTableViewItemTest, AsManyRowsAsThereAreCannotBeRemoved)
{
    const auto model = make();
    EXPECT_FALSE(model->removeRows(0, 15));
    EXPECT_FALSE(model->removeRows(0, 16));
    EXPECT_EQ(model->rowCount(), 15);
    EXPECT_TRUE(model->removeRows(0, 14));
    EXPECT_FALSE(model->removeRows(0, 1));
    EXPECT_EQ(idsOf(*model), std::vector<std::uint32_t>{16});
}

TEST_F(MaterialTableViewItemTest, RowsThatAreNotThereCannotBeRemoved)
{
    const auto model = make();
    EXPECT_FALSE(model->removeRows(-1, 2));
    EXPECT_FALSE(model->removeRows(14, 2));
    EXPECT_FALSE(model->removeRows(15, 1));
    EXPECT_FALSE(model->removeRows(0, 0));
    EXPECT_FALSE(model->removeRows(0, -3));
    EXPECT_EQ(model->rowCount(), 15);
}

} // namespace
