// Reads the text of a JSON file, strictly.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace simulator {

// Throws ScenarioError "FILE: line L, column C: expected JSON", or one that names the place of a
// key that stands twice in an object, of too deep a level or, for a number that no double holds,
// none.
nlohmann::ordered_json parseJson(const std::string& text, const std::string& file);

// The JSON pointer to the member. On one line, whatever the key holds.
std::string pointerTo(const std::string& object, const std::string& key);

}  // namespace simulator
