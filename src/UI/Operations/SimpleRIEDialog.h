#pragma once

#include "Model/Materials/Material.h"

#include <QDialog>

#include <cstdint>
#include <memory>
#include <vector>

namespace Ui {
class SimpleRIEForm;
}

namespace Ui::Operations {

/// Asks for the film, the depth and the directions of a reactive ion etching.
class SimpleRIEDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit SimpleRIEDialog(QWidget *parent = nullptr);
    ~SimpleRIEDialog() override;

    /// Offers these materials, in this order, and chooses the first.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);

    /// 0 with no material to choose.
    std::uint32_t material() const;
    /// Cells, 1 or more.
    int depth() const;
    bool etchFromBelow() const;
    bool etchFromTop() const;

private:
    std::unique_ptr<SimpleRIEForm> m_form;
};

} // namespace Ui::Operations
