#pragma once

#include <QDialog>

#include <memory>

namespace Ui {

class SetViewAngleForm;

/// Asks for the angles of the view about the three axes, in degrees from -360 to 360. It opens with
/// the angles that were accepted last, in whichever window that was, and with 0 the first time.
class SetViewAngleDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit SetViewAngleDialog(QWidget *parent = nullptr);
    ~SetViewAngleDialog() override;

    double angleX() const;
    double angleY() const;
    double angleZ() const;

public Q_SLOTS:
    /// Remembers the angles for the next dialog.
    void accept() override;

private:
    std::unique_ptr<SetViewAngleForm> m_form;

    static double s_angleX;
    static double s_angleY;
    static double s_angleZ;
};

} // namespace Ui
