// Random texts made of what the PVL converters look at.
#pragma once

#include <random>
#include <string>

namespace metadata_test {

/// One character or word of the syntax.
inline std::string RandomPiece(std::mt19937* random) {
  static const std::string kCharacters = "==;;\"\"\\(),  \t\r\n\n\v\fab_9AZ[]{}/*<'\x80\xFF\xC3";
  static const std::string kPieces[] = {"GROUP",
                                        "BEGIN_GROUP",
                                        "END_GROUP",
                                        "END",
                                        "END;",
                                        "END_",
                                        "END_GROUPS",
                                        "BEGIN_GROUP",
                                        "GROUP = a\n",
                                        "\\\"",
                                        "\\\\",
                                        "a",
                                        "bc",
                                        "A_1",
                                        "A = 1;",
                                        "b = \"x;y\"",
                                        "(1, 2)",
                                        "((a),b)",
                                        "END_GROUP",
                                        "\r\n",
                                        "GROUP=a;",
                                        "BEGIN_GROUP = a;\n",
                                        " = ",
                                        " = ",
                                        "END_GROUP = a;\n",
                                        "BEGIN_GROUP =",
                                        "END_GROUP =",
                                        "GROUP =",
                                        "\na = (",
                                        ";\n"};
  if ((*random)() % 64 == 0) return std::string(1, '\0');
  if ((*random)() % 2 == 0) return std::string(1, kCharacters[(*random)() % kCharacters.size()]);
  return kPieces[(*random)() % std::size(kPieces)];
}

/// Pieces of the syntax, `size` bytes of them; half of the texts are mostly statements.
inline std::string RandomPvl(std::mt19937* random, unsigned long size) {
  static const std::string kStatements[] = {"BEGIN_GROUP=a\n",
                                            "GROUP=a\n",
                                            "END_GROUP=a\n",
                                            "END_GROUP=a\n",
                                            "GROUP=b;",
                                            "BEGIN_GROUP=b;",
                                            "A = 1;\n",
                                            "b_2 = \"c;\n",
                                            "C=(1, 2)\n",
                                            "/* */\n",
                                            "D = 2\n",
                                            "GROUP=a\nB=\"\";\nEND_GROUP=a\n",
                                            "BEGIN_GROUP=a\nB=1;\nEND_GROUP=a\n"};
  const bool isOrderly = (*random)() % 2 == 0;
  std::string text;
  while (text.size() < size) {
    text += isOrderly && (*random)() % 4 != 0 ? kStatements[(*random)() % std::size(kStatements)]
                                              : RandomPiece(random);
  }
  text.resize(size);
  return text;
}

/// The same with lines that are longer than the line buffer.
inline std::string RandomPvlWithLongLines(std::mt19937* random, unsigned long size) {
  std::string text;
  while (text.size() < size) {
    text += RandomPvl(random, (*random)() % 60);
    if ((*random)() % 3 != 0) continue;
    const unsigned long around = 1023 * (1 + (*random)() % 2) - 8 + (*random)() % 16;
    text += (*random)() % 2 == 0 ? "A = " : "\nB = \"";
    const unsigned long lineBegin = text.rfind('\n') + 1;
    const unsigned long length = text.size() - lineBegin;
    if (length < around) text.append(around - length, (*random)() % 4 == 0 ? ' ' : 'x');
    if ((*random)() % 2 == 0) text += "\n";
  }
  return text;
}

/// Statements with values of many lines, `size` bytes and more.
inline std::string RandomPvlWithLongValues(std::mt19937* random, unsigned long size) {
  static const std::string kBegins[] = {"A = ", "\nB = \"", "C = (", "D = \"(", "= "};
  static const std::string kBetween[] = {"\n", "\r\n", ",\n", "\\\"\n", "\\\n", "\n\v\n"};
  static const std::string kEnds[] = {";", "\";", ");", ")\";", "\n", "\"\n", "\\\";\n"};
  std::string text;
  while (text.size() < size) {
    text += kBegins[(*random)() % std::size(kBegins)];
    for (unsigned long lines = (*random)() % 12; lines > 0; --lines) {
      text.append((*random)() % 1023, (*random)() % 8 == 0 ? ';' : 'x');
      text += kBetween[(*random)() % std::size(kBetween)];
    }
    text += kEnds[(*random)() % std::size(kEnds)];
  }
  return text;
}

}  // namespace metadata_test
