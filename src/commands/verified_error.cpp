#include "commands/verified_error.h"

#include "core/text.h"
#include "dialog/panel_sight.h"

namespace tessarine {

ToolError notVerified(const std::string& text) {
  return ToolError::actionFailed("not verified: " + onOneLine(text));
}

std::string mismatchText(const PanelChoice& choice) {
  const std::string shown =
      choice.lastSight ? describe(*choice.lastSight) : "nothing that could be read";
  const std::string why = choice.problem.empty() ? "" : " (" + choice.problem + ")";
  return "the panel shows " + shown + ", not " + choice.target.path + why;
}

std::string afterReturnText(const PanelChoice& choice) {
  return choice.returnUnderWay ? ": what it will choose is unknown" : "";
}

}  // namespace tessarine
