#include "capture-helper/withheld_titles.h"

#include <algorithm>
#include <map>

#include "platform/accessibility.h"
#include "platform/clock.h"

namespace tessarine {
namespace {

constexpr float answerSeconds = 0.5F;
constexpr double totalSeconds = 1.5;
constexpr int sheetDepth = 3;  // a panel's sheet may carry the go-to-folder sheet

// The levels from normal windows to modal panels (CGWindowLevel.h).
constexpr int normalLayer = 0;
constexpr int modalPanelLayer = 8;

// How long this program waits for each answer of another process, for as long as it lives.
class AnswerLimit {
 public:
  explicit AnswerLimit(float seconds) { set(seconds); }
  ~AnswerLimit() { set(0); }  // the platform's default
  AnswerLimit(const AnswerLimit&) = delete;
  AnswerLimit& operator=(const AnswerLimit&) = delete;

 private:
  static void set(float seconds) {
    const auto everything = CfRef<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
    AXUIElementSetMessagingTimeout(everything.get(), seconds);
  }
};

struct TitledFrame {
  Rect frame;
  std::string title;
};

void addWithSheets(const Element& window, int depth, std::vector<TitledFrame>& found) {
  found.push_back({axFrame(window), axTitle(window)});
  if (depth == 0) return;
  for (const Element& child : axChildren(window)) {
    if (axRole(child) == "AXSheet") addWithSheets(child, depth - 1, found);
  }
}

std::vector<TitledFrame> titledFrames(std::int32_t pid) {
  std::vector<TitledFrame> found;
  for (const Element& window : axElements(Element::application(pid), "AXWindows")) {
    addWithSheets(window, sheetDepth, found);
  }
  return found;
}

bool isLookedUp(const ListedWindow& window) {
  return !window.title && window.layer >= normalLayer && window.layer <= modalPanelLayer;
}

}  // namespace

void readWithheldTitles(std::vector<ListedWindow>& windows) {
  if (std::none_of(windows.begin(), windows.end(), isLookedUp)) return;
  const AnswerLimit limit(answerSeconds);
  const double deadline = currentTime() + totalSeconds;
  std::map<std::int32_t, std::vector<TitledFrame>> asked;
  for (ListedWindow& window : windows) {
    if (!isLookedUp(window)) continue;
    if (!asked.contains(window.pid)) {
      if (currentTime() >= deadline) continue;
      asked.emplace(window.pid, titledFrames(window.pid));
    }
    const auto& candidates = asked.at(window.pid);
    const auto same =
        std::find_if(candidates.begin(), candidates.end(), [&](const TitledFrame& candidate) {
          return candidate.frame == window.frame && !candidate.title.empty();
        });
    if (same != candidates.end()) window.title = same->title;
  }
}

}  // namespace tessarine
