#pragma once

#include <array>

namespace Model {

/// Remembers the modelview matrix and the depth of its stack, and puts both back however many
/// pushes and pops the objects drawn in between left open. Some do so on purpose: a cell volume
/// drawn without its solids leaves a matrix pushed, a smooth one pops one more than it pushed.
/// Needs a current OpenGL context; leaves the matrix mode at modelview.
class MatrixKeeper final
{
public:
    MatrixKeeper();
    MatrixKeeper(const MatrixKeeper &) = delete;
    MatrixKeeper &operator=(const MatrixKeeper &) = delete;

    void restore() const;

private:
    int m_depth = 0;
    std::array<double, 16> m_matrix{};
};

} // namespace Model
