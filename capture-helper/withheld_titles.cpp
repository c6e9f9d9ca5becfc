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

// What has been found out until the deadline, one process after the other.
class Search {
 public:
  explicit Search(double deadline) : deadline_(deadline) {}

  const std::vector<TitledFrame>& titledFrames(std::int32_t pid) {
    const auto [asked, isNew] = found_.try_emplace(pid);
    if (isNew && !isOver()) {
      for (const Element& window : axElements(Element::application(pid), "AXWindows")) {
        addWithSheets(window, sheetDepth, asked->second);
      }
    }
    return asked->second;
  }

 private:
  bool isOver() const { return currentTime() >= deadline_; }

  void addWithSheets(const Element& window, int depth, std::vector<TitledFrame>& found) const {
    if (isOver()) return;
    found.push_back({axFrame(window), axTitle(window)});
    if (depth == 0) return;
    for (const Element& child : axChildren(window)) {
      if (axRole(child) == "AXSheet") addWithSheets(child, depth - 1, found);
    }
  }

  double deadline_;
  std::map<std::int32_t, std::vector<TitledFrame>> found_;
};

bool isLookedUp(const ListedWindow& window) {
  return !window.title && window.layer >= normalLayer && window.layer <= modalPanelLayer;
}

}  // namespace

void readWithheldTitles(std::vector<ListedWindow>& windows) {
  if (std::none_of(windows.begin(), windows.end(), isLookedUp)) return;
  const AnswerLimit limit(answerSeconds);
  Search search(currentTime() + totalSeconds);
  for (ListedWindow& window : windows) {
    if (!isLookedUp(window)) continue;
    const auto& candidates = search.titledFrames(window.pid);
    const auto same =
        std::find_if(candidates.begin(), candidates.end(), [&](const TitledFrame& candidate) {
          return candidate.frame == window.frame && !candidate.title.empty();
        });
    if (same != candidates.end()) window.title = same->title;
  }
}

}  // namespace tessarine
