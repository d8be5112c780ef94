#include "UI/MaterialTableViewItem.h"

#include "Model/Materials/MaterialFactory.h"
#include "UI/MaterialColor.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Ui {

using Model::Materials::Material;

namespace {

/// 1 is silicon, and 2 stays unused on purpose.
constexpr std::uint32_t FirstNewId = 3;

/// The nearest float. Numbers for which that is none are infinite: a conversion alone would leave
/// them open.
float narrowed(double number)
{
    using Float = std::numeric_limits<float>;
    // Half a step above the largest float.
    constexpr double Infinite = 0x1.ffffffp127;
    if (std::abs(number) >= Infinite)
        return number < 0.0 ? -Float::infinity() : Float::infinity();
    constexpr double Largest = Float::max();
    return static_cast<float>(std::clamp(number, -Largest, Largest));
}

QString headerOf(int column)
{
    switch (column) {
    case MaterialTableViewItem::Id:
        return QStringLiteral("Material Id");
    case MaterialTableViewItem::Name:
        return QStringLiteral("Material Name");
    case MaterialTableViewItem::Color:
        return QStringLiteral("Color");
    case MaterialTableViewItem::Density:
        return QStringLiteral("Density");
    case MaterialTableViewItem::YoungModulus:
        return QStringLiteral("Young Modulus");
    case MaterialTableViewItem::PoissonRatio:
        return QStringLiteral("Poisson Ratio");
    default:
        return QStringLiteral("Column %1").arg(column);
    }
}

} // namespace

MaterialTableViewItem::MaterialTableViewItem(QObject *parent)
    : QAbstractTableModel(parent),
      m_materials(Model::Materials::MaterialFactory::instance()->materials())
{}

int MaterialTableViewItem::rowCount(const QModelIndex & /*parent*/) const
{
    return static_cast<int>(m_materials.size());
}

int MaterialTableViewItem::columnCount(const QModelIndex & /*parent*/) const
{
    return ColumnCount;
}

bool MaterialTableViewItem::isRow(const QModelIndex &index) const
{
    return index.isValid() && index.row() < rowCount();
}

QVariant MaterialTableViewItem::data(const QModelIndex &index, int role) const
{
    if (!isRow(index) || role != Qt::DisplayRole)
        return {};
    const Material &material = m_materials[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case Id:
        return material.id();
    case Name:
        return material.name();
    case Color:
        return colorOf(material.color());
    case Density:
        return material.density();
    case YoungModulus:
        return material.youngModulus();
    case PoissonRatio:
        return material.poissonRatio();
    default:
        return {};
    }
}

bool MaterialTableViewItem::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!isRow(index) || role != Qt::EditRole)
        return false;
    Material &material = m_materials[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case Name:
        material.setName(value.toString());
        break;
    case Color:
        material.setColor(componentsOf(value.value<QColor>()).data());
        break;
    case Density:
        material.setDensity(narrowed(value.toDouble()));
        break;
    case YoungModulus:
        material.setYoungModulus(narrowed(value.toDouble()));
        break;
    case PoissonRatio:
        material.setPoissonRatio(narrowed(value.toDouble()));
        break;
    default:
        return false;
    }
    Q_EMIT dataChanged(index, index, {Qt::EditRole});
    return true;
}

QVariant MaterialTableViewItem::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return QStringLiteral("%1").arg(section + 1);
    return headerOf(section);
}

bool MaterialTableViewItem::insertRows(int /*row*/, int count, const QModelIndex &parent)
{
    if (count < 1)
        return false;
    beginInsertRows(parent, rowCount(), rowCount() + count - 1);
    for (int i = 0; i < count; ++i)
        m_materials.emplace_back(freeId(), QStringLiteral("New Material"), 1.0F, 1.0F, 1.0F,
                                 nullptr);
    endInsertRows();
    return true;
}

bool MaterialTableViewItem::insertColumns(int /*column*/, int /*count*/,
                                          const QModelIndex & /*parent*/)
{
    return false;
}

bool MaterialTableViewItem::removeRows(int row, int count, const QModelIndex &parent)
{
    if (count >= rowCount() || row < 0 || count < 1 || row > rowCount() - count)
        return false;
    beginRemoveRows(parent, row, row + count - 1);
    const auto first = m_materials.begin() + row;
    m_materials.erase(first, first + count);
    endRemoveRows();
    return true;
}

Qt::ItemFlags MaterialTableViewItem::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    // The column is held against the number of rows on purpose: with fewer than six materials the
    // last columns cannot be edited.
    if (index.column() > Id && index.column() < rowCount())
        flags |= Qt::ItemIsEditable;
    return flags;
}

std::uint32_t MaterialTableViewItem::freeId() const
{
    std::uint32_t id = FirstNewId;
    while (std::any_of(m_materials.begin(), m_materials.end(),
                       [id](const Material &material) { return material.id() == id; }))
        ++id;
    return id;
}

} // namespace Ui
