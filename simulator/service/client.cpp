#include "simulator/service/client.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

#include "simulator/service/wire_address.h"

namespace simulator {
WireError lost() {
  return WireError("the desktop went away");
}

Connection::Connection(const std::string& path) : socket_(connectTo(path)) {
  if (socket_ < 0) {
    throw WireError("no desktop answers at " + path + ": " + std::strerror(errno));
  }
}

Connection::~Connection() {
  close(socket_);
}

nlohmann::json Connection::exchange(const Message& message) {
  const std::string bytes = pack(encode(message));
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = send(socket_, bytes.data() + sent, bytes.size() - sent, send_flags);
    if (count < 0 && errno != EINTR) throw lost();
    if (count > 0) sent += static_cast<std::size_t>(count);
  }
  while (true) {
    if (auto answer = unpack(received_)) return *answer;
    char chunk[65536];
    const ssize_t count = read(socket_, chunk, sizeof chunk);
    if (count == 0 || (count < 0 && errno != EINTR)) throw lost();
    if (count > 0) received_.append(chunk, static_cast<std::size_t>(count));
  }
}

// Nothing is asked for but the hang-up, which is told unasked: bytes stay for `exchange`.
void Connection::waitForTheEnd() const {
  pollfd watched{socket_, 0, 0};
  while (poll(&watched, 1, -1) < 0 && errno == EINTR) {
  }
}

void endWithoutDesktop(const WireError& error) {
  static std::atomic_flag saying;
  while (saying.test_and_set()) pause();  // another thread is at it
  const std::string line = std::string(error.what()) + "\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
  _exit(1);
}

}  // namespace simulator
