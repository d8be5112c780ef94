#pragma once

#include <QDialog>

#include <memory>

namespace Ui {

class SetZoomForm;

/// Asks for the zoom as a percentage of the natural scale: 100 is one world unit a pixel, more
/// shows the objects larger. The view's own factor is 100 divided by this value.
class SetZoomDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Opens with the given percentage, kept within 0.1 to 100000 and to two decimals.
    explicit SetZoomDialog(double percentage, QWidget *parent = nullptr);
    ~SetZoomDialog() override;

    /// Never below 0.1, so that it can be divided by.
    double percentage() const;

private:
    std::unique_ptr<SetZoomForm> m_form;
};

} // namespace Ui
