#include "simulator/service/client.h"

#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

#include "simulator/service/wire_address.h"

namespace simulator {
namespace {

WireError lost() {
  return WireError("the desktop went away");
}

}  // namespace

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

}  // namespace simulator
