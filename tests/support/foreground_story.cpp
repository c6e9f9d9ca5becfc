#include "support/foreground_story.h"

namespace tessarine::test {
namespace {

struct Teller {
  std::string operator()(const simulator::WorkspaceRequest& request) const {
    return request.question == "frontmost" ? "frontmost?" : "";
  }
  std::string operator()(const simulator::ActivationAsked& asked) const {
    return asked.origin == simulator::Origin::tool ? "activate " + std::to_string(asked.pid) : "";
  }
  std::string operator()(const simulator::ProgramStarted& started) const {
    return started.path == "/usr/bin/osascript" ? "osascript " + started.arguments.back() : "";
  }
  std::string operator()(const simulator::Milestone& milestone) const {
    return milestone.text == "operation" ? milestone.text : "";
  }
  template <class Other>
  std::string operator()(const Other&) const {
    return "";
  }
};

}  // namespace

std::vector<std::string> foregroundStory(const simulator::Record& record) {
  std::vector<std::string> story;
  for (const auto& line : record.lines()) {
    const std::string told = std::visit(Teller{}, line.entry);
    if (!told.empty()) story.push_back(told);
  }
  return story;
}

std::string frontmostScript(std::int32_t pid) {
  return "osascript tell application \"System Events\" to set frontmost of first process whose "
         "unix id is " +
         std::to_string(pid) + " to true";
}

}  // namespace tessarine::test
