#include <mach-o/dyld.h>

#include <cstdint>
#include <string>

#include "simulator/service/own_path.h"

namespace simulator {

std::filesystem::path ownPath() {
  std::uint32_t size = 0;
  _NSGetExecutablePath(nullptr, &size);  // answers the size that it needs
  std::string path(size, '\0');
  _NSGetExecutablePath(path.data(), &size);
  return std::filesystem::canonical(path.c_str());
}

}  // namespace simulator
