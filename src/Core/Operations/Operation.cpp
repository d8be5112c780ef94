#include "Core/Operations/Operation.h"

#include <utility>

namespace Core::Operations {

Operation::Operation(std::string name, std::uint32_t id) : m_name(std::move(name)), m_id(id) {}

Operation::~Operation() = default;

} // namespace Core::Operations
