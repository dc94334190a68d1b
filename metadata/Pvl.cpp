#include <utility>

#include "SatCommonUtils/Metadata.h"
#include "metadata/PvlConverter.h"

namespace SatCommonUtils {

bool PVLtoXML(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out) {
  return PVLtoXML(std::move(in), std::move(out), nullptr);
}

bool PVLtoXML(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out,
              TPvlFailure* failure) {
  return ConvertPvl(std::move(in), std::move(out),
                    {"BEGIN_GROUP", "\n", true, "END is not followed by ';'"}, failure);
}

}  // namespace SatCommonUtils
