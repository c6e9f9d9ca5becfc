// What stands below what in a tree of which only the elements were printed.
#include "simulator/panel/printed_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>

#include "simulator/scenario/printed_tree_reader.h"
#include "simulator/scenario/scenario.h"
#include "support/temporary_folder.h"
#include "tests/simulator/printouts.h"

namespace tessarine::test::printed_tree {
namespace {

using simulator::Element;
using simulator::PrintedElement;
using simulator::PrintedTree;
using simulator::recoverParents;
using simulator::Rect;
using Parents = std::vector<std::size_t>;

// --- Trees of modelled panels, whose true form is known. ---

PrintedTree firstTree(const Json& dialogs) {
  return simulator::readPrintedTree({dialogs.at(0).at("nodes"), "panel.json", ""});
}

std::string textOf(const Element& element, const std::string& attribute) {
  const simulator::Value* value = element.get(attribute);
  const auto* text = value != nullptr ? std::get_if<std::string>(value) : nullptr;
  return text != nullptr ? *text : "";
}

const Element* find(const Element& at, const PrintedElement& printed) {
  const bool same = at.role() == printed.role && at.frame() == printed.frame &&
                    textOf(at, "AXTitle") == printed.title &&
                    textOf(at, "AXDescription") == printed.description;
  if (same) return &at;
  for (const auto& child : at.children()) {
    if (const Element* found = find(*child, printed)) return found;
  }
  return nullptr;
}

// The parents in a walk like that of the listing.
Parents trueParents(const Element& root, std::size_t count) {
  std::vector<const Element*> elements{&root};
  Parents parents{0};
  std::vector<std::size_t> depths{0};
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (depths[i] == simulator::deepest_printed_level) continue;
    for (const auto& child : elements[i]->children()) {
      elements.push_back(child.get());
      parents.push_back(i);
      depths.push_back(depths[i] + 1);
    }
  }
  parents.resize(std::min(parents.size(), count));
  return parents;
}

// False when the tool finds no dialog.
bool expectRecovered(World& world) {
  const std::string text = world.run({"inspect-open-dialog", "--pid", "812"}).output;
  const Json dialogs = Json::parse(text)["dialogs"];
  if (dialogs.empty()) return false;
  const PrintedTree tree = firstTree(dialogs);
  const auto pid = dialogs[0]["pid"].get<simulator::Pid>();
  const Element* root = find(world.desktop().findProcess(pid)->root, tree.front());
  if (root == nullptr) throw std::runtime_error("no element like the root");
  const Parents expected = trueParents(*root, tree.size());
  const Parents recovered = recoverParents(tree);
  EXPECT_EQ(recovered.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(recovered[i], expected[i])
        << i << " " << tree[i].role << " " << tree[i].title << tree[i].value << " below "
        << tree[recovered[i]].role << " instead of " << tree[expected[i]].role;
  }
  return true;
}

using Deed = void (*)(World&);

void leaveIt(World&) {}

Element& elementIn(World& world, const std::string& attribute, const std::string& text) {
  std::vector<Element*> elements{&world.desktop().findProcess(servicePid)->root};
  for (std::size_t i = 0; i < elements.size(); ++i) {
    if (textOf(*elements[i], attribute) == text) return *elements[i];
    for (const auto& child : elements[i]->children()) elements.push_back(child.get());
  }
  throw std::runtime_error("no element with " + attribute + " " + text);
}

void openMenu(World& world) {
  elementIn(world, "AXIdentifier", "where popup").performAction("AXShowMenu");
  world.desktop().advanceTo(world.desktop().now() + 1);
}

// Down to the last row of a list that is higher than the panel.
void scroll(World& world) {
  Element& list = elementIn(world, "AXIdentifier", "ListView");
  list.setAttribute("AXFocused", true);
  constexpr std::uint16_t up = 126;
  world.desktop().postKey({up, true, 0, {}}, servicePid, simulator::Origin::tool);
  ASSERT_LT(list.children()[1]->frame()->y, list.frame()->y) << "it has not scrolled";
}

struct Variant {
  std::string scenario;
  World::Patches patches;
  Deed deed = leaveIt;
};

const Json openSheet{{"openAtStart", true}};
const Json oldSheet{{"openAtStart", true}, {"generation", "old"}, {"comboBox", true}};
const Json somePlaces =
    Json::parse(R"([{"label": "Programs", "path": "/usr"}, {"label": "All", "path": "/"}])");
const Json largePage = Json::parse(R"([{"title": "Page", "webElements": 300}])");

std::vector<Variant> modelledPanels(const std::string& longFolder) {
  std::vector<Variant> variants{
      {"chinese-host-sheet", {{"/panels/0/goTo", openSheet}, {"/lastGoToPath", "/usr/share"}}},
      {"chinese-service-window", {{"/panels/0/goTo", oldSheet}}},
      {"english-host-window", {{"/panels/0/goTo", openSheet}}},
      {"english-host-window", {{"/panels/0/folder", longFolder}}},
      {"english-service-window",
       {{"/panels/0/folder", longFolder}, {"/panels/0/mode", "files"}},
       scroll},
      {"english-service-window", {}, openMenu},
      {"chinese-host-sheet", {{"/panels/0/view", "columns"}, {"/panels/0/folder", "/usr/share"}}},
      {"chinese-host-sheet", {{"/panels/0/view", "icons"}}},
      {"chinese-service-window", {{"/panels/0/listColumns", 4}}},
      {"english-service-window", {{"/places", somePlaces}, {"/panels/0/message", "Pick one"}}},
      {"english-service-window", {{"/places", Json::array()}}},
      {"chinese-embedded", {{"/panels/0/goTo", openSheet}}},
      {"edge-chinese", {{"/panels/0/shape", "embedded"}, {"/processes/2/windows", largePage}}},
      {"english-host-sheet", {{"/panels/0/prompt", "Choose"}, {"/panels/0/goTo", openSheet}}},
      {"chinese-host-sheet", {{"/panels/0/folder", longFolder}, {"/panels/0/goTo", openSheet}}}};
  for (const auto& name : simulator::bundledScenarioNames()) {
    variants.push_back({name, namesAlone(name)});
  }
  return variants;
}

TEST(PrintedTree, IsRecoveredOfEveryModelledPanel) {
  const TemporaryFolder folder;
  for (int i = 0; i < 200; ++i) folder.makeFile("file " + std::to_string(i));
  int panels = 0;
  for (const Variant& variant : modelledPanels(folder.path())) {
    SCOPED_TRACE(variant.scenario + Json(variant.patches).dump());
    World world(variant.scenario, variant.patches);
    variant.deed(world);
    panels += expectRecovered(world) ? 1 : 0;
  }
  EXPECT_GE(panels, 15 + 20);
}

// --- The rule. ---

PrintedElement at(const std::string& role, const Rect& frame) {
  return {role, "", "", "", frame, {}};
}

PrintedElement unframed(const std::string& role) {
  return at(role, {});
}

const Rect whole{0, 0, 400, 400};
const Rect left{0, 0, 200, 400};
const Rect right{200, 0, 200, 400};
const Rect inLeft{10, 10, 50, 50};
const Rect inRight{210, 10, 50, 50};

Rect below(Rect frame) {
  frame.y += frame.height;
  return frame;
}

TEST(PrintedTree, ARootAloneHasNoParentButItself) {
  EXPECT_EQ(recoverParents({at("AXWindow", whole)}), Parents{0});
}

TEST(PrintedTree, AnElementStandsInTheTightestOneAroundIt) {
  EXPECT_EQ(
      recoverParents({at("AXWindow", whole), at("AXGroup", left), at("AXGroup", right),
                      at("AXLink", inLeft), at("AXLink", inRight), at("AXLink", below(inRight))}),
      (Parents{0, 0, 0, 1, 2, 2}));
}

TEST(PrintedTree, RoundedFramesReachOverByAPoint) {
  EXPECT_EQ(recoverParents(
                {at("AXWindow", whole), at("AXGroup", left), at("AXLink", {-0.6, 0, 200.9, 20})}),
            (Parents{0, 0, 1}));
  EXPECT_EQ(
      recoverParents({at("AXWindow", whole), at("AXGroup", left), at("AXLink", {0, 0, 201.1, 20})}),
      (Parents{0, 0, 0}));
}

TEST(PrintedTree, OfElementsWithTheSameFrameTheLaterOneHoldsWhatFollows) {
  EXPECT_EQ(recoverParents({at("AXWindow", whole), at("AXGroup", whole), at("AXScrollArea", whole),
                            at("AXWebArea", whole), at("AXLink", inLeft)}),
            (Parents{0, 0, 1, 2, 3}));
}

// An element of the window stands between the group and what lies in the group.
TEST(PrintedTree, ParentsComeInTheOrderOfTheirChildren) {
  EXPECT_EQ(recoverParents({at("AXWindow", whole), at("AXGroup", left), at("AXGroup", right),
                            at("AXLink", inRight), at("AXLink", inLeft)}),
            (Parents{0, 0, 0, 0, 1}));
}

// The window and the group lie around the rows, their lists do not.
TEST(PrintedTree, ARowStandsInAListAlsoWhereItIsScrolledAway) {
  const Rect lowLeft{0, 0, 200, 100};
  const Rect lowRight{200, 0, 200, 100};
  EXPECT_EQ(recoverParents({at("AXWindow", whole), at("AXOutline", lowLeft),
                            at("AXOutline", lowRight), at("AXGroup", whole),
                            at("AXRow", {0, 80, 200, 20}), at("AXRow", {0, 200, 200, 20}),
                            at("AXRow", {0, 900, 200, 20}), at("AXRow", {200, 300, 200, 20})}),
            (Parents{0, 0, 0, 0, 1, 1, 1, 2}));
}

TEST(PrintedTree, ACellStandsInARowAndAMenuItemInAMenu) {
  EXPECT_EQ(recoverParents({at("AXWindow", whole), at("AXTable", left), at("AXMenuButton", inRight),
                            at("AXRow", inLeft), at("AXMenu", {210, 10, 50, 300}),
                            at("AXCell", {10, 70, 50, 50}), at("AXMenuItem", {0, 300, 300, 50})}),
            (Parents{0, 0, 0, 1, 2, 3, 4}));
}

TEST(PrintedTree, NothingStandsInATextOrAnImage) {
  for (const char* leaf : {"AXStaticText", "AXImage", "AXSplitter", "AXCheckBox"}) {
    EXPECT_EQ(recoverParents({at("AXWindow", whole), at(leaf, left), at("AXLink", inLeft)}),
              (Parents{0, 0, 0}))
        << leaf;
  }
}

TEST(PrintedTree, AnElementWithoutAFrameStandsBesideTheOneBeforeIt) {
  EXPECT_EQ(recoverParents({at("AXWindow", whole), at("AXGroup", left), at("AXLink", inLeft),
                            unframed("AXLink"), unframed("AXRow")}),
            (Parents{0, 0, 1, 1, 1}));
}

// Twelve elements with the same frame could all stand in one another.
TEST(PrintedTree, NoElementStandsDeeperThanAListingGoes) {
  const Parents parents = recoverParents(PrintedTree(12, at("AXGroup", whole)));
  EXPECT_EQ(parents, (Parents{0, 0, 1, 2, 3, 4, 5, 6, 7, 7, 7, 7}));
}

// --- Any tree. ---

using Random = std::mt19937;

std::size_t lessThan(std::size_t end, Random& random) {
  return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
}

// Groups whose children lie beside one another within them, in the order of a listing.
PrintedTree nestedGroups(Random& random, Parents& parents) {
  PrintedTree tree{at("AXGroup", {0, 0, 1e6, 1e6})};
  parents = {0};
  std::vector<int> depths{0};
  for (std::size_t i = 0; i < tree.size() && tree.size() < 120; ++i) {
    const Rect outer = tree[i].frame;
    const std::size_t count = depths[i] < 8 ? lessThan(4, random) + (i == 0 ? 1 : 0) : 0;
    const double width = outer.width / static_cast<double>(count);
    for (std::size_t n = 0; n < count; ++n) {
      tree.push_back(at("AXGroup", {outer.x + width * static_cast<double>(n) + width / 10,
                                    outer.y + 10, width * 0.8, outer.height - 20}));
      parents.push_back(i);
      depths.push_back(depths[i] + 1);
    }
  }
  return tree;
}

TEST(PrintedTree, IsRecoveredWhereEveryElementLiesApartWithinItsParent) {
  for (unsigned seed = 0; seed < 50; ++seed) {
    Random random(seed);
    Parents expected;
    const PrintedTree tree = nestedGroups(random, expected);
    EXPECT_EQ(recoverParents(tree), expected) << seed;
  }
}

TEST(PrintedTree, IsAlwaysOneThatAWalkMeetsInTheSameOrder) {
  const std::vector<std::string> roles{"AXGroup", "AXRow", "AXCell", "AXImage", "AXOutline", ""};
  for (unsigned seed = 0; seed < 50; ++seed) {
    Random random(seed);
    PrintedTree tree;
    const auto number = [&] { return static_cast<double>(lessThan(5, random)); };
    for (std::size_t i = lessThan(60, random) + 1; i > 0; --i) {
      const Rect frame{number(), number(), number(), number()};
      tree.push_back(at(roles[lessThan(roles.size(), random)], frame));
    }
    const Parents parents = recoverParents(tree);
    ASSERT_EQ(parents.size(), tree.size());
    std::vector<std::size_t> depths{0};
    for (std::size_t i = 1; i < parents.size(); ++i) {
      ASSERT_LT(parents[i], i) << seed;
      EXPECT_LE(parents[i - 1], parents[i]) << seed;
      depths.push_back(depths[parents[i]] + 1);
    }
    EXPECT_LE(depths.back(), simulator::deepest_printed_level) << seed;
  }
}

}  // namespace
}  // namespace tessarine::test::printed_tree
