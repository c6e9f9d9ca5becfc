// Random draws that are the same on every machine: the distributions of the standard library differ
// from one library to the next, its generators do not. (Nor does the order in which the arguments
// of a function are evaluated stay the same: never two draws among them, except in braces.)
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

namespace tessarine::test {

class Draw {
 public:
  explicit Draw(std::uint64_t seed) : seed_(seed), engine_(seed) {}

  // A stream of its own for one concern: what is drawn from it changes no other stream, so that
  // something new that is drawn leaves everything else of a seed as it was.
  Draw of(std::string_view concern) const;

  bool chance(double probability);
  int integer(int least, int most);          // either one included
  double number(double least, double most);  // in thousandths
  std::size_t index(std::size_t count);      // less than count, which is not 0

  template <class Item>
  const Item& one(const std::vector<Item>& items) {
    return items.at(index(items.size()));
  }

  // One of the items, each as often as its weight says.
  template <class Item>
  const Item& weighted(const std::vector<std::pair<int, Item>>& items) {
    int sum = 0;
    for (const auto& [weight, item] : items) sum += weight;
    int at = integer(1, sum);
    for (const auto& [weight, item] : items) {
      at -= weight;
      if (at <= 0) return item;
    }
    return items.back().second;
  }

 private:
  std::uint64_t seed_;
  std::mt19937_64 engine_;
};

}  // namespace tessarine::test
