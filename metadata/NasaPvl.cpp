#include <utility>

#include "SatCommonUtils/Metadata.h"
#include "metadata/PvlConverter.h"

namespace SatCommonUtils {

bool NASA_PVLtoXML(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out) {
  return NASA_PVLtoXML(std::move(in), std::move(out), nullptr);
}

bool NASA_PVLtoXML(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out,
                   TPvlFailure* failure) {
  return ConvertPvl(std::move(in), std::move(out),
                    {"GROUP", ";\n", false, "END is followed by other text"}, failure);
}

}  // namespace SatCommonUtils
