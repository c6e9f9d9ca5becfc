#include "platform/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

namespace tessarine {

void openMissingStandardStreams() {
  int lowestFree = -1;
  do {
    lowestFree = open("/dev/null", O_RDONLY);
  } while (lowestFree >= 0 && lowestFree <= STDERR_FILENO);
  if (lowestFree >= 0) close(lowestFree);
}

}  // namespace tessarine
