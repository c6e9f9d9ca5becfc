#include "simulator/desktop/unmodelled.h"

#include <cstdio>
#include <cstdlib>

namespace simulator {

void abortUnmodelled(const std::string& what) {
  std::fprintf(stderr, "simulated desktop: not modelled: %s\n", what.c_str());
  std::abort();
}

}  // namespace simulator
