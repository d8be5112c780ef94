#pragma once

#include "Util/Vector4D.h"

#include <QDialog>

#include <cstdint>
#include <memory>

class QPushButton;

namespace Ui {
class ChangeColorsForm;
}

namespace Ui::Input {

/// Edits four rows of the colour table: background, grid, object and outline.
/// Works on copies; the table changes when the dialog is accepted, and whoever runs the dialog
/// repaints the views then.
class ChangeColorsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Opens with the current scheme and its colours.
    explicit ChangeColorsDialog(QWidget *parent = nullptr);
    ~ChangeColorsDialog() override;

public Q_SLOTS:
    void loadDefaultColor();
    void loadLowColor();
    void changeBgColor();
    void changeGridColor();
    void changeObjectColor();
    void changeOutlineColor();

    /// Makes the chosen scheme the current one. The custom scheme takes the four colours whichever
    /// scheme was chosen.
    void accept() override;

private:
    /// Makes `scheme` the chosen one, takes the working copies from it and shows them.
    void loadScheme(std::uint32_t scheme);
    /// Asks for another colour; with one, the chosen scheme becomes the custom one.
    void changeColor(Util::Vector4D &color, QPushButton &button);

    std::unique_ptr<ChangeColorsForm> m_form;
    std::uint32_t m_scheme;
    Util::Vector4D m_backgroundColor;
    Util::Vector4D m_gridColor;
    Util::Vector4D m_objectColor;
    Util::Vector4D m_outlineColor;
};

} // namespace Ui::Input
