#include "support/result_log.h"

#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>

namespace tessarine::test {
namespace {

using Json = nlohmann::json;

// Keys whose values are one of a few words.
const std::set<std::string> wordKeys{"command",  "strategy",  "commit", "kind",
                                     "verified", "dialogApp", "label",  "key"};

std::string shapeOfText(const std::string& text) {
  if (text.empty()) return "no text";
  return text.front() == '/' ? "path" : "text";
}

std::string shapeOfNumber(const Json& number) {
  const double value = number.get<double>();
  const std::string sign = value < 0 ? "negative " : value > 0 ? "positive " : "zero ";
  return sign + (number.is_number_float() ? "number" : "integer");
}

// Entries of a list of one shape are one.
Json shapeOf(const Json& value) {
  if (value.is_string()) return shapeOfText(value);
  if (value.is_number()) return shapeOfNumber(value);
  if (value.is_array()) {
    std::set<Json> shapes;
    for (const Json& entry : value) shapes.insert(shapeOf(entry));
    return Json(shapes);
  }
  if (!value.is_object()) return value;
  Json shape = Json::object();
  for (const auto& [key, member] : value.items()) {
    shape[key] = wordKeys.contains(key) ? member : shapeOf(member);
  }
  return shape;
}

}  // namespace

void keepResult(const std::string& output) {
  static std::mutex mutex;  // some tests run programs side by side
  static std::set<Json> known;
  const char* folder = std::getenv("TESSARINE_RESULTS");
  if (folder == nullptr) return;
  const Json result = Json::parse(output, nullptr, false);
  if (!result.is_object() || !result.contains("ok") || !result.contains("command")) return;
  if (result["command"] == "permissions") return;  // the capture helper's
  const std::lock_guard lock(mutex);
  if (!known.insert(shapeOf(result)).second) return;
  std::ofstream file(std::string(folder) + "/" + std::to_string(getpid()) + ".jsonl",
                     std::ios::app);
  file << result.dump() << '\n';
}

}  // namespace tessarine::test
