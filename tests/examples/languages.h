// The languages in which examples/ has a way of calling the tool, each with the program of
// tests/examples that runs it.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tessarine::test {

struct Language {
  std::string name;
  std::vector<std::string> driver;  // the beginning of a command line
  bool tellsByStatus;               // and by a line on standard error, instead of by JSON
};

inline void PrintTo(const Language& language, std::ostream* stream) {
  *stream << language.name;
}

inline std::vector<Language> languages() {
  const std::string tests = SOURCE_TREE "/tests/examples/";
  return {{"Sh", {"/bin/sh", tests + "drive.sh"}, true},
          {"Bash", {BASH_PROGRAM, tests + "drive.sh"}, true},
          {"Zsh", {ZSH_PROGRAM, tests + "drive.sh"}, true},
          {"Python", {PYTHON_PROGRAM, tests + "drive.py"}, false},
          {"Node", {NODE_PROGRAM, tests + "drive.mjs"}, false}};
}

}  // namespace tessarine::test
