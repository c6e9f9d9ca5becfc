// Keeps the user's own words out of a scenario.
#pragma once

#include <map>
#include <string>

namespace simulator::importing {

// Puts placeholders in the place of texts, the same one for the same text: "name-1", and "/name-2"
// for a text that begins like a path, by which a field for paths is known.
class Placeholders {
 public:
  explicit Placeholders(bool keep) : keep_(keep) {}

  // Leaves the panel's own texts as they are and, when names are kept, whatever cannot hold a path.
  std::string of(const std::string& text, const std::string& kind = "name");
  // The same for a role, a subrole or an action: those that are written like accessibility's ("AX"
  // and letters) stay.
  std::string ofTerm(const std::string& term, const std::string& kind);

 private:
  bool keep_;
  std::map<std::string, std::string> given_;
  std::map<std::string, int> counts_;
};

}  // namespace simulator::importing
