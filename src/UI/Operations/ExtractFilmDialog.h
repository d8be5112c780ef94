#pragma once

#include "Model/Materials/Material.h"

#include <QDialog>

#include <cstdint>
#include <memory>
#include <vector>

namespace Ui {
class ExtractFilmForm;
}

namespace Ui::Operations {

/// Asks which film is extracted, and whether it is turned over then.
class ExtractFilmDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit ExtractFilmDialog(QWidget *parent = nullptr);
    ~ExtractFilmDialog() override;

    /// Offers these materials, in this order, and chooses the first.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);

    /// The id of the film's material; 0 with no material to choose.
    std::uint32_t film() const;
    bool invertsFilm() const;

private:
    std::unique_ptr<ExtractFilmForm> m_form;
};

} // namespace Ui::Operations
