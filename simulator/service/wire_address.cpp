#include "simulator/service/wire_address.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "simulator/service/wire.h"

namespace simulator {

sockaddr_un socketAddress(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    throw WireError("the socket's path is longer than " +
                    std::to_string(sizeof address.sun_path - 1) + " bytes: " + path);
  }
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return address;
}

// One of two ways: an option of the socket here, or a flag of each send.
void sparePipeSignal([[maybe_unused]] int socket) {
#ifdef SO_NOSIGPIPE
  const int on = 1;
  setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
}

int connectTo(const std::string& path) {
  const sockaddr_un address = socketAddress(path);
  const int made = socket(AF_UNIX, SOCK_STREAM, 0);
  if (made < 0) return -1;
  fcntl(made, F_SETFD, FD_CLOEXEC);
  sparePipeSignal(made);
  if (connect(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return made;
  const int reason = errno;
  close(made);
  errno = reason;
  return -1;
}

}  // namespace simulator
