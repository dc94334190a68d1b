// What the fuzz targets of both PVL dialects share.
#pragma once

#include <algorithm>
#include <string>

#include "SatCommonUtils/Metadata.h"
#include "fuzz/FuzzInput.h"
#include "metadata/PvlModel.h"

/// The conversion of one dialect, in the form that says why it stopped.
using PvlConverter = bool (*)(var_a_legacy::var_a<TKvStream*> in,
                              var_a_legacy::var_a<TKvStream*> out,
                              SatCommonUtils::TPvlFailure* failure);

/// The longest text that is converted by the model too, which takes quadratic time.
inline constexpr std::size_t kLongestForModel = 4096;

/// Converts the text as the model does: what comes out can be read, whether the conversion stopped
/// or not, and a conversion that stopped says why and at a line that the text has.
inline void ConvertPvlText(metadata_test::Dialect dialect, const std::string& text) {
  using StreamPointer = var_a_legacy::var_a<TKvStream*>;
  const PvlConverter convert = dialect == metadata_test::Dialect::kNasa
                                   ? PvlConverter{SatCommonUtils::NASA_PVLtoXML}
                                   : PvlConverter{SatCommonUtils::PVLtoXML};
  auto* const bytes = new TKvMemoryStream;
  const StreamPointer out(bytes);
  SatCommonUtils::TPvlFailure failure = {0, ""};
  const bool converted = convert(StreamPointer(new TKvMemoryStream(text)), out, &failure);
  const auto lines = static_cast<unsigned long>(std::count(text.begin(), text.end(), '\n')) + 1;
  Require(converted == failure.reason.empty(), "a failure has a reason");
  Require(failure.line <= lines, "a conversion stops at a line of the text");
  Require(converted || text.empty() || failure.line > 0, "a text fails at a line");
  if (text.size() <= kLongestForModel) {
    const metadata_test::Conversion expected = metadata_test::Convert(text, dialect);
    Require(converted == expected.result, "a conversion succeeds as the model's does");
    Require(bytes->Bytes() == metadata_test::Replay(expected.calls), "the XML is the model's");
  }
  // Throws for what cannot be read.
  const TKvXIniReader reader(out);
  // A statement has at least a '=', a group at least that too.
  const auto statements = static_cast<unsigned long>(std::count(text.begin(), text.end(), '='));
  Require(reader.GetItemCount() <= statements, "every item comes from a statement");
}
