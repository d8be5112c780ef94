#pragma once

#include "Model/Materials/Material.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <vector>

namespace Ui {

/// The model behind the table of materials: a copy of the registry, one material a row, that is
/// edited apart from it. Values are not checked.
class MaterialTableViewItem final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        Id = 0,
        Name = 1,
        Color = 2,
        Density = 3,
        YoungModulus = 4,
        PoissonRatio = 5,
        ColumnCount = 6
    };

    /// Takes the materials of the registry, in ascending id order.
    explicit MaterialTableViewItem(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /// The value of the column for Qt::DisplayRole only, so that editors open empty.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    /// For Qt::EditRole only, and not for the id. A number beyond the range of a float becomes
    /// infinite.
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    /// Appends new materials behind the last row, whatever `row` says. Each gets the lowest id from
    /// 3 on that no row has. False for a count below 1.
    bool insertRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    /// There are no other columns: false.
    bool insertColumns(int column, int count, const QModelIndex &parent = QModelIndex()) override;
    /// At least one material stays: false, with nothing removed, otherwise, and for rows that are
    /// not there.
    bool removeRows(int row, int count, const QModelIndex &parent = QModelIndex()) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    const std::vector<Model::Materials::Material> &materials() const { return m_materials; }

private:
    bool isRow(const QModelIndex &index) const;
    std::uint32_t freeId() const;

    std::vector<Model::Materials::Material> m_materials;
};

} // namespace Ui
