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

class Connection {
 public:
  // Throws a WireError that names the path when no service answers there.
  explicit Connection(const std::string& path);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Sends a message and blocks until it is answered. Throws a WireError when the service goes away.
  nlohmann::json exchange(const Message& message);

 private:
  int socket_;
  std::string received_;
};

}  // namespace simulator
