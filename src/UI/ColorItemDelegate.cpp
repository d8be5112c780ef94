#include "UI/ColorItemDelegate.h"

#include <QColorDialog>
#include <QMap>
#include <QShowEvent>

namespace Ui {

namespace {

/// A view takes the colour of its editor when the editor hides, by whatever button, so the editor
/// remembers that it was rejected.
class ColorEditor final : public QColorDialog
{
public:
    ColorEditor(const QColor &color, QWidget *parent) : QColorDialog(parent)
    {
        // Before the colour, whose alpha would be dropped.
        setOption(QColorDialog::ShowAlphaChannel);
        setCurrentColor(color);
    }

    bool isRejected() const { return m_rejected; }

protected:
    void done(int result) override
    {
        m_rejected = result != Accepted;
        QColorDialog::done(result);
    }
    void showEvent(QShowEvent *event) override
    {
        // The view moves an editor to its cell, in coordinates of the view. This one is a window,
        // for which they are coordinates of the screen: it would stand anywhere. As one that
        // nobody has moved it is put over its parent's window, like any other dialog.
        setAttribute(Qt::WA_Moved, false);
        QColorDialog::showEvent(event);
    }

private:
    bool m_rejected = false;
};

} // namespace

QWidget *ColorItemDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                         const QModelIndex &index) const
{
    return new ColorEditor(index.data(Qt::DisplayRole).value<QColor>(), parent);
}

void ColorItemDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                     const QModelIndex &index) const
{
    const auto *dialog = qobject_cast<QColorDialog *>(editor);
    if (!dialog)
        return;
    const auto *own = dynamic_cast<const ColorEditor *>(dialog);
    if (own && own->isRejected())
        return;
    model->setItemData(index, {{Qt::EditRole, dialog->currentColor()}});
}

} // namespace Ui
