#include "SatCommonUtils/Module.h"

#include <dlfcn.h>

#include "Kv/Services.h"
#include "module/NullText.h"

namespace SatCommonUtils {
namespace {

/// The file of the shared object that holds Init_Ravelin, as the loader reports it.
std::string OwnFile() {
  Dl_info info{};
  const bool found = dladdr(reinterpret_cast<const void*>(&Init_Ravelin), &info) != 0;
  return TextOrThrow(found ? info.dli_fname : nullptr);
}

/// What follows the last '.'; empty when there is none or nothing follows it.
std::string ExtensionOf(const std::string& fileName) {
  const std::size_t dot = fileName.rfind('.');
  return dot == std::string::npos ? std::string() : fileName.substr(dot + 1);
}

}  // namespace

KvModule_Initializer::KvModule_Initializer() = default;
KvModule_Initializer::~KvModule_Initializer() = default;

KvModule_Initializer& KvModule_Initializer::getInst() {
  static KvModule_Initializer instance;
  return instance;
}

void KvModule_Initializer::init(const std::string& /*unused*/, const std::string& /*unused*/) {
  if (counter == 0) {
    Init_KvServices();
    modulePath = OwnFile();
    const std::size_t separator = modulePath.find_last_of("/\\");
    const std::size_t start = separator == std::string::npos ? 0 : separator + 1;
    folder = modulePath.substr(0, start);
    fileName = modulePath.substr(start);
    extension = ExtensionOf(fileName);
  }
  ++counter;
}

void KvModule_Initializer::deinit() {
  if (counter == 0) return;
  --counter;
  if (counter == 0) Deinit_KvServices();
}

}  // namespace SatCommonUtils

void Init_Ravelin() {
  SatCommonUtils::KvModule_Initializer::getInst().init(std::string(), std::string());
}

void Deinit_Ravelin() {
  SatCommonUtils::KvModule_Initializer::getInst().deinit();
}
