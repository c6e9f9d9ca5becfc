// Cases of docs/limits.md that concern processes rather than a desktop: run by the tests of the
// built programs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tessarine::test {

// What came of one run.
struct Seen {
  // "ok" or the first words of the error; then what the run did besides, as the page explains it.
  std::string answer;
  std::string verdict;  // simulator/judge/verdict.h
  std::string panels;   // "chosen PATH", "cancelled" or "open" for each, joined by ", "
  bool operator==(const Seen&) const = default;
};

inline void PrintTo(const Seen& seen, std::ostream* stream) {
  *stream << "{\"" << seen.answer << "\", \"" << seen.verdict << "\", \"" << seen.panels << "\"}";
}

struct ProcessCase {
  std::string heading;               // as it stands in the page
  std::vector<std::string> command;  // as the page shows it
  Seen without;
  Seen with;  // with --verify, too
};

inline const ProcessCase helperOfTheCurrentFolder{
    "A bare name runs a helper of the current folder",
    {"choose-folder", "--strict-background", "--path", "start/target"},
    {"ok, the folder's program ran", "false success: panel 1 is still open", "open"},
    {"ok, the folder's program ran", "true", "chosen start/target"}};

inline const ProcessCase resultThatCannotBePrinted{
    "A result that cannot be printed",
    {"choose-folder", "--strict-background", "--path", "start/target"},
    {"cannot write to standard output", "unreported: panel 1 chose start/target",
     "chosen start/target"},
    {"cannot write to standard output", "unreported: panel 1 chose start/target",
     "chosen start/target"}};

}  // namespace tessarine::test
