// Loads the plug-in that is its argument. Returns 1 if it does not work.

#include <dlfcn.h>

#include <iostream>

int main(int argc, char** argv) {
  void* const plugin = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
  if (plugin == nullptr) {
    std::cerr << (argc == 2 ? dlerror() : "usage: plugin_host PLUGIN") << '\n';
    return 1;
  }
  const auto is_shown = reinterpret_cast<int (*)()>(dlsym(plugin, "TemperatureIsShown"));
  return is_shown != nullptr && is_shown() == 1 ? 0 : 1;
}
