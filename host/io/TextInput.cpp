#include "host/io/TextInput.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "host/HostError.h"
#include "host/io/InputFile.h"

namespace ravelin {
namespace {

constexpr const char* kName = "standard input";

std::string ReadStandardInput(unsigned long limit) {
  std::string text;
  std::array<char, 1 << 16> part;
  for (;;) {
    const ssize_t got = read(STDIN_FILENO, part.data(), part.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      throw HostError(kName, "cannot be read: " + std::generic_category().message(errno),
                      "name a file");
    }
    if (got == 0) return text;
    text.append(part.data(), static_cast<std::size_t>(got));
    if (text.size() > limit) {
      throw HostError(kName, "holds more than " + std::to_string(limit) + " bytes",
                      "check that it is the right text");
    }
  }
}

}  // namespace

TextInput ReadTextInput(const std::string& path, unsigned long limit) {
  if (path == "-") return {ReadStandardInput(limit), kName};
  return {ReadWholeFile(path, limit), path};
}

}  // namespace ravelin
