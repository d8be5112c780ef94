#include "UI/Operations/PhotolithographyDialog.h"

#include "Core/Operations/Photolithography/PhotolithographyOperation.h"
#include "UI/Operations/MaskImage.h"
#include "UI/Operations/MaskReceiver.h"
#include "UI/Operations/MaterialChooser.h"
#include "ui_PhotolithographyBaseDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

#include <utility>

namespace Ui::Operations {

QDir PhotolithographyDialog::s_lastPath = QDir::home();

PhotolithographyDialog::PhotolithographyDialog(
    Core::Operations::PhotolithographyOperation *operation, QWidget *parent)
    : PhotolithographyDialog(
          [operation](const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height) {
              operation->setBottomMask(bits, width, height);
          },
          [operation](const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height) {
              operation->setTopMask(bits, width, height);
          },
          parent)
{}

PhotolithographyDialog::PhotolithographyDialog(MaskReceiver *receiver, QWidget *parent)
    : PhotolithographyDialog(
          [receiver](const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height) {
              receiver->showBottomMask(bits, width, height);
          },
          [receiver](const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height) {
              receiver->showTopMask(bits, width, height);
          },
          parent)
{}

PhotolithographyDialog::PhotolithographyDialog(ShowMask showBottom, ShowMask showTop,
                                               QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<PhotolithographyBaseDialog>())
{
    m_form->setupUi(this);
    m_bottom.field = m_form->ledBottomMask;
    m_bottom.notFound = QStringLiteral("Bottom mask not found error!<br/>Please verify if the "
                                       "filename is correct and you have the correct permissions.");
    m_bottom.show = std::move(showBottom);
    m_top.field = m_form->ledTopMask;
    m_top.notFound = QStringLiteral("Top Mask file not found!<br/>Please verify the filename is "
                                    "correct and you have the correct permissions.");
    m_top.show = std::move(showTop);
}

PhotolithographyDialog::~PhotolithographyDialog() = default;

void PhotolithographyDialog::setMaterials(const std::vector<Model::Materials::Material> &materials)
{
    fillMaterialChooser(*m_form->cbxMaterial, materials);
}

std::uint32_t PhotolithographyDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

void PhotolithographyDialog::on_tbtTopMask_clicked()
{
    chooseFile(m_top);
}

void PhotolithographyDialog::on_tbtBottomMask_clicked()
{
    chooseFile(m_bottom);
}

void PhotolithographyDialog::on_btnApplyTopMask_clicked()
{
    apply(m_top);
}

void PhotolithographyDialog::on_btnApplyBottomMask_clicked()
{
    apply(m_bottom);
}

void PhotolithographyDialog::on_btnRemoveTopMask_clicked()
{
    remove(m_top);
}

void PhotolithographyDialog::on_btnRemoveBottomMask_clicked()
{
    remove(m_bottom);
}

void PhotolithographyDialog::chooseFile(const Side &side)
{
    const QString name = QFileDialog::getOpenFileName(
        this, QStringLiteral("Choose Mask File"), s_lastPath.absolutePath(),
        QStringLiteral("Image Files (*.png *.jpg *.bmp)"));
    if (name.isEmpty())
        return;
    side.field->setText(name);
    // The path of the file, not of its folder: the next question starts at the file itself.
    s_lastPath.setPath(name);
}

void PhotolithographyDialog::apply(Side &side)
{
    side.mask.fileName = side.field->text();
    MaskImage image;
    if (!image.load(side.mask.fileName)) {
        QMessageBox(QMessageBox::Warning, QString(), side.notFound, QMessageBox::Ok, this).exec();
        return;
    }
    side.mask.bits = image.bits();
    side.mask.width = image.width();
    side.mask.height = image.height();
    side.show(side.mask.bits, side.mask.width, side.mask.height);
}

void PhotolithographyDialog::remove(Side &side)
{
    side.mask.bits.clear();
    // The width stays: without height or bits there is no mask whatever it is.
    side.mask.height = 0;
    side.show(side.mask.bits, 0, 0);
}

} // namespace Ui::Operations
