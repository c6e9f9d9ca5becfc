#include "core/tables.h"

namespace tessarine {

Tables& tables() {
  static Tables current;
  return current;
}

void initializeTables() {
  tables() = Tables();
}

}  // namespace tessarine
