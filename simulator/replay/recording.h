// A record, read back from its file.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/record.h"

namespace simulator {

// Of states and records, as docs/desktop-record.md describes them.
inline constexpr int record_version = 1;

struct RecordedCall {
  std::vector<std::string> arguments;
  Seconds startedAt = 0;
  std::optional<Seconds> endedAt;
  std::optional<int> status;
  std::string verdict;
};

struct Recording {
  std::string scenario;
  std::string verdict;
  std::vector<Rect> screens;             // at least one
  std::map<Pid, std::string> processes;  // their names
  std::vector<std::string> panels;       // what became of each: "chosen /usr", "not chosen"
  std::vector<RecordedCall> calls;
  std::vector<RecordLine>
      lines;  // those that a replay shows; what was only asked is not among them
};

// Throws ScenarioError "FILE: PLACE: WHAT IS EXPECTED" for what is not a record of this version.
// Keys and kinds of entries that it does not know are passed over.
Recording readRecording(const std::filesystem::path& path);

}  // namespace simulator
