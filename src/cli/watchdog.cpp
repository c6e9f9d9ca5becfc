#include "cli/watchdog.h"

#include <exception>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "core/numbers.h"
#include "core/tool_error.h"
#include "platform/worker.h"

namespace tessarine {
namespace {

// Written by the worker, once, and read only after it has ended.
struct Outcome {
  std::optional<Result> result;
  std::exception_ptr error;
};

}  // namespace

Result runUnderWatchdog(double budgetSeconds, std::function<Result()> work) {
  const auto outcome = std::make_shared<Outcome>();
  const bool ended = endsWithin(budgetSeconds, [outcome, work = std::move(work)] {
    try {
      outcome->result = work();
    } catch (...) {
      outcome->error = std::current_exception();
    }
  });
  if (!ended) {
    throw ToolError::timedOut("timed out after " + formatDouble(budgetSeconds) +
                              "s (global watchdog)");
  }
  if (outcome->error) std::rethrow_exception(outcome->error);
  return std::move(*outcome->result);
}

}  // namespace tessarine
