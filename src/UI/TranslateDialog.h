#pragma once

#include <QDialog>

#include <memory>

namespace Ui {

class TranslateForm;

/// Asks how far the view is displaced, in world units along each axis.
class TranslateDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Opens with the three given distances, each kept within -1e9 to 1e9 and to three decimals.
    TranslateDialog(double distanceX, double distanceY, double distanceZ,
                    QWidget *parent = nullptr);
    ~TranslateDialog() override;

    double distanceX() const;
    double distanceY() const;
    double distanceZ() const;

private:
    std::unique_ptr<TranslateForm> m_form;
};

} // namespace Ui
