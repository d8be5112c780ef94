#include "UI/Operations/MaskImage.h"

#include <QColor>
#include <QImage>
#include <QString>
#include <QVector>

#include <algorithm>

namespace Ui::Operations {

namespace {

constexpr int TableSize = 256;

bool isOpaque(QRgb pixel)
{
    constexpr QRgb channels = 0x00ffffff;
    constexpr QRgb red = 0x00ff0000;
    constexpr QRgb black = 0x00000000;
    const QRgb color = pixel & channels;
    return color == red || color == black;
}

/// A damaged file may refer to more entries than its colour table has; those are clear.
std::vector<bool> opaqueEntries(const QVector<QRgb> &table)
{
    std::vector<bool> opaque(TableSize);
    const int entries = std::min(table.size(), TableSize);
    for (int i = 0; i < entries; ++i)
        opaque[std::size_t(i)] = isOpaque(table[i]);
    return opaque;
}

/// Calls `mark` with x and the row, from the top, of each opaque pixel. Agrees with
/// QImage::pixel(), and reads the common formats much faster.
template <typename Mark>
void scan(const QImage &image, const Mark &mark)
{
    const int width = image.width();
    const auto scanRows = [&](const auto &isOpaqueAt) {
        for (int row = 0; row < image.height(); ++row) {
            const uchar *line = image.constScanLine(row);
            for (int x = 0; x < width; ++x)
                if (isOpaqueAt(line, x, row))
                    mark(x, row);
        }
    };
    const std::vector<bool> entries = opaqueEntries(image.colorTable());
    switch (image.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        scanRows([](const uchar *line, int x, int) {
            return isOpaque(reinterpret_cast<const QRgb *>(line)[x]);
        });
        break;
    case QImage::Format_Grayscale8:
        scanRows([](const uchar *line, int x, int) { return line[x] == 0; });
        break;
    case QImage::Format_Indexed8:
        scanRows([&](const uchar *line, int x, int) { return entries[line[x]]; });
        break;
    case QImage::Format_Mono:
        scanRows([&](const uchar *line, int x, int) {
            return entries[std::size_t(line[x / 8] >> (7 - x % 8) & 1)];
        });
        break;
    case QImage::Format_MonoLSB:
        scanRows([&](const uchar *line, int x, int) {
            return entries[std::size_t(line[x / 8] >> (x % 8) & 1)];
        });
        break;
    default:
        scanRows([&](const uchar *, int x, int row) { return isOpaque(image.pixel(x, row)); });
        break;
    }
}

} // namespace

MaskImage::MaskImage(const QImage &image)
    : m_bits(std::size_t(image.width()) * std::size_t(image.height())),
      m_width(std::uint32_t(image.width())),
      m_height(std::uint32_t(image.height()))
{
    const auto height = std::size_t{m_height};
    scan(image, [&](int x, int row) {
        m_bits[std::size_t(x) * height + (height - 1 - std::size_t(row))] = true;
    });
}

bool MaskImage::load(const QString &fileName)
{
    QImage image;
    if (!image.load(fileName))
        return false;
    *this = MaskImage(image);
    return true;
}

} // namespace Ui::Operations
