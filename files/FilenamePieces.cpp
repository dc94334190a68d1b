#include "files/FilenamePieces.h"

namespace SatCommonUtils {

void break_filename(std::string name, std::vector<std::string>* pieces) {
  pieces->clear();
  std::size_t start = 0;
  for (std::size_t dot = name.find('.'); dot != std::string::npos; dot = name.find('.', start)) {
    pieces->push_back(name.substr(start, dot - start));
    start = dot + 1;
  }
  pieces->push_back(name.substr(start));
}

}  // namespace SatCommonUtils
