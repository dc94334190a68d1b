// What the module makes of the path that the dynamic loader reports: this program supplies the
// loader's answer.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "Kv/Services.h"
#include "SatCommonUtils/Module.h"

namespace {

using SatCommonUtils::KvModule_Initializer;

/// What the loader says when it is asked about Init_Ravelin.
enum class Loader { kAsItIs, kNamesPath, kNamesNothing, kFails };

Loader answer = Loader::kAsItIs;
std::string answeredPath;
int questions = 0;

int AskTheLoader(const void* address, Dl_info* info) {
  using Function = int (*)(const void*, Dl_info*);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "dladdr"));
  return real(address, info);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int dladdr(const void* address,
                                                             Dl_info* info) noexcept {
  if (address != reinterpret_cast<const void*>(&Init_Ravelin) || answer == Loader::kAsItIs) {
    return AskTheLoader(address, info);
  }
  ++questions;
  *info = {};
  if (answer == Loader::kFails) {
    info->dli_fname = "/left/over.so";
    return 0;
  }
  info->dli_fname = answer == Loader::kNamesNothing ? nullptr : answeredPath.c_str();
  return 1;
}

namespace {

class ModulePathTest : public ::testing::Test {
 protected:
  void TearDown() override {
    for (int i = 0; i < 100 && Module().counter > 0; ++i) Deinit_Ravelin();
    Deinit_KvServices();
    answer = Loader::kAsItIs;
    questions = 0;
  }
  static KvModule_Initializer& Module() { return KvModule_Initializer::getInst(); }
  static void Init(const std::string& path) {
    answer = Loader::kNamesPath;
    answeredPath = path;
    Init_Ravelin();
  }
  static void Expect(const std::string& path, const std::string& folder,
                     const std::string& fileName, const std::string& extension) {
    Init(path);
    EXPECT_EQ(Module().modulePath, path);
    EXPECT_EQ(Module().folder, folder);
    EXPECT_EQ(Module().fileName, fileName);
    EXPECT_EQ(Module().extension, extension);
    Deinit_Ravelin();
  }
  static std::string MessageOfInit() {
    try {
      Init_Ravelin();
    } catch (const std::logic_error& error) {
      return error.what();
    }
    return "no exception";
  }
};

TEST_F(ModulePathTest, APathIsSplitBehindItsLastSlash) {
  Expect("/opt/app/lib/Ravelin.so", "/opt/app/lib/", "Ravelin.so", "so");
}

TEST_F(ModulePathTest, APathWithoutSeparatorIsAFileNameAlone) {
  Expect("Ravelin.so", "", "Ravelin.so", "so");
}

TEST_F(ModulePathTest, ABackslashSeparatesLikeASlash) {
  Expect("C:\\app\\Ravelin.dll", "C:\\app\\", "Ravelin.dll", "dll");
}

TEST_F(ModulePathTest, TheLastSeparatorOfEitherKindCounts) {
  Expect("/opt/app\\Ravelin.so", "/opt/app\\", "Ravelin.so", "so");
  Expect("C:\\opt/Ravelin.so", "C:\\opt/", "Ravelin.so", "so");
  Expect("/a\\b/c\\d/e", "/a\\b/c\\d/", "e", "");
}

TEST_F(ModulePathTest, AFileNameWithoutDotHasNoExtension) {
  Expect("/opt/app/Ravelin", "/opt/app/", "Ravelin", "");
}

TEST_F(ModulePathTest, AFileNameThatEndsInADotHasNoExtension) {
  Expect("/opt/app/Ravelin.", "/opt/app/", "Ravelin.", "");
  Expect("/opt/app/Ravelin.so.", "/opt/app/", "Ravelin.so.", "");
}

TEST_F(ModulePathTest, TheExtensionStartsBehindTheLastDot) {
  Expect("/opt/Ravelin.so.1.2", "/opt/", "Ravelin.so.1.2", "2");
  Expect("/opt/a..so", "/opt/", "a..so", "so");
}

TEST_F(ModulePathTest, ADotInTheFolderIsNoExtension) {
  Expect("/opt/app.d/Ravelin", "/opt/app.d/", "Ravelin", "");
  Expect("/opt/app.d\\Ravelin", "/opt/app.d\\", "Ravelin", "");
}

TEST_F(ModulePathTest, AFileNameOfADotAndLettersIsAllExtension) {
  Expect("/opt/.so", "/opt/", ".so", "so");
}

TEST_F(ModulePathTest, AFileNameOfADotAloneHasNoExtension) {
  Expect("/opt/.", "/opt/", ".", "");
}

TEST_F(ModulePathTest, APathThatEndsInASeparatorHasNoFileName) {
  Expect("/opt/app/", "/opt/app/", "", "");
  Expect("/", "/", "", "");
  Expect("\\", "\\", "", "");
}

TEST_F(ModulePathTest, AnEmptyPathLeavesEveryPartEmpty) {
  Expect("", "", "", "");
}

TEST_F(ModulePathTest, BytesOfThePathAreTakenAsTheyAre) {
  Expect("/\xFF\xFE/ \t/R\xC3\xA4v.\x80", "/\xFF\xFE/ \t/", "R\xC3\xA4v.\x80", "\x80");
}

TEST_F(ModulePathTest, ALongPathIsTakenWhole) {
  const std::string folder = "/" + std::string(100000, 'x') + "/";
  Expect(folder + "Ravelin.so", folder, "Ravelin.so", "so");
}

TEST_F(ModulePathTest, ANewFirstInitialisationOverwritesEveryPart) {
  Expect("/one/first.aa", "/one/", "first.aa", "aa");
  Expect("second", "", "second", "");
  Expect("/three/third.cc", "/three/", "third.cc", "cc");
}

TEST_F(ModulePathTest, LaterInitialisationsDoNotAskTheLoaderAgain) {
  Init("/one/first.aa");
  EXPECT_EQ(questions, 1);
  Init("/two/second.bb");
  EXPECT_EQ(questions, 1);
  EXPECT_EQ(Module().counter, 2u);
  EXPECT_EQ(Module().modulePath, "/one/first.aa");
  EXPECT_EQ(Module().extension, "aa");
}

TEST_F(ModulePathTest, TheNameStaysWhateverTheFileIsCalled) {
  Expect("/one/other.aa", "/one/", "other.aa", "aa");
  EXPECT_EQ(Module().name, "Ravelin");
}

TEST_F(ModulePathTest, ALoaderThatNamesNoFileRaisesTheLogicErrorOfANullText) {
  answer = Loader::kNamesNothing;
  EXPECT_EQ(MessageOfInit(), "basic_string::_M_construct null not valid");
}

TEST_F(ModulePathTest, ALoaderThatFailsNamesNoFileEither) {
  answer = Loader::kFails;
  EXPECT_EQ(MessageOfInit(), "basic_string::_M_construct null not valid");
}

TEST_F(ModulePathTest, AfterTheLogicErrorTheCounterIsZeroAlthoughTheServicesAreUp) {
  for (Loader failing : {Loader::kNamesNothing, Loader::kFails}) {
    answer = failing;
    EXPECT_THROW(Init_Ravelin(), std::logic_error);
    EXPECT_EQ(Module().counter, 0u);
    EXPECT_TRUE(KvServicesReady());
    Deinit_Ravelin();
    EXPECT_TRUE(KvServicesReady()) << "nothing to pair with";
    Deinit_KvServices();
  }
}

TEST_F(ModulePathTest, TheExceptionLeavesInitOfTheSingletonToo) {
  answer = Loader::kNamesNothing;
  EXPECT_THROW(Module().init("", ""), std::logic_error);
  EXPECT_EQ(Module().counter, 0u);
}

TEST_F(ModulePathTest, AFailedInitialisationKeepsThePathsOfTheOneBefore) {
  Expect("/one/first.aa", "/one/", "first.aa", "aa");
  answer = Loader::kNamesNothing;
  EXPECT_THROW(Init_Ravelin(), std::logic_error);
  EXPECT_EQ(Module().modulePath, "/one/first.aa");
  EXPECT_EQ(Module().folder, "/one/");
  EXPECT_EQ(Module().fileName, "first.aa");
  EXPECT_EQ(Module().extension, "aa");
}

TEST_F(ModulePathTest, AnInitialisationAfterAFailedOneSucceeds) {
  answer = Loader::kNamesNothing;
  EXPECT_THROW(Init_Ravelin(), std::logic_error);
  Init("/two/second.bb");
  EXPECT_EQ(Module().counter, 1u);
  EXPECT_EQ(Module().folder, "/two/");
  Deinit_Ravelin();
  EXPECT_FALSE(KvServicesReady());
}

TEST_F(ModulePathTest, TheServicesAreUpBeforeTheLoaderIsAsked) {
  answer = Loader::kFails;
  EXPECT_FALSE(KvServicesReady());
  EXPECT_THROW(Init_Ravelin(), std::logic_error);
  EXPECT_TRUE(KvServicesReady());
}

}  // namespace
