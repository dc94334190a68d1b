// A locale other than C for the length of a test.
#pragma once

#include <clocale>
#include <string>

/// Sets the first of some locales that the machine has; resets the former one at the end.
class ForeignLocale {
 public:
  ForeignLocale() : former_(std::setlocale(LC_ALL, nullptr)) {
    for (const char* name : {"tr_TR.ISO-8859-9", "tr_TR.UTF-8", "de_DE.ISO-8859-1", "de_DE.UTF-8",
                             "en_US.UTF-8", "C.UTF-8"}) {
      if (std::setlocale(LC_ALL, name) == nullptr) continue;
      there_ = true;
      return;
    }
  }
  ForeignLocale(const ForeignLocale&) = delete;
  ForeignLocale& operator=(const ForeignLocale&) = delete;
  ~ForeignLocale() { std::setlocale(LC_ALL, former_.c_str()); }

  bool IsThere() const { return there_; }

 private:
  std::string former_;
  bool there_ = false;
};
