#include "simulator/panel/printed_tree.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <string_view>

namespace simulator {
namespace {

using Roles = std::vector<std::string_view>;
using RoleTable = std::map<std::string_view, Roles>;

// What stands nowhere else.
const RoleTable homes{{"AXRow", {"AXOutline", "AXTable"}},
                      {"AXColumn", {"AXOutline", "AXTable", "AXBrowser"}},
                      {"AXCell", {"AXRow", "AXColumn"}},
                      {"AXMenu", {"AXPopUpButton", "AXMenuButton", "AXMenuItem"}},
                      {"AXMenuItem", {"AXMenu"}},
                      {"AXScrollBar", {"AXScrollArea"}},
                      {"AXValueIndicator", {"AXScrollBar", "AXSlider"}},
                      {"AXSheet", {"AXWindow", "AXDialog", "AXSheet"}}};

// What holds nothing else.
const RoleTable contents{{"AXOutline", {"AXRow", "AXColumn", "AXGroup"}},
                         {"AXTable", {"AXRow", "AXColumn", "AXGroup"}},
                         {"AXRow", {"AXCell"}},
                         {"AXMenu", {"AXMenuItem"}},
                         {"AXMenuItem", {"AXMenu"}},
                         {"AXPopUpButton", {"AXMenu"}},
                         {"AXMenuButton", {"AXMenu"}},
                         {"AXScrollBar", {"AXValueIndicator", "AXButton"}},
                         {"AXTextField", {"AXButton", "AXStaticText"}},
                         {"AXComboBox", {"AXButton", "AXScrollArea"}},
                         {"AXButton", {"AXImage", "AXStaticText"}},
                         {"AXCheckBox", {}},
                         {"AXRadioButton", {}},
                         {"AXStaticText", {}},
                         {"AXImage", {}},
                         {"AXSplitter", {}},
                         {"AXValueIndicator", {}}};

// What a child costs in its place. A listing has less than 10^3 elements, so that no sum overflows;
// looseness counts elements, of which few stand around one.
constexpr int cost_of_role = 1000;
constexpr int cost_of_scrolled = 100;  // within the parent's columns, above or below it
constexpr int cost_of_overlap = 200;
constexpr int cost_of_apart = 400;
constexpr int impossible = std::numeric_limits<int>::max();

// What is compared with every other element.
struct Candidate {
  explicit Candidate(const PrintedElement& element)
      : role(element.role),
        home(rolesIn(homes, role)),
        content(rolesIn(contents, role)),
        frame(element.frame),
        hasFrame(frame.width > 0 && frame.height > 0) {}

  static const Roles* rolesIn(const RoleTable& table, std::string_view role) {
    const auto found = table.find(role);
    return found == table.end() ? nullptr : &found->second;
  }
  double area() const { return frame.width * frame.height; }

  std::string_view role;
  const Roles* home;  // null: anything
  const Roles* content;
  Rect frame;
  bool hasFrame;
};

bool allows(const Roles* roles, std::string_view role) {
  return roles == nullptr || std::find(roles->begin(), roles->end(), role) != roles->end();
}

int costOfRoles(const Candidate& child, const Candidate& parent) {
  return (allows(child.home, parent.role) ? 0 : cost_of_role) +
         (allows(parent.content, child.role) ? 0 : cost_of_role);
}

// Whether an extent lies within another; frames are rounded one by one.
bool spans(double outer, double outerLength, double inner, double innerLength) {
  constexpr double slack = 1;
  return inner >= outer - slack && inner + innerLength <= outer + outerLength + slack;
}

int costOfFrames(const Candidate& child, const Candidate& parent) {
  if (!child.hasFrame) return 0;
  const Rect& in = child.frame;
  const Rect& out = parent.frame;
  const bool columns = spans(out.x, out.width, in.x, in.width);
  if (columns && spans(out.y, out.height, in.y, in.height)) return 0;
  if (columns) return cost_of_scrolled;
  const bool overlap = in.x < out.x + out.width && out.x < in.x + in.width &&
                       in.y < out.y + out.height && out.y < in.y + in.height;
  return overlap ? cost_of_overlap : cost_of_apart;
}

// The cost of each earlier element as the parent of `tree[child]`.
std::vector<int> costsOfParents(const std::vector<Candidate>& tree, std::size_t child) {
  std::vector<int> costs;
  std::vector<std::size_t> around;  // those in which it stands well, the tightest first
  for (std::size_t parent = 0; parent < child; ++parent) {
    costs.push_back(costOfRoles(tree[child], tree[parent]) +
                    costOfFrames(tree[child], tree[parent]));
    if (costs.back() == 0 && tree[child].hasFrame) around.push_back(parent);
  }
  std::ranges::sort(around, [&](std::size_t left, std::size_t right) {
    const double difference = tree[left].area() - tree[right].area();
    return difference < 0 || (difference == 0 && left > right);
  });
  for (std::size_t i = 0; i < around.size(); ++i) costs[around[i]] = static_cast<int>(i);
  return costs;
}

// Parents for the elements up to one of them, the best of those that give it a certain parent.
struct Beginning {
  int cost = impossible;
  // Where the levels below the root begin.
  std::array<std::uint16_t, deepest_printed_level> levels{};
  std::size_t depth = 0;  // of the last element

  std::size_t depthOf(std::size_t element) const {
    const auto end = levels.begin() + static_cast<std::ptrdiff_t>(depth);
    return static_cast<std::size_t>(std::upper_bound(levels.begin(), end, element) -
                                    levels.begin());
  }
};

// The beginning with one more element; impossible where that would stand too deep.
Beginning extended(const Beginning& before, std::size_t element, std::size_t parent, int cost) {
  Beginning after = before;
  const std::size_t depth = before.depthOf(parent) + 1;
  if (depth > deepest_printed_level) return {};
  if (depth > before.depth) after.levels[before.depth] = static_cast<std::uint16_t>(element);
  after.depth = depth;
  after.cost = before.cost + cost;
  return after;
}

}  // namespace

// Beginnings grow by one element at a time. Of two that give the last element the same parent only
// the cheaper one can be continued to the best tree, as far as depth does not decide.
std::vector<std::size_t> recoverParents(const PrintedTree& tree) {
  const std::vector<Candidate> candidates(tree.begin(), tree.end());
  std::vector<Beginning> beginnings(1);  // by the parent of the last element
  beginnings[0].cost = 0;
  // By element and parent: the parent of the element before.
  std::vector<std::vector<std::size_t>> previous(tree.size());
  for (std::size_t element = 1; element < tree.size(); ++element) {
    const std::vector<int> costs = costsOfParents(candidates, element);
    std::vector<Beginning> longer(element);
    previous[element].resize(element);
    std::size_t best = 0;  // of the beginnings whose last parent does not come later
    for (std::size_t parent = 0; parent < element; ++parent) {
      if (parent < beginnings.size() && beginnings[parent].cost < beginnings[best].cost) {
        best = parent;
      }
      longer[parent] = extended(beginnings[best], element, parent, costs[parent]);
      previous[element][parent] = best;
    }
    beginnings = std::move(longer);
  }

  std::vector<std::size_t> parents(tree.size());
  const auto cheapest = std::ranges::min_element(beginnings, {}, &Beginning::cost);
  auto parent = static_cast<std::size_t>(cheapest - beginnings.begin());
  for (std::size_t element = tree.size(); element-- > 1;) {
    parents[element] = parent;
    parent = previous[element][parent];
  }
  return parents;
}

}  // namespace simulator
