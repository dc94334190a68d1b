// A locale of a test's own.
#pragma once

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "support/TempFolder.h"

namespace kv_test {

/// Sets the first of some locales that the machine has, or one that localedef can make in a
/// temporary folder; resets the former one at the end.
class ScopedLocale {
 public:
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

  bool IsThere() const { return there_; }

 protected:
  /// The one to make is the `language` in the `charset`.
  ScopedLocale(std::initializer_list<const char*> names, const std::string& language,
               const std::string& charset)
      : former_(std::setlocale(LC_ALL, nullptr)) {
    for (const char* name : names) {
      there_ = std::setlocale(LC_ALL, name) != nullptr;
      if (there_) return;
    }
    Make(language, charset);
  }
  ~ScopedLocale() {
    std::setlocale(LC_ALL, former_.c_str());
    if (folder_) ::unsetenv("LOCPATH");
  }

 private:
  void Make(const std::string& language, const std::string& charset) {
    folder_.emplace();
    const std::string name = language + "." + charset;
    const std::string made = *folder_ / name;
    if (!Run({"localedef", "--quiet", "-c", "-i", language, "-f", charset, made})) return;
    ::setenv("LOCPATH", folder_->Path().c_str(), 1);
    there_ = std::setlocale(LC_ALL, name.c_str()) != nullptr;
  }

  static bool Run(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) {
      return false;
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child;
  }

  std::string former_;
  std::optional<TempFolder> folder_;
  bool there_ = false;
};

}  // namespace kv_test
