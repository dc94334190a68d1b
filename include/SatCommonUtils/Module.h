/// @file
/// The module's two entry points and what it knows of itself.
#pragma once

#include <string>

#include "SatCommonUtils/Export.h"

extern "C" {
/// Call once after loading the module and before using anything of it: brings the framework's
/// services up. Calls are counted. Call from one thread at a time. Throws std::logic_error
/// "basic_string::_M_construct null not valid" when the loader cannot name the module's file; the
/// call does not count then, although the services are up.
RAVELIN_EXPORT void Init_Ravelin();

/// The counterpart: the call that brings the count to 0 takes the services down. An unpaired call
/// is ignored.
RAVELIN_EXPORT void Deinit_Ravelin();
}

/// What the module offers.
namespace SatCommonUtils {

/// The process-wide initializer: counts initialisations and records where the module's file lies.
///
/// Creating it is thread-safe, counting is not: init and deinit must be called from one thread at a
/// time. At process exit it is destroyed without taking the services down.
class RAVELIN_EXPORT KvModule_Initializer {
 public:
  unsigned long counter = 0;     ///< outstanding initialisations
  std::string name = "Ravelin";  ///< the module's name
  std::string modulePath;        ///< the module's file as the loader reports it
  std::string folder;            ///< its folder with the last '/' or '\\'; empty when none
  std::string fileName;          ///< what follows the folder
  std::string extension = "so";  ///< what follows the last '.' of the file name

  KvModule_Initializer(const KvModule_Initializer&) = delete;
  KvModule_Initializer& operator=(const KvModule_Initializer&) = delete;

  /// The one there is in the process.
  static KvModule_Initializer& getInst();

  /// Both texts are accepted and ignored. Fails as Init_Ravelin does.
  void init(const std::string&, const std::string&);
  /// Counts down as Deinit_Ravelin does.
  void deinit();

 private:
  KvModule_Initializer();
  ~KvModule_Initializer();
};

}  // namespace SatCommonUtils
