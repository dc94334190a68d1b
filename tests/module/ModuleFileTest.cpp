// A host that is not linked to the module loads its file, also under other names.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "Kv/Services.h"
#include "SatCommonUtils/Module.h"
#include "kv/BuildKind.h"
#include "support/TempFolder.h"

namespace {

using SatCommonUtils::KvModule_Initializer;

/// The module loaded from a file, unloaded at the end of its life.
class LoadedModule {
 public:
  explicit LoadedModule(const std::string& path)
      : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;
  ~LoadedModule() {
    if (handle_ != nullptr) dlclose(handle_);
  }

  bool IsLoaded() const { return handle_ != nullptr; }
  void Init() const { Function<void()>("Init_Ravelin")(); }
  void Deinit() const { Function<void()>("Deinit_Ravelin")(); }
  const KvModule_Initializer& Initializer() const {
    return Function<KvModule_Initializer&()>(
        "_ZN14SatCommonUtils20KvModule_Initializer7getInstEv")();
  }

 private:
  template <class Signature>
  Signature* Function(const char* name) const {
    return reinterpret_cast<Signature*>(dlsym(handle_, name));
  }
  void* handle_;
};

/// Copies of the module in a folder of their own, removed at the end.
class ModuleFileTest : public ::testing::Test {
 protected:
  std::string Copy(const std::string& name) const {
    const std::filesystem::path path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::filesystem::copy_file(RAVELIN_MODULE_FILE, path);
    return path.string();
  }
  std::string Folder() const { return folder_.Path() + "/"; }

  void Expect(const std::string& name, const std::string& folder, const std::string& fileName,
              const std::string& extension) {
    const std::string path = Copy(name);
    LoadedModule module(path);
    ASSERT_TRUE(module.IsLoaded());
    module.Init();
    EXPECT_EQ(module.Initializer().modulePath, path);
    EXPECT_EQ(module.Initializer().folder, folder);
    EXPECT_EQ(module.Initializer().fileName, fileName);
    EXPECT_EQ(module.Initializer().extension, extension);
    EXPECT_EQ(module.Initializer().name, "Ravelin");
    module.Deinit();
  }

  TempFolder folder_;
};

TEST_F(ModuleFileTest, TheBuiltModuleKnowsItsOwnFile) {
  LoadedModule module(RAVELIN_MODULE_FILE);
  ASSERT_TRUE(module.IsLoaded());
  module.Init();
  const KvModule_Initializer& known = module.Initializer();
  EXPECT_EQ(known.fileName, "Ravelin.so");
  EXPECT_EQ(known.extension, "so");
  EXPECT_TRUE(std::filesystem::equivalent(known.folder + known.fileName, RAVELIN_MODULE_FILE));
  module.Deinit();
}

TEST_F(ModuleFileTest, LoadingAloneInitialisesNothing) {
  LoadedModule module(Copy("Ravelin.so"));
  ASSERT_TRUE(module.IsLoaded());
  EXPECT_FALSE(KvServicesReady());
  EXPECT_EQ(module.Initializer().counter, 0u);
  EXPECT_EQ(module.Initializer().modulePath, "");
  EXPECT_EQ(module.Initializer().extension, "so");
}

TEST_F(ModuleFileTest, TheEntryPointsBringTheServicesUpAndDown) {
  LoadedModule module(Copy("Ravelin.so"));
  ASSERT_TRUE(module.IsLoaded());
  module.Init();
  module.Init();
  EXPECT_TRUE(KvServicesReady());
  module.Deinit();
  EXPECT_TRUE(KvServicesReady());
  module.Deinit();
  EXPECT_FALSE(KvServicesReady());
  module.Deinit();
  EXPECT_EQ(module.Initializer().counter, 0u);
}

TEST_F(ModuleFileTest, ACopyUnderAnotherNameKnowsThatName) {
  Expect("Other.v2.bin", Folder(), "Other.v2.bin", "bin");
}

TEST_F(ModuleFileTest, ACopyWithoutDotInItsNameHasNoExtension) {
  Expect("Ravelin", Folder(), "Ravelin", "");
}

TEST_F(ModuleFileTest, ACopyWhoseNameEndsInADotHasNoExtension) {
  Expect("Ravelin.", Folder(), "Ravelin.", "");
}

TEST_F(ModuleFileTest, ACopyWithABackslashInItsNameIsSplitThere) {
  Expect("app\\Ravelin.so", Folder() + "app\\", "Ravelin.so", "so");
}

TEST_F(ModuleFileTest, ACopyInAFolderWithADotKeepsToItsOwnName) {
  Expect("app.d/Ravelin", Folder() + "app.d/", "Ravelin", "");
}

TEST_F(ModuleFileTest, AModuleLoadedAnewStartsFresh) {
  const std::string path = Copy("Ravelin.so");
  for (int i = 0; i < 2; ++i) {
    LoadedModule module(path);
    ASSERT_TRUE(module.IsLoaded());
    EXPECT_EQ(module.Initializer().counter, 0u);
    EXPECT_EQ(module.Initializer().modulePath, "");
    module.Init();
    EXPECT_EQ(module.Initializer().modulePath, path);
    module.Deinit();
  }
}

/// Loads the module, brings it up and down, and unloads it.
void LoadAndUnload(const std::string& path, int times) {
  for (int i = 0; i < times; ++i) {
    LoadedModule module(path);
    ASSERT_TRUE(module.IsLoaded());
    module.Init();
    module.Deinit();
  }
}

/// Bytes that this process has been given by malloc and has not freed.
std::size_t AllocatedBytes() {
  return mallinfo2().uordblks;
}

std::size_t Mappings() {
  std::ifstream maps("/proc/self/maps");
  return static_cast<std::size_t>(
      std::count(std::istreambuf_iterator<char>(maps), std::istreambuf_iterator<char>(), '\n'));
}

// The first rounds fill what the loader and the libraries below keep. A sanitizer has an allocator
// of its own, and looks for leaks itself.
TEST_F(ModuleFileTest, LoadingAThousandTimesTakesNoMoreMemoryThanLoadingATenth) {
  const std::string path = Copy("Ravelin.so");
  LoadAndUnload(path, 100);
  const std::size_t bytes = AllocatedBytes();
  const std::size_t mappings = Mappings();
  LoadAndUnload(path, 900);
  if (kv_test::kSanitized) return;
  EXPECT_LT(AllocatedBytes(), bytes + 900 * 8) << "not even a pointer a round";
  EXPECT_LE(Mappings(), mappings + 4);
}

}  // namespace
