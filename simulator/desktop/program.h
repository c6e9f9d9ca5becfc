// A program that runs on the simulated desktop.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop/request.h"
#include "simulator/desktop/value.h"

namespace simulator {

class Desktop;

using ProgramId = std::uint64_t;

// One run of a program. Its code does a step, asks for the next one `after` some time, and `end`s.
// Once it has ended, no further step runs. SIGTERM ends it at once, with exit status 15, unless it
// catches that.
class ProgramRun : public std::enable_shared_from_this<ProgramRun> {
 public:
  ProgramRun(Desktop& desktop, ProgramId id, std::string path, std::vector<std::string> arguments);

  Desktop& desktop() { return desktop_; }
  ProgramId id() const { return id_; }
  const std::vector<std::string>& arguments() const { return arguments_; }
  void print(const std::string& text) { result_.standardOutput += text; }
  void complain(const std::string& text) { result_.standardError += text; }
  void after(Seconds delay, std::function<void()> step);
  void end(int status);
  // SIGTERM no longer ends the run: `step` runs instead.
  void catchTermination(std::function<void()> step) { on_termination_ = std::move(step); }
  void terminate();  // what SIGTERM does: nothing to a run that has ended
  bool ended() const { return ended_; }
  const ProgramResult& result() const { return result_; }

 private:
  Desktop& desktop_;
  ProgramId id_;
  std::string path_;
  std::vector<std::string> arguments_;
  ProgramResult result_;
  bool ended_ = false;
  std::function<void()> on_termination_;
};

// Starts a run: asks for its first step.
using ProgramMain = std::function<void(ProgramRun&)>;

}  // namespace simulator
