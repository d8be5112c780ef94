#pragma once

#include "Core/StateFiles.h"

#include <string>

namespace Core {

/// What one workspace writes outside its document's own file: the names of the two temporary state
/// files, which exist as long as this does.
class Archives final
{
public:
    std::string undoFileName() const { return m_stateFiles.undoFileName(); }
    std::string redoFileName() const { return m_stateFiles.redoFileName(); }

private:
    StateFiles m_stateFiles;
};

} // namespace Core
