// Unix socket addresses.
#pragma once

#include <sys/un.h>

#include <string>

namespace simulator {

// Throws a WireError that names the path when it is too long for a socket.
sockaddr_un socketAddress(const std::string& path);

// A socket connected to whoever listens at `path`, closed when another program starts; -1 with
// `errno` set when nobody does. Throws like socketAddress.
int connectTo(const std::string& path);

}  // namespace simulator
