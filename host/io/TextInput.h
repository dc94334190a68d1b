// Input texts, from a file or from standard input.
#pragma once

#include <string>

namespace ravelin {

/// A text and what to call its origin in messages.
struct TextInput {
  std::string text;
  std::string name;
};

/// All bytes of the file at `path`, or of standard input for "-". Throws HostError when they cannot
/// be read or are more than `limit`.
TextInput ReadTextInput(const std::string& path, unsigned long limit);

}  // namespace ravelin
