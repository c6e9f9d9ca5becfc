// Every finder against its plainest form, on random trees: deep and wide ones, ones that loop back,
// with elements that refuse, keep waiting, never answer or go away while they are asked.
#include <algorithm>
#include <functional>
#include <memory>
#include <random>

#include "dialog/controls.h"
#include "dialog/detection.h"
#include "dialog/file_list.h"
#include "dialog/plain_finders.h"
#include "dialog/traversal.h"
#include "navigation/path_analysis.h"
#include "navigation/verification.h"
#include "simulator/frameworks/object.h"
#include "support/world.h"

namespace tessarine::test::equal_walks {
namespace {

using Node = simulator::Element;
using Verb = simulator::AccessibilityRequest::Verb;
using Texts = std::vector<std::string>;

const Texts roles{"AXGroup",       "AXSplitGroup",  "AXScrollArea", "AXOutline", "AXRow",
                  "AXCell",        "AXTextField",   "AXTextField",  "AXButton",  "AXStaticText",
                  "AXPopUpButton", "AXPopUpButton", "AXMenuItem",   "AXSheet",   "AXWindow"};
const Texts titles{"", "", "Cancel", "Choose", "取消", "选择", "Open", "usr", "位置：lib"};
const Texts values{"", "", "usr", "lib", "/usr", "~", "在位置", "选择扩展程序目录…"};
const Texts descriptions{"", "", "列表视图", "边栏", "sidebar", "打开", "usr"};
const Texts attributes{"AXRole",    "AXChildren", "AXTitle", "AXValue", "AXDescription",
                       "AXFocused", "AXSize",     "AXURL",   "AXParent"};

enum class Trouble { none, refusals, stalls, departures };

// The same seed makes the same tree, with the same troubles.
class RandomTree : public BareDesktop {
 public:
  RandomTree(unsigned seed, Trouble trouble) : random_(seed) {
    const int windows = 1 + below(2);
    for (int i = 0; i < windows; ++i) grow(addWindow("page"), trouble);
    root = handle(*desktop.windows().front()->element);
    if (trouble == Trouble::refusals) addRefusals();
    if (trouble == Trouble::departures) addDeparture();
  }

  Element root = appHandle();  // the first window

 private:
  int below(int count) { return std::uniform_int_distribution<>(0, count - 1)(random_); }
  bool oneIn(int count) { return below(count) == 0; }
  const std::string& any(const Texts& texts) {
    return texts[static_cast<std::size_t>(below(static_cast<int>(texts.size())))];
  }

  // Hangs nodes on any node before, on late ones in deep trees, on early ones in wide ones.
  void grow(Node& window, Trouble trouble) {
    const int shape = below(3);
    const int size = std::vector{20, 60, 60, 300, 800}[static_cast<std::size_t>(below(5))];
    std::vector<Node*> nodes{&window};
    for (int i = 0; i < size; ++i) {
      const int count = static_cast<int>(nodes.size());
      const int wide = below(1 + count / 20);
      const int deep = count - 1 - below(std::min(count, 4));
      const int parent = shape == 0 ? below(count) : shape == 1 ? wide : deep;
      Node& node = nodes[static_cast<std::size_t>(parent)]->addChild(any(roles));
      fill(node);
      if (trouble == Trouble::stalls && oneIn(20)) node.setReadableFrom(oneIn(8) ? 1e8 : below(4));
      if (trouble != Trouble::departures && oneIn(60))
        node.showChildrenOf(*nodes[static_cast<std::size_t>(below(count))]);
      if (node.role() == "AXRow") rows_.push_back(node.id());
      if (node.role() == "AXOutline") outlines_.push_back(&node);
      nodes.push_back(&node);
    }
    for (Node* outline : outlines_) outline->set("AXSelectedRows", simulator::List{someRow()});
    all_.insert(all_.end(), nodes.begin(), nodes.end());
  }

  void fill(Node& node) {
    node.set("AXTitle", any(titles));
    node.set("AXValue", any(values));
    node.set("AXDescription", any(descriptions));
    if (oneIn(4)) node.set("AXFilename", any({"usr", "lib"}));
    if (oneIn(4)) node.set("AXURL", simulator::Url{any({"file:///usr/", "file:///usr/lib"})});
    if (oneIn(8)) node.set("AXSubrole", "AXSearchField");
    if (oneIn(12)) node.set("AXFocused", true);
    if (oneIn(2)) node.setFrame({0, 0, oneIn(2) ? 119.0 : 120.0, 20});
    if (oneIn(2)) node.addAction("AXConfirm", [] { return simulator::ax::success; });
  }

  simulator::Value someRow() {
    if (rows_.empty()) return {};
    return rows_[static_cast<std::size_t>(below(static_cast<int>(rows_.size())))];
  }

  // Of single attributes, of every read, and of requests for several.
  void addRefusals() {
    namespace ax = simulator::ax;
    const std::vector<std::int32_t> errors{ax::failure, ax::cannotComplete, ax::notImplemented,
                                           ax::success};
    for (int i = 0; i < 3; ++i) {
      const Verb verb = oneIn(2) ? Verb::copySeveral : Verb::copy;
      simulator::RefusedRequests refused{verb, errors[static_cast<std::size_t>(below(4))]};
      if (verb == Verb::copy && !oneIn(3)) refused.name = any(attributes);
      if (!oneIn(4)) refused.role = any(roles);
      if (refused.name == "AXParent" && refused.error == ax::success) refused.error = ax::noValue;
      desktop.faults().refused_requests.push_back(refused);
    }
  }

  // Once some element has been asked for anything, one that comes after it is removed.
  void addDeparture() {
    std::vector<Node*> order(all_.begin(), all_.begin() + 1);
    for (std::size_t i = 0; i < order.size(); ++i) {
      for (const auto& child : order[i]->children()) order.push_back(child.get());
    }
    const int count = static_cast<int>(order.size());
    const int asked = below(count - 1);
    const auto leaving = static_cast<std::size_t>(asked + 1 + below(count - asked - 1));
    desktop.watch([this, id = order[static_cast<std::size_t>(asked)]->id(),
                   leaver = order[leaving]]() mutable {
      const auto& lines = desktop.record().lines();
      for (; seen_ < lines.size(); ++seen_) {
        const auto* request = std::get_if<simulator::AccessibilityRequest>(&lines[seen_].entry);
        if (leaver == nullptr || request == nullptr || !(request->element == id)) continue;
        leaver->parent()->removeChild(*leaver);
        leaver = nullptr;
      }
    });
  }

  std::mt19937 random_;
  std::vector<Node*> all_;
  std::vector<Node*> outlines_;
  std::vector<simulator::ElementId> rows_;
  std::size_t seen_ = 0;
};

// Elements by their numbers in the model, which do not depend on what they answer.
std::string text(const Element& element) {
  return std::to_string(simulator::payload<simulator::ElementId>(element.get(), "test").number);
}
std::string text(const NodeRef& node) {
  return text(node.element);
}
std::string text(bool answer) {
  return answer ? "yes" : "no";
}
std::string text(const std::string& found) {
  return found;
}
template <class Found>
std::string text(const std::optional<Found>& found) {
  return found ? text(*found) : "nothing";
}
template <class Found>
std::string text(const std::vector<Found>& found) {
  std::string list;
  for (const Found& one : found) list += text(one) + ",";
  return list;
}

// A question below a root, in both ways. `walks`: how many walks answer it.
struct Question {
  std::string name;
  int walks;
  std::function<std::string(const Element& root)> finder;
  std::function<std::string(const Element& root)> plainly;
};

// A finder and its plainest form with the same further arguments.
#define ASKED(walks, finder, plainly)                                                              \
  Question {                                                                                       \
#finder, walks,                                                                                \
        [](const Element& r) { return text(finder); },                                             \
                                                    [](const Element& r) { return text(plainly); } \
  }

Element browser() {
  return Element::application(browserPid);
}

std::string plainPlace(const Element& root) {
  const auto innermost = plain::sidebarItem(root, "lib", "/usr/lib");
  return text(innermost ? innermost : plain::sidebarItem(root, "usr", "/usr"));
}

std::vector<Question> questions() {
  return {
      ASKED(1, findButton(r, tables().cancelButtonTitles),
            plain::button(r, tables().cancelButtonTitles)),
      ASKED(1, findChooseButton(r), plain::button(r, {"选择", "Open", "打开", "Choose"})),
      ASKED(1, findLocationPopup(r), plain::locationPopup(r)),
      ASKED(1, findMenuItem(r, "usr"), plain::menuItem(r, "usr")),
      ASKED(1, findSearchField(r), plain::searchField(r)),
      ASKED(1, findChooserNameField(r, "usr"), plain::nameField(r, "usr")),
      ASKED(1, findGoToFolderField(r), plain::goToField(r)),
      ASKED(1, findFileList(r), plain::fileList(r)),
      ASKED(1, findOutline(r, sidebarMarker), plain::outline(r, "边栏")),
      ASKED(1, subtreeHasChooserSignature(r), plain::isChooser(r)),
      ASKED(1, isOpenDialogRoot(r), plain::isDialog(r)),
      ASKED(2, fileListCandidates(r), plain::candidates(r)),
      ASKED(2, fileListFingerprint(r), plain::fingerprint(r)),
      ASKED(2, findFolderRow(r, "/usr/", "lib"), plain::folderRow(r, "/usr/", "lib")),
      ASKED(2, findSidebarItem(r, "usr", "/usr"), plain::sidebarItem(r, "usr", "/usr")),
      {"findSidebarPlace", 2,
       [](const Element& r) {
         const auto found = findSidebarPlace(r, {{"/usr/lib", "lib"}, {"/usr", "usr"}});
         return found ? text(found->item) : "nothing";
       },
       plainPlace},
      ASKED(2, selectedRowLabels(r), plain::selectedLabels(r)),
      ASKED(2, chooserCurrentFolderMatches(r, "/usr/lib"), plain::showsFolder(r, "lib", "lib")),
      {"chooserReached", 3, [](const Element& r) { return text(chooserReached(r, "/usr/lib")); },
       [](const Element& r) {
         const auto labels = plain::selectedLabels(r);
         return text(plain::showsFolder(r, "lib", "lib") ||
                     std::find(labels.begin(), labels.end(), "lib") != labels.end());
       }},
      {"fastDialogNodes", 2, [](const Element&) { return text(fastDialogNodes(browser())); },
       [](const Element&) { return text(plain::fastDialog(browser())); }},
      {"findEmbeddedChooserRoot", 9,
       [](const Element&) { return text(findEmbeddedChooserRoot(browser())); },
       [](const Element&) { return text(plain::embeddedChooser(browser())); }},
  };
}

// How many of the answers found something. Each question has a tree of its own where asking changes
// the tree.
int compareAll(Trouble trouble, unsigned seeds, int mostWalks) {
  const bool fresh = trouble == Trouble::stalls || trouble == Trouble::departures;
  int found = 0;
  for (unsigned seed = 1; seed <= seeds; ++seed) {
    auto tree = std::make_unique<RandomTree>(seed, trouble);
    const auto answerTo = [&](const std::function<std::string(const Element&)>& ask) {
      if (fresh) {
        tree.reset();
        tree = std::make_unique<RandomTree>(seed, trouble);
      }
      return ask(tree->root);
    };
    for (const Question& question : questions()) {
      if (question.walks > mostWalks) continue;
      const std::string answer = answerTo(question.finder);
      EXPECT_EQ(answer, answerTo(question.plainly)) << question.name << ", seed " << seed;
      if (answer != "nothing" && answer != "no" && !answer.empty()) ++found;
    }
  }
  return found;
}

constexpr int everyQuestion = 9;

TEST(EqualWalks, FindTheSameOnDeepWideAndLoopingTrees) {
  EXPECT_GT(compareAll(Trouble::none, 15, everyQuestion), 100);
}

TEST(EqualWalks, FindTheSameWhereElementsRefuse) {
  EXPECT_GT(compareAll(Trouble::refusals, 25, everyQuestion), 100);
}

TEST(EqualWalks, FindTheSameWhereElementsKeepWaitingOrNeverAnswer) {
  EXPECT_GT(compareAll(Trouble::stalls, 6, everyQuestion), 40);
}

// Of one walk only: a second one begins at another time than after a first one that asks more.
TEST(EqualWalks, FindTheSameWhereElementsGoAwayMeanwhile) {
  EXPECT_GT(compareAll(Trouble::departures, 10, 1), 40);
}

}  // namespace
}  // namespace tessarine::test::equal_walks
