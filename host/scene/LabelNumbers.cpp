#include "host/scene/LabelNumbers.h"

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/ParseNumber.h"
#include "host/raster/PixelArea.h"

namespace ravelin {

std::optional<long> WholeNumber(const LabelScope& scope, const std::string& name, long smallest,
                                const std::string& option, const std::string& file) {
  const std::optional<std::string> text = scope.Text(name, option);
  if (!text) return std::nullopt;
  const std::string digits = trim(text->ends_with('>') ? text->substr(0, text->find('<')) : *text);
  const std::optional<long> number = ParseNumber<long>(digits);
  if (number && *number >= smallest && *number <= kMaxSide) return number;
  const std::string place = scope.Path().empty() ? name : scope.Path() + "/" + name;
  throw HostError(file,
                  place + " is '" + text->substr(0, 40) + "', not a whole number from " +
                      std::to_string(smallest) + " to " + std::to_string(kMaxSide),
                  "correct the label or give " + option);
}

}  // namespace ravelin
