// How long each accessibility request of this process waits, as the process itself has set it: each
// new one begins with the platform's own time. For those who let a program run within another one's
// process.
#pragma once

namespace simulator {

// In seconds; 0: the platform's own time.
float messagingTimeout();
void setMessagingTimeout(float seconds);

}  // namespace simulator
