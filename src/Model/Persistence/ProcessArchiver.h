#pragma once

#include "Model/Process/Process.h"

#include <cstdint>
#include <vector>

class QXmlStreamReader;
class QXmlStreamWriter;

namespace Model::Persistence {

/// Turns a process into the XML element `Process` with its child `CompatibleMaterials` and back.
class ProcessArchiver final
{
public:
    ProcessArchiver() = delete;

    /// Reads the start element on which the reader stands, and on to the text of its child. The
    /// empty record comes back for another element, for a missing name or an id of 0, and if
    /// `process-id` or `version` is no number. `ok`, which may be null, becomes false then, and
    /// also if the reader has an error afterwards.
    static Process::Process loadProcess(QXmlStreamReader &reader, bool *ok = nullptr);

    /// Moves on to the next start element of the file, wherever it is, and reads the ids in its
    /// text. Parts that are no numbers are dropped. Empty if that element is no
    /// `CompatibleMaterials` or does not begin with text.
    static std::vector<std::uint32_t> loadCompatibleMaterials(QXmlStreamReader &reader);

    static void saveProcess(const Process::Process &process, QXmlStreamWriter &writer);
    static void saveCompatibleMaterials(const Process::Process &process, QXmlStreamWriter &writer);
};

} // namespace Model::Persistence
