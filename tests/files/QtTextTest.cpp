// Texts from Qt, as a host that has Qt gives them.
#include <gtest/gtest.h>

#include <QtCore/QString>
#include <string>

#include "SatCommonUtils/Files.h"

namespace {

TEST(QtTextTest, ATextIsGivenInUtf8) {
  EXPECT_EQ(QtToKvStr(QString::fromUtf8("\xc3\x84 \xf0\x9f\x9b\xb0 z")),
            "\xc3\x84 \xf0\x9f\x9b\xb0 z");
}

TEST(QtTextTest, EmptyAndNullTextsAreEmpty) {
  EXPECT_EQ(QtToKvStr(QString()), "");
  EXPECT_EQ(QtToKvStr(QString::fromUtf8("")), "");
}

TEST(QtTextTest, ATextEndsAtItsFirstNul) {
  EXPECT_EQ(QtToKvStr(QString::fromUtf8("ab\0cd", 5)), "ab");
  EXPECT_EQ(QtToKvStr(QString(QChar(0))), "");
}

TEST(QtTextTest, ALoneSurrogateBecomesAQuestionMark) {
  EXPECT_EQ(QtToKvStr(QString(QChar(0xd800))), "?");
}

}  // namespace
