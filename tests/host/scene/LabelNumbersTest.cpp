#include "host/scene/LabelNumbers.h"

#include <gtest/gtest.h>

#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"

namespace {

using namespace ravelin;

std::optional<long> LinesOf(const std::string& text) {
  const SortedLabel label(text);
  return WholeNumber(label->main, "LINES", 1, "--size WxH", "x.lbl");
}

TEST(WholeNumber, IsReadWithAUnitBehindIt) {
  EXPECT_EQ(LinesOf("LINES = 12\n"), 12);
  EXPECT_EQ(LinesOf("LINES = 12 <pixel>\n"), 12);
  EXPECT_EQ(LinesOf("A = 12\n"), std::nullopt);
}

TEST(WholeNumber, IsNotGuessedFromABeginning) {
  for (const char* text :
       {"12.5", "1E3", "12 rows", "", "-3", "0", "2147483648", "99999999999999"}) {
    EXPECT_EQ(ErrorOf([&] { LinesOf(std::string("LINES = ") + text + "\n"); }),
              std::string("x.lbl: LINES is '") + text +
                  "', not a whole number from 1 to 2147483647; correct the label or give --size "
                  "WxH");
  }
}

}  // namespace
