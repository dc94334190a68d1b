// What the fuzz targets of both PVL dialects share.
#pragma once

#include <algorithm>
#include <string>

#include "SatCommonUtils/Metadata.h"
#include "fuzz/FuzzInput.h"

/// The conversion of one dialect, in the form that says why it stopped.
using PvlConverter = bool (*)(var_a_legacy::var_a<TKvStream*> in,
                              var_a_legacy::var_a<TKvStream*> out,
                              SatCommonUtils::TPvlFailure* failure);

/// Converts the text: what comes out can be read, whether the conversion stopped or not, and a
/// conversion that stopped says why and at a line that the text has.
inline void ConvertPvlText(PvlConverter convert, const std::string& text) {
  using StreamPointer = var_a_legacy::var_a<TKvStream*>;
  const StreamPointer out(new TKvMemoryStream);
  SatCommonUtils::TPvlFailure failure = {0, ""};
  const bool converted = convert(StreamPointer(new TKvMemoryStream(text)), out, &failure);
  const auto lines = static_cast<unsigned long>(std::count(text.begin(), text.end(), '\n')) + 1;
  Require(converted == failure.reason.empty(), "a failure has a reason");
  Require(failure.line <= lines, "a conversion stops at a line of the text");
  Require(converted || text.empty() || failure.line > 0, "a text fails at a line");
  // Throws for what cannot be read.
  const TKvXIniReader reader(out);
  // A statement has at least a '=', a group at least that too.
  const auto statements = static_cast<unsigned long>(std::count(text.begin(), text.end(), '='));
  Require(reader.GetItemCount() <= statements, "every item comes from a statement");
}
