#pragma once

#include <QItemDelegate>

namespace Ui {

/// Edits the colours of an item view, alpha included, in a colour dialog.
class ColorItemDelegate final : public QItemDelegate
{
    Q_OBJECT

public:
    using QItemDelegate::QItemDelegate;

    /// The dialog starts with what the index displays.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    /// Takes the colour of any QColorDialog, unless it is one of createEditor() and was rejected.
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;
};

} // namespace Ui
