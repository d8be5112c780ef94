#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QIODevice>
#include <QImage>
#include <QString>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <vector>

/// Mask images for the tests, in the working directory of the process.
namespace MaskFiles {

inline QString path(const QString &name)
{
    return QDir::current().filePath(name);
}

/// Rows from the top: '#' is black, 'r' red, anything else white.
inline QImage imageOf(const std::vector<const char *> &rows)
{
    QImage image(int(QByteArray(rows.front()).size()), int(rows.size()), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const char kind = rows[std::size_t(y)][x];
            image.setPixel(x, y, kind == '#' ? 0xff000000 : kind == 'r' ? 0xffff0000 : 0xffffffff);
        }
    }
    return image;
}

inline void write(const QString &name, const QByteArray &bytes)
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + name.toStdString());
}

inline QByteArray bytesOf(const QString &name)
{
    QFile file(path(name));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + name.toStdString());
    return file.readAll();
}

/// A bitmap file of 24 bits a pixel, of that size, that ends with its header.
inline QByteArray bmpHeader(std::int32_t width, std::int32_t height)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out.writeRawData("BM", 2);
    out << quint32(54) << quint32(0) << quint32(54);
    out << quint32(40) << qint32(width) << qint32(height) << quint16(1) << quint16(24);
    out << quint32(0) << quint32(0) << quint32(2835) << quint32(2835) << quint32(0) << quint32(0);
    return bytes;
}

/// A PNG file, well formed in all but its width, which is 0.
inline QByteArray pngOfNoPixels()
{
    const auto chunk = [](const QByteArray &typeAndData) {
        std::uint32_t crc = 0xffffffffu;
        for (const char byte : typeAndData) {
            crc ^= static_cast<unsigned char>(byte);
            for (int bit = 0; bit < 8; ++bit)
                crc = crc & 1 ? (crc >> 1) ^ 0xedb88320u : crc >> 1;
        }
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out << quint32(typeAndData.size() - 4);
        out.writeRawData(typeAndData.constData(), typeAndData.size());
        out << quint32(~crc);
        return bytes;
    };
    const std::array<char, 13> header{0, 0, 0, 0, 0, 0, 0, 1, 8, 2, 0, 0, 0};
    // An empty zlib stream.
    const std::array<unsigned char, 8> data{0x78, 0x9c, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01};
    return QByteArray("\x89PNG\r\n\x1a\n") +
           chunk("IHDR" + QByteArray(header.data(), int(header.size()))) +
           chunk("IDAT" +
                 QByteArray(reinterpret_cast<const char *>(data.data()), int(data.size()))) +
           chunk("IEND");
}

} // namespace MaskFiles
