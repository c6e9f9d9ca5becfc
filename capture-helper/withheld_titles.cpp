#include "capture-helper/withheld_titles.h"

#include <algorithm>
#include <array>
#include <map>

#include "platform/accessibility.h"
#include "platform/clock.h"

namespace tessarine {
namespace {

constexpr double answerSeconds = 0.5;
constexpr double totalSeconds = 1.5;
constexpr int sheetDepth = 3;  // a panel's sheet may carry the go-to-folder sheet

// Every Open panel has this identifier; as a sheet it has no title of its own.
constexpr const char* openPanelIdentifier = "open-panel";
constexpr const char* openPanelTitle = "Open";

constexpr std::array likelyOwners{"Open and Save Panel Service", "Google Chrome", "Microsoft Edge"};

// The levels from normal windows to modal panels (CGWindowLevel.h).
constexpr int normalLayer = 0;
constexpr int modalPanelLayer = 8;

std::vector<Element> windowsOf(const Element& app) {
  return axElements(app, "AXWindows");
}

std::string identifier(const Element& element) {
  return axString(element, "AXIdentifier").value_or("");
}

struct TitledFrame {
  Rect frame;
  std::string title;
};

// What has been found out until the deadline, one process after the other. For as long as it lives
// this program waits no longer than it says for each answer.
class Search {
 public:
  explicit Search(double deadline) : deadline_(deadline) {}
  ~Search() { setMessagingTimeout(0); }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  // The title of the frontmost window or sheet at that place that no window was given before.
  std::optional<std::string> takeTitle(std::int32_t pid, const Rect& frame) {
    auto& candidates = titledFrames(pid);
    const auto same = std::ranges::find_if(
        candidates, [&](const auto& candidate) { return candidate.frame == frame; });
    if (same == candidates.end()) return {};
    std::string title = std::move(same->title);
    candidates.erase(same);
    return title;
  }

 private:
  // Front to back.
  std::vector<TitledFrame>& titledFrames(std::int32_t pid) {
    const auto [asked, isNew] = found_.try_emplace(pid);
    if (isNew) {
      for (const Element& window : ask(windowsOf, Element::application(pid))) {
        addWithSheets(window, sheetDepth, asked->second);
      }
    }
    return asked->second;
  }

  // Empty once the time is up. A reader asks twice at most, each time for no longer than what was
  // left: the last answer is awaited for half a second beyond the deadline.
  template <class Reader>
  auto ask(const Reader& read, const Element& element) -> decltype(read(element)) {
    const double leftSeconds = deadline_ - currentTime();
    if (leftSeconds <= 0) return {};
    setMessagingTimeout(std::min(answerSeconds, leftSeconds));
    return read(element);
  }

  // Sheets are in front of what they are attached to.
  void addWithSheets(const Element& window, int depth, std::vector<TitledFrame>& found) {
    TitledFrame own{ask(axFrame, window), title(window)};
    if (depth > 0) {
      for (const Element& child : ask(axChildren, window)) {
        if (ask(axRole, child) == "AXSheet") addWithSheets(child, depth - 1, found);
      }
    }
    if (!own.title.empty()) found.push_back(std::move(own));
  }

  std::string title(const Element& window) {
    std::string own = ask(axTitle, window);
    if (own.empty() && ask(identifier, window) == openPanelIdentifier) return openPanelTitle;
    return own;
  }

  double deadline_;
  std::map<std::int32_t, std::vector<TitledFrame>> found_;
};

bool isLookedUp(const ListedWindow& window) {
  return window.title.value_or("").empty() && window.pid > 0 && window.layer >= normalLayer &&
         window.layer <= modalPanelLayer;
}

// Browsers and the services that draw panels. They are asked first, as they are behind whatever
// the person at the machine works with.
bool mayHavePanel(const ListedWindow& window) {
  const auto begins = [&](const char* name) { return window.app.starts_with(name); };
  return std::ranges::any_of(likelyOwners, begins);
}

}  // namespace

void readWithheldTitles(std::vector<ListedWindow>& windows) {
  if (std::ranges::none_of(windows, isLookedUp)) return;
  Search search(currentTime() + totalSeconds);
  for (const bool likely : {true, false}) {
    for (ListedWindow& window : windows) {
      if (!isLookedUp(window) || mayHavePanel(window) != likely) continue;
      if (auto title = search.takeTitle(window.pid, window.frame)) window.title = std::move(title);
    }
  }
}

}  // namespace tessarine
