#include "host/UsageError.h"

namespace ravelin {

UsageError::UsageError(const std::string& message) : std::runtime_error(message) {}

UsageError::UsageError(const std::string& subject, const std::string& what)
    : UsageError(subject + ": " + what) {}

}  // namespace ravelin
