// A locale whose letters are not those of C, for the length of a test.
#pragma once

#include "kv/ScopedLocale.h"

namespace kv_test {

/// Turkish in single bytes: bytes beyond ASCII are letters, and i and I belong to two of them.
class ForeignLocale : public ScopedLocale {
 public:
  ForeignLocale() : ScopedLocale({"tr_TR.ISO-8859-9"}, "tr_TR", "ISO-8859-9") {}
};

}  // namespace kv_test
