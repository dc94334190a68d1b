#include "Kv/Raster.h"

std::string ChannelKindToText(int kind) {
  switch (kind) {
    case 1:
      return "Gray";
    case 3:
      return "Blue";
    case 4:
      return "Green";
    case 6:
      return "Red";
    case 32:
      return "Other";
    default:
      return "Kind " + std::to_string(kind);
  }
}
