#include "simulator/judge/call_log.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

namespace simulator {
namespace {

namespace fs = std::filesystem;

// The tool takes ".." out of a path before it follows any link.
std::string withoutLinks(const fs::path& path) {
  const fs::path normal = path.lexically_normal();
  std::error_code failed;
  std::string resolved = fs::weakly_canonical(normal, failed).string();
  if (failed) resolved = normal.string();
  while (resolved.size() > 1 && resolved.ends_with('/')) resolved.pop_back();
  return resolved;
}

// The last one counts, as it does for the tool.
std::string pathArgument(const std::vector<std::string>& arguments, const std::string& folder) {
  std::string target;
  for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
    if (arguments[i] == "--path") target = withoutLinks(fs::path(folder) / arguments[++i]);
  }
  return target;
}

}  // namespace

std::size_t CallLog::begin(std::vector<std::string> arguments, const std::string& folder,
                           Seconds now) {
  ToolCall call;
  call.target = pathArgument(arguments, folder);
  call.arguments = std::move(arguments);
  call.startedAt = now;
  calls_.push_back(std::move(call));
  return calls_.size() - 1;
}

void CallLog::end(std::size_t number, int status, std::string output, Seconds now) {
  ToolCall& call = calls_.at(number);
  call.endedAt = now;
  call.status = status;
  call.output = std::move(output);
  const auto result = nlohmann::json::parse(call.output, nullptr, false);
  if (!result.is_object() || !result.contains("stagedPath")) return;
  if (const auto& staged = result["stagedPath"]; staged.is_string()) {
    call.target = withoutLinks(staged.get<std::string>());
  }
}

void CallLog::lose(std::size_t number, Seconds now) {
  calls_.at(number).endedAt = now;
}

void CallLog::loseAll(Seconds now) {
  for (ToolCall& call : calls_) {
    if (!call.endedAt) call.endedAt = now;
  }
}

}  // namespace simulator
