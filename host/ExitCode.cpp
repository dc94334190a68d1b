#include "host/ExitCode.h"

namespace ravelin {

std::string ExitCodesText() {
  std::string text;
  for (const ExitCodeMeaning& code : kExitCodes) {
    text += text.empty() ? "Exit codes: " : ", ";
    text += std::to_string(code.code) + " " + code.meaning;
  }
  return text + ".";
}

}  // namespace ravelin
