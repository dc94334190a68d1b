// What is wrong with the command line.
#pragma once

#include <stdexcept>
#include <string>

namespace ravelin {

/// Thrown by a subcommand that was asked for what cannot be; the program prints it with a pointer
/// to the subcommand's help and ends with exit code 2. Work that fails is a HostError.
///
///     throw UsageError("--level", "'x' is not a whole number from 0");
class UsageError : public std::runtime_error {
 public:
  explicit UsageError(const std::string& message);
  /// `subject` is the option or the value that the message is about.
  UsageError(const std::string& subject, const std::string& what);
};

}  // namespace ravelin
