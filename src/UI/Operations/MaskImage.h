#pragma once

#include <cstdint>
#include <vector>

class QImage;
class QString;

namespace Ui::Operations {

/// A photomask as an image file draws it: one pixel is one column of cells. Pixels of exact red and
/// exact black are opaque, all others clear; how transparent they are plays no part.
class MaskImage final
{
public:
    /// No pixels.
    MaskImage() = default;
    explicit MaskImage(const QImage &image);

    /// Reads an image file of any format that Qt knows. False, with everything as it was, if there
    /// is none or it cannot be read.
    bool load(const QString &fileName);

    /// width() * height() bits, true for an opaque pixel. Bit x * height() + y is the pixel at x in
    /// row y, where row 0 is the lowest of the image.
    const std::vector<bool> &bits() const { return m_bits; }
    /// Pixels, both.
    std::uint32_t width() const { return m_width; }
    std::uint32_t height() const { return m_height; }

private:
    std::vector<bool> m_bits;
    std::uint32_t m_width = 0;
    std::uint32_t m_height = 0;
};

} // namespace Ui::Operations
