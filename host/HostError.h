// Why the work of a subcommand failed.
#pragma once

#include <stdexcept>
#include <string>

namespace ravelin {

/// Thrown by a subcommand whose work cannot be done; the program prints it as
/// `ravelin: FILE: WHAT; REMEDY` and ends with exit code 1. Wrong use of the command line is a
/// UsageError instead, which ends with 2.
///
///     throw HostError(path, "no such file", "check the name");
class HostError : public std::runtime_error {
 public:
  /// `file` is the file (or option) that the failure is about, `what` is what is wrong with it,
  /// `remedy` what the reader can do about it.
  HostError(const std::string& file, const std::string& what, const std::string& remedy);
};

/// Control bytes replaced by \xNN, so that a name cannot steer the terminal that it is printed on.
std::string Printable(const std::string& text);

}  // namespace ravelin
