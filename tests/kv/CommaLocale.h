// A locale whose decimal sign is a comma, for the length of a test.
#pragma once

#include "kv/ScopedLocale.h"

namespace kv_test {

class CommaLocale : public ScopedLocale {
 public:
  CommaLocale()
      : ScopedLocale({"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE.ISO-8859-1"}, "de_DE", "ISO-8859-1") {}
};

}  // namespace kv_test
