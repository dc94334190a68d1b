#include <utility>

#include "SatCommonUtils/Metadata.h"
#include "metadata/PvlConverter.h"

namespace SatCommonUtils {

bool PVLtoXML(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out) {
  return ConvertPvl(std::move(in), std::move(out), {"BEGIN_GROUP", "\n", true});
}

}  // namespace SatCommonUtils
