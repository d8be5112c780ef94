#pragma once

#include "Model/Materials/Material.h"

#include <QDialog>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class QDir;
class QLineEdit;

namespace Core::Operations {
class PhotolithographyOperation;
}

namespace Ui {
class PhotolithographyBaseDialog;
}

namespace Ui::Operations {

class MaskReceiver;

/// Asks for the film of a photolithography and for its masks. A mask is read from its file when it
/// is applied, and shown at once; a file name that is only typed has no effect.
class PhotolithographyDialog final : public QDialog
{
    Q_OBJECT

public:
    /// A mask as it was applied last. Without mask there are no bits, and the height is 0; the
    /// width may be left from a mask that was removed.
    struct Mask
    {
        /// As it stood in the field at the last Apply, also if the file could not be read.
        QString fileName;
        /// A bit a pixel, x * height + y, true for an opaque one.
        std::vector<bool> bits;
        /// Pixels, both.
        std::uint32_t width = 0;
        std::uint32_t height = 0;
    };

    /// Shows the masks over and under the volume of the operation, which outlives the dialog.
    explicit PhotolithographyDialog(Core::Operations::PhotolithographyOperation *operation,
                                    QWidget *parent = nullptr);
    /// Hands the masks to the receiver, which outlives the dialog.
    explicit PhotolithographyDialog(MaskReceiver *receiver, QWidget *parent = nullptr);
    ~PhotolithographyDialog() override;

    /// Offers these materials, in this order, and chooses the first.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);

    /// 0 with no material to choose.
    std::uint32_t material() const;
    const Mask &bottomMask() const { return m_bottom.mask; }
    const Mask &topMask() const { return m_top.mask; }

private Q_SLOTS:
    void on_tbtTopMask_clicked();
    void on_tbtBottomMask_clicked();
    void on_btnApplyTopMask_clicked();
    void on_btnApplyBottomMask_clicked();
    void on_btnRemoveTopMask_clicked();
    void on_btnRemoveBottomMask_clicked();

private:
    using ShowMask = std::function<void(const std::vector<bool> &bits, std::uint32_t width,
                                        std::uint32_t height)>;

    /// One of the two rows of controls.
    struct Side
    {
        QLineEdit *field = nullptr;
        /// What is said when the file cannot be read.
        QString notFound;
        ShowMask show;
        Mask mask;
    };

    PhotolithographyDialog(ShowMask showBottom, ShowMask showTop, QWidget *parent);

    void chooseFile(const Side &side);
    void apply(Side &side);
    static void remove(Side &side);

    /// Where the last mask file was chosen; its path ends with the name of that file.
    static QDir s_lastPath;

    std::unique_ptr<PhotolithographyBaseDialog> m_form;
    Side m_bottom;
    Side m_top;
};

} // namespace Ui::Operations
