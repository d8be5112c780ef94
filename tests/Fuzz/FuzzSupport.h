#pragma once

#include "Model/Materials/Material.h"

#include <QBuffer>
#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

/// What the fuzz targets share. Each target reads its input, writes what came in with the matching
/// writer and reads that again: whatever a file held, a save must not lose it.
namespace Fuzz {

/// Aborts with the message unless the condition holds, which the fuzzer takes for a crash.
void require(bool holds, const char *message);

/// The bytes, open for reading. They are not copied.
class Input final : public QBuffer
{
public:
    Input(const std::uint8_t *data, std::size_t size);
    explicit Input(const QByteArray &bytes);
};

/// False for a text with characters that the XML writer leaves out, as XML does not have them. A
/// file can bring such a text through its encoding.
bool canBeWritten(const QString &text);

/// Requires that both lists hold the same materials, as far as a file keeps them: numbers have six
/// digits, channels eight bits.
void requireSameMaterials(const std::vector<Model::Materials::Material> &before,
                          const std::vector<Model::Materials::Material> &after);

} // namespace Fuzz
