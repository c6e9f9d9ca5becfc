#include "simulator/service/own_path.h"

namespace simulator {

std::filesystem::path ownPath() {
  return std::filesystem::read_symlink("/proc/self/exe");
}

}  // namespace simulator
