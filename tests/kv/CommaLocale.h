// A locale whose decimal sign is a comma, for the length of a test.
#pragma once

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace kv_test {

/// Sets a locale with a decimal comma that the machine has, or one that localedef can make in a
/// temporary folder; resets the former one at the end.
class CommaLocale {
 public:
  CommaLocale() : former_(std::setlocale(LC_ALL, nullptr)) {
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE.ISO-8859-1"}) {
      if (IsSet(name)) return;
    }
    MakeOne();
  }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  ~CommaLocale() {
    std::setlocale(LC_ALL, former_.c_str());
    if (folder_.empty()) return;
    ::unsetenv("LOCPATH");
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  bool IsThere() const { return there_; }

 private:
  bool IsSet(const char* name) {
    there_ = std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',';
    if (!there_) std::setlocale(LC_ALL, former_.c_str());
    return there_;
  }

  void MakeOne() {
    std::string folder = std::filesystem::temp_directory_path() / "comma-locale-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) return;
    folder_ = folder;
    if (!RunLocaledef(folder + "/de_DE.ISO-8859-1")) return;
    ::setenv("LOCPATH", folder.c_str(), 1);
    IsSet("de_DE.ISO-8859-1");
  }

  static bool RunLocaledef(std::string target) {
    std::vector<std::string> words = {"localedef", "--quiet", "-c",         "-i",
                                      "de_DE",     "-f",      "ISO-8859-1", std::move(target)};
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (::posix_spawnp(&child, "localedef", nullptr, nullptr, arguments.data(), environ) != 0) {
      return false;
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child;
  }

  std::string former_;
  std::string folder_;
  bool there_ = false;
};

}  // namespace kv_test
