// What the program tells its caller with.
#pragma once

#include <string>

namespace ravelin {

enum ExitCode : int {
  kExitDone = 0,      ///< the work is done, or help or the version was printed
  kExitFailed = 1,    ///< the work failed
  kExitWrongUse = 2,  ///< the command line cannot be understood
};

/// An exit code and what it means, for people.
struct ExitCodeMeaning {
  ExitCode code;
  const char* meaning;
};

inline constexpr ExitCodeMeaning kExitCodes[] = {
    {kExitDone, "done"},
    {kExitFailed, "the work failed"},
    {kExitWrongUse, "wrong use"},
};

/// "Exit codes: 0 done, ...".
std::string ExitCodesText();

}  // namespace ravelin
