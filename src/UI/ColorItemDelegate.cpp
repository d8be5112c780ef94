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
        // The view has put it where the cell is, but by the numbers of the screen; like any other
        // dialog it belongs over its window.
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
    const auto *dialog = dynamic_cast<ColorEditor *>(editor);
    if (!dialog || dialog->isRejected())
        return;
    model->setItemData(index, {{Qt::EditRole, dialog->currentColor()}});
}

} // namespace Ui
