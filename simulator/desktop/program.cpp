#include "simulator/desktop/program.h"

#include "simulator/desktop/desktop.h"

namespace simulator {
namespace {

constexpr int terminated_status = 15;

}  // namespace

ProgramRun::ProgramRun(Desktop& desktop, ProgramId id, std::string path,
                       std::vector<std::string> arguments)
    : desktop_(desktop), id_(id), path_(std::move(path)), arguments_(std::move(arguments)) {}

void ProgramRun::after(Seconds delay, std::function<void()> step) {
  desktop_.schedule(delay, [run = shared_from_this(), step = std::move(step)] {
    if (!run->ended_) step();
  });
}

void ProgramRun::end(int status) {
  ended_ = true;
  result_.exitStatus = status;
  desktop_.record().add(desktop_.now(), ProgramEnded{id_, path_, status});
}

void ProgramRun::terminate() {
  if (ended_) return;
  if (on_termination_) return on_termination_();
  end(terminated_status);
}

}  // namespace simulator
