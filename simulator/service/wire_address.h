// Unix socket addresses.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

namespace simulator {

// Throws a WireError that names the path when it is too long for a socket.
sockaddr_un socketAddress(const std::string& path);

// Bytes that go to a peer which is gone are an error (EPIPE), never a signal.
void sparePipeSignal(int socket);
#ifdef MSG_NOSIGNAL
inline constexpr int send_flags = MSG_NOSIGNAL;
#else
inline constexpr int send_flags = 0;
#endif

// A socket connected to whoever listens at `path`, closed when another program starts; -1 with
// `errno` set when nobody does. Throws like socketAddress.
int connectTo(const std::string& path);

}  // namespace simulator
