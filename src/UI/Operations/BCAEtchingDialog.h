#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class BCAEtchingBaseDialog;
}

namespace Ui::Operations {

/// Asks for the depth of a wet etching of the silicon crystal, by bonds or by rates.
class BCAEtchingDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit BCAEtchingDialog(QWidget *parent = nullptr);
    ~BCAEtchingDialog() override;

    /// Units of the crystal, 0 or more.
    double depth() const;

private:
    std::unique_ptr<BCAEtchingBaseDialog> m_form;
};

} // namespace Ui::Operations
