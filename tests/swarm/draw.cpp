#include "swarm/draw.h"

namespace tessarine::test {
namespace {

// FNV-1a, over the seed's bytes and the name.
std::uint64_t mixed(std::uint64_t seed, std::string_view name) {
  constexpr std::uint64_t basis = 14695981039346656037U;
  constexpr std::uint64_t prime = 1099511628211U;
  std::uint64_t hash = basis;
  for (int shift = 0; shift < 64; shift += 8) hash = (hash ^ ((seed >> shift) & 0xFF)) * prime;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * prime;
  return hash;
}

}  // namespace

Draw Draw::of(std::string_view concern) const {
  return Draw(mixed(seed_, concern));
}

bool Draw::chance(double probability) {
  constexpr double unit = 1.0 / 9007199254740992.0;  // 2 to the power of -53
  return static_cast<double>(engine_() >> 11) * unit < probability;
}

int Draw::integer(int least, int most) {
  const auto count = static_cast<std::size_t>(most - least) + 1;
  return least + static_cast<int>(index(count));
}

double Draw::number(double least, double most) {
  constexpr double thousandths = 1000;
  return integer(static_cast<int>(least * thousandths), static_cast<int>(most * thousandths)) /
         thousandths;
}

std::size_t Draw::index(std::size_t count) {
  return static_cast<std::size_t>(engine_() % count);
}

}  // namespace tessarine::test
