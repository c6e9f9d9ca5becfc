#include "simulator/scenario/json_object.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "simulator/scenario/json_text.h"
#include "simulator/scenario/scenario.h"

namespace simulator {
namespace {

constexpr double farthest = 100000;  // points

std::string printed(double number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

std::string range(double least, double most) {
  return " from " + printed(least) + " to " + printed(most);
}

}  // namespace

void JsonPlace::refuse(const std::string& expectation) const {
  throw ScenarioError(file + ": " + (pointer.empty() ? "/" : pointer) + ": " + expectation);
}

JsonPlace JsonPlace::at(const std::string& key) const {
  return {value.at(key), file, pointerTo(pointer, key)};
}

JsonPlace JsonPlace::at(std::size_t index) const {
  return {value.at(index), file, pointer + "/" + std::to_string(index)};
}

std::string JsonPlace::text() const {
  if (!value.is_string()) refuse("expected a text");
  return value.get<std::string>();
}

bool JsonPlace::flag() const {
  if (!value.is_boolean()) refuse("expected true or false");
  return value.get<bool>();
}

double JsonPlace::number(double least, double most) const {
  const double found = value.is_number() ? value.get<double>() : most + 1;
  if (found < least || found > most) refuse("expected a number" + range(least, most));
  return found;
}

std::int32_t JsonPlace::integer(std::int32_t least, std::int32_t most) const {
  const double found = value.is_number() ? value.get<double>() : most + 1.0;
  if (found < least || found > most || found != std::floor(found)) {
    refuse("expected a whole number from " + std::to_string(least) + " to " + std::to_string(most));
  }
  return static_cast<std::int32_t>(found);
}

std::vector<JsonPlace> JsonPlace::items() const {
  if (!value.is_array()) refuse("expected a list");
  std::vector<JsonPlace> places;
  for (std::size_t i = 0; i < value.size(); ++i) places.push_back(at(i));
  return places;
}

JsonObject::JsonObject(const JsonPlace& place) : place_(place) {
  if (!place_.value.is_object()) place_.refuse("expected an object");
}

std::optional<JsonPlace> JsonObject::find(const std::string& key) {
  if (std::find(known_.begin(), known_.end(), key) == known_.end()) known_.push_back(key);
  if (!place_.value.contains(key)) return std::nullopt;
  return place_.at(key);
}

JsonPlace JsonObject::require(const std::string& key) {
  const auto member = find(key);
  if (!member) place_.refuse("expected the key \"" + key + "\", which is required");
  return *member;
}

void JsonObject::read(const std::string& key, std::string& target) {
  if (const auto member = find(key)) target = member->text();
}

void JsonObject::read(const std::string& key, std::optional<std::string>& target) {
  if (const auto member = find(key)) target = member->text();
}

void JsonObject::read(const std::string& key, bool& target) {
  if (const auto member = find(key)) target = member->flag();
}

void JsonObject::read(const std::string& key, double& target, double least, double most) {
  if (const auto member = find(key)) target = member->number(least, most);
}

void JsonObject::read(const std::string& key, std::optional<double>& target, double least,
                      double most) {
  if (const auto member = find(key)) target = member->number(least, most);
}

void JsonObject::read(const std::string& key, std::int32_t& target, std::int32_t least,
                      std::int32_t most) {
  if (const auto member = find(key)) target = member->integer(least, most);
}

void JsonObject::read(const std::string& key, Rect& target) {
  if (const auto member = find(key)) target = readRect(*member);
}

void JsonObject::refuseOthers() const {
  for (const auto& [key, value] : place_.value.items()) {
    if (std::find(known_.begin(), known_.end(), key) != known_.end()) continue;
    std::string expected;
    for (const auto& known : known_) expected += (expected.empty() ? "" : ", ") + known;
    place_.at(key).refuse("no such key; expected one of " + expected);
  }
}

Point readPoint(const JsonPlace& place) {
  JsonObject object(place);
  const Point point{object.require("x").number(-farthest, farthest),
                    object.require("y").number(-farthest, farthest)};
  object.refuseOthers();
  return point;
}

Rect readRect(const JsonPlace& place) {
  JsonObject object(place);
  Rect rect{object.require("x").number(-farthest, farthest),
            object.require("y").number(-farthest, farthest),
            object.require("width").number(1, farthest),
            object.require("height").number(1, farthest)};
  object.refuseOthers();
  return rect;
}

}  // namespace simulator
