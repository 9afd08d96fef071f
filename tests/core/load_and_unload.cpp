// Loads the library and unloads it again without calling it: the constructors and destructors of
// its process-wide objects run, with whatever environment the program was given.
#include <cstdio>
#include <dlfcn.h>

int main(int argc, char** argv) {
  for (int turn = 0; argc == 2 && turn < 2; ++turn) {
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr || dlsym(library, "_ZN3spx7AnimalsE") == nullptr) {
      std::puts(dlerror());
      return 1;
    }
    if (dlclose(library) != 0 || dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD) != nullptr) {
      std::puts("the library was not unloaded");
      return 1;
    }
  }
  return argc == 2 ? 0 : 2;
}
