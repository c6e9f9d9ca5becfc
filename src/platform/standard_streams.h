// The descriptors of standard input, output and error.
#pragma once

namespace tessarine {

// Opens those that the caller left closed, so that no file or socket gets their numbers and with
// them what the program prints. Writing to one that was opened here fails. To be called before
// anything else is opened.
void openMissingStandardStreams();

}  // namespace tessarine
