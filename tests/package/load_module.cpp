// A host that knows the module by its file alone: loads it, brings it up and takes it down.
#include <dlfcn.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  void* const module = dlopen(argv[1], RTLD_NOW);
  if (module == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  using EntryPoint = void (*)();
  const auto init = reinterpret_cast<EntryPoint>(dlsym(module, "Init_Ravelin"));
  const auto deinit = reinterpret_cast<EntryPoint>(dlsym(module, "Deinit_Ravelin"));
  if (init == nullptr || deinit == nullptr) return 1;
  init();
  deinit();
  return 0;
}
