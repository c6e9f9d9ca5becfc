// A program's connection to a desktop service.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "simulator/service/wire.h"

namespace simulator {

// The environment variables through which a program finds the service: the path of its socket, and
// the folder of the programs that stand in for the system's.
inline constexpr const char* desktop_variable = "TESSARINE_DESKTOP";
inline constexpr const char* programs_variable = "TESSARINE_DESKTOP_PROGRAMS";

// That of a connection whose service went away.
WireError lost();

class Connection {
 public:
  // Throws a WireError that names the path when no service answers there.
  explicit Connection(const std::string& path);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Sends a message and blocks until it is answered. Throws a WireError when the service goes away.
  nlohmann::json exchange(const Message& message);

  // Blocks until the service goes away. For a thread of its own, at any time.
  void waitForTheEnd() const;

 private:
  int socket_;
  std::string received_;
};

// Ends this process with status 1 and one line on standard error, whichever of its threads lost the
// desktop that the environment names: without it a program would find nothing and say so.
[[noreturn]] void endWithoutDesktop(const WireError& error);

}  // namespace simulator
