#include "Core/Operations/ObjectOperation.h"

namespace Core::Operations {

ObjectOperation::~ObjectOperation() = default;

} // namespace Core::Operations
