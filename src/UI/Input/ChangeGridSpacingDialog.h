#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class ChangeGridSpacingForm;
}

namespace Ui::Input {

/// Asks for the distance between the lines of the view's grid, in drawing units.
class ChangeGridSpacingDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Opens with the given spacing, kept within 0 to 1e9 and to four decimals.
    explicit ChangeGridSpacingDialog(double spacing, QWidget *parent = nullptr);
    ~ChangeGridSpacingDialog() override;

    /// 0 is a value that the user can enter.
    double spacing() const;

private:
    std::unique_ptr<ChangeGridSpacingForm> m_form;
};

} // namespace Ui::Input
