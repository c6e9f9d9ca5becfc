#include "platform/own_process.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <random>

namespace tessarine {

std::int32_t ownPid() {
  return getpid();
}

std::string freshUuid() {
  // Random in all but the version (4) and variant (10 in binary) fields, as RFC 4122 lays down.
  std::random_device source;
  std::array<std::uint8_t, 16> bytes{};
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(source() & 0xFF);
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += "0123456789ABCDEF"[bytes[i] >> 4];
    text += "0123456789ABCDEF"[bytes[i] & 0x0F];
  }
  return text;
}

std::string environmentVariable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace tessarine
