// The calls of the tool that a desktop was told of.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/value.h"

namespace simulator {

struct ToolCall {
  std::vector<std::string> arguments;  // without the program's own name
  Seconds startedAt = 0;
  std::optional<Seconds> endedAt;  // absent while it runs
  std::optional<int> status;       // absent while it runs, and when it ended without telling one
  std::string output;              // what it printed on standard output
  // What a choice is to choose: its --path or, once it reported one, its "stagedPath"; absolute,
  // and without links as they were at that moment. Empty without either.
  std::string target;
};

class CallLog {
 public:
  // A call begins; its number. Times are the desktop's, and each is at least the one before.
  // `folder` is the call's current folder.
  std::size_t begin(std::vector<std::string> arguments, const std::string& folder, Seconds now);
  // It ended with this status after printing this.
  void end(std::size_t call, int status, std::string output, Seconds now);
  // It is gone and told nothing.
  void lose(std::size_t call, Seconds now);
  // The same for every call that still runs.
  void loseAll(Seconds now);

  const std::vector<ToolCall>& calls() const { return calls_; }  // in the order of their begin

 private:
  std::vector<ToolCall> calls_;
};

}  // namespace simulator
