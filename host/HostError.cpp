#include "host/HostError.h"

namespace ravelin {

HostError::HostError(const std::string& file, const std::string& what, const std::string& remedy)
    : std::runtime_error(file + ": " + what + "; " + remedy) {}

std::string Printable(const std::string& text) {
  static const char digits[] = "0123456789abcdef";
  std::string printable;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      printable += c;
    } else {
      printable += {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return printable;
}

}  // namespace ravelin
