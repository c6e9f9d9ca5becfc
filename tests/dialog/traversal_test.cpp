// Walks over element trees: their order, their caps, and what they cost.
#include "dialog/traversal.h"

#include "dialog/tree.h"

namespace tessarine::test {
namespace {

using Names = std::vector<std::string>;

// The application with a and b below it, each with two children, and one more level below a1.
class SmallTree : public BareDesktop {
 public:
  SmallTree() {
    app().set("AXIdentifier", "app");
    auto& a = add(app(), "a");
    auto& b = add(app(), "b");
    auto& a1 = add(a, "a1");
    add(a, "a2");
    add(b, "b1");
    add(b, "b2");
    add(a1, "a11");
  }
  const Element root = appHandle();
};

const Names smallTreeByLevels{"app",     "a in app", "b in app", "a1 in a",
                              "a2 in a", "b1 in b",  "b2 in b",  "a11 in a1"};
const Names smallTreeByBranches{"app",     "a in app", "a1 in a", "a11 in a1",
                                "a2 in a", "b in app", "b1 in b", "b2 in b"};

Names firstOf(const Names& names, std::ptrdiff_t count) {
  return {names.begin(), names.begin() + count};
}

TEST(Traversal, VisitsLevelByLevelInChildOrder) {
  SmallTree tree;
  EXPECT_EQ(namesOf(breadthFirstNodes(tree.root)), smallTreeByLevels);
  EXPECT_EQ(namesOf(descendants(tree.root)), smallTreeByLevels);
}

TEST(Traversal, ReadsNoChildrenBelowTheDepthLimit) {
  SmallTree tree;
  EXPECT_EQ(namesOf(breadthFirstNodes(tree.root, 0)), Names{"app"});
  EXPECT_EQ(requestsFor(tree.desktop.record(), "AXChildren"), 0);
  EXPECT_EQ(namesOf(breadthFirstNodes(tree.root, 1)), firstOf(smallTreeByLevels, 3));
  EXPECT_EQ(requestsFor(tree.desktop.record(), "AXChildren"), 1);
  EXPECT_EQ(namesOf(descendants(tree.root, 2)), firstOf(smallTreeByLevels, 7));
  EXPECT_EQ(requestsFor(tree.desktop.record(), "AXChildren"), 1 + 3);
}

TEST(Traversal, VisitsNothingWithoutANodeBudget) {
  SmallTree tree;
  EXPECT_EQ(namesOf(breadthFirstNodes(tree.root, 8, 0)), Names());
  EXPECT_EQ(namesOf(descendants(tree.root, 8, 0)), Names());
}

TEST(Traversal, CutsTheChildrenOfARootThatExceedTheBudget) {
  BareDesktop world;
  addSiblings(world.app(), 5);
  EXPECT_EQ(namesOf(breadthFirstNodes(world.appHandle(), 8, 3)),
            (Names{"unnamed", "1 in unnamed", "2 in unnamed"}));
}

TEST(Traversal, LosesLaterChildrenFirstWhenTheBudgetIsFull) {
  SmallTree tree;
  for (std::ptrdiff_t budget = 1; budget <= 8; ++budget) {
    EXPECT_EQ(namesOf(breadthFirstNodes(tree.root, 8, static_cast<int>(budget))),
              firstOf(smallTreeByLevels, budget));
  }
}

TEST(Traversal, NeverReturnsMoreThanTheBudgetAndAsksForNoChildrenBeyondIt) {
  BareDesktop world;
  addSiblings(world.app(), 2000);
  const Element root = world.appHandle();
  EXPECT_EQ(breadthFirstNodes(root).size(), 1800U);
  EXPECT_EQ(requestsFor(world.desktop.record(), "AXChildren"), 1);
  EXPECT_EQ(descendants(root).size(), 700U);
  EXPECT_EQ(requestsFor(world.desktop.record(), "AXChildren"), 2);
}

TEST(Traversal, ReachesEightLevelsBelowTheRootUnlessToldOtherwise) {
  BareDesktop world;
  addChain(world.app(), 12);
  EXPECT_EQ(breadthFirstNodes(world.appHandle()).size(), 9U);
  EXPECT_EQ(descendants(world.appHandle()).size(), 9U);
  EXPECT_EQ(breadthFirstNodes(world.appHandle(), 11).size(), 12U);
}

TEST(Traversal, TakesAnElementThatIsGoneForALeaf) {
  SmallTree tree;
  const Element a = tree.handle(*tree.app().children().front());
  tree.app().removeChild(*tree.app().children().front());
  EXPECT_EQ(breadthFirstNodes(a).size(), 1U);
}

TEST(Traversal, FindsTheFirstNodeThatFitsFromTheRootOn) {
  SmallTree tree;
  const auto found = [&](const NodePredicate& predicate) {
    return nameOf(findFirst(tree.root, predicate));
  };
  EXPECT_EQ(found([](const auto&, const auto&) { return true; }), "app");
  EXPECT_EQ(found([](const auto&, const auto& parent) { return parent && nameOf(*parent) == "b"; }),
            "b1 in b");
  EXPECT_EQ(found([](const auto&, const auto&) { return false; }), "nothing");
}

TEST(Traversal, AsksNothingOnceItHasFound) {
  SmallTree tree;
  const auto isB = [](const auto& element, const auto&) { return nameOf(element) == "b"; };
  EXPECT_EQ(nameOf(findFirst(tree.root, isB)), "b in app");
  EXPECT_EQ(requestsFor(tree.desktop.record(), "AXChildren"), 3) << "of the root, a and b itself";
}

TEST(Traversal, AsksEachNodeOnceForAllThatAFinderNames) {
  SmallTree tree;
  const auto visited = [&](const WalkLimits& limits) {
    const auto before = tree.desktop.record().accessibilityRequests();
    walk(tree.root, limits, {"AXRole", "AXTitle", "AXValue"}, [](const VisitedNode& node) {
      EXPECT_TRUE((node.role() + node.title() + node.inputValue()).starts_with("AX"));
      return false;
    });
    return tree.desktop.record().accessibilityRequests() - before;
  };
  EXPECT_EQ(visited({8, 1800}), smallTreeByLevels.size());
  EXPECT_EQ(visited({1, 1800}), 3U);
  EXPECT_EQ(visited({8, 5}), 5U);
}

TEST(Traversal, SeesOfANarrowerWalkWhatThatWouldVisit) {
  SmallTree tree;
  for (const WalkLimits narrow : {WalkLimits{1, 1800}, WalkLimits{8, 4}, WalkLimits{1, 2}}) {
    Names within;
    walk(tree.root, {8, 1800}, {}, [&](const VisitedNode& node) {
      if (node.isWithin(narrow)) within.push_back(nameOf(node.reference()));
      return false;
    });
    EXPECT_EQ(within, namesOf(breadthFirstNodes(tree.root, narrow.maxDepth, narrow.maxNodes)));
  }
}

TEST(Traversal, FindsWithinEightLevelsAndSevenHundredNodes) {
  const auto plant = [](simulator::Element& parent) { add(parent, "target", "AXImage"); };
  const auto finds = [](const Element& root) {
    return findFirst(root,
                     [](const auto& element, const auto&) { return axRole(element) == "AXImage"; })
        .has_value();
  };
  EXPECT_EQ(reachOf(plant, finds), "depth 8, nodes 700");
}

TEST(Traversal, CollectsEachBranchBeforeTheNext) {
  SmallTree tree;
  std::vector<NodeRef> nodes;
  collectNodes(tree.root, {}, nodes);
  EXPECT_EQ(namesOf(nodes), smallTreeByBranches);
}

TEST(Traversal, CollectsWithoutABound) {
  BareDesktop world;
  addSiblings(addChain(world.app(), 20), 2000);
  std::vector<NodeRef> all;
  collectNodes(world.appHandle(), {}, all);
  EXPECT_EQ(all.size(), 2021U);
}

TEST(Traversal, CollectorsAppendUnderTheGivenParent) {
  SmallTree tree;
  const Element b = tree.handle(*tree.app().children().back());
  std::vector<NodeRef> nodes{{tree.root, {}}};
  collectNodes(b, tree.root, nodes);
  collectNodesLimited(b, tree.root, 0, 0, 9, nodes);
  EXPECT_EQ(namesOf(nodes), (Names{"app", "b in app", "b1 in b", "b2 in b", "b in app"}));
}

TEST(Traversal, CollectsWithinADepth) {
  SmallTree tree;
  const auto collected = [&](int depth, int maxDepth) {
    std::vector<NodeRef> nodes;
    collectNodesLimited(tree.root, {}, depth, maxDepth, 100, nodes);
    return namesOf(nodes);
  };
  EXPECT_EQ(collected(0, 0), Names{"app"});
  EXPECT_EQ(requestsFor(tree.desktop.record(), "AXChildren"), 0);
  EXPECT_EQ(collected(0, 1), (Names{"app", "a in app", "b in app"}));
  EXPECT_EQ(collected(7, 8), (Names{"app", "a in app", "b in app"}));
  EXPECT_EQ(collected(9, 8), Names{"app"});
  EXPECT_EQ(collected(0, 3), smallTreeByBranches);
}

TEST(Traversal, CollectsWithinANodeBudget) {
  SmallTree tree;
  for (std::ptrdiff_t budget = 0; budget <= 8; ++budget) {
    std::vector<NodeRef> nodes;
    collectNodesLimited(tree.root, {}, 0, 8, static_cast<int>(budget), nodes);
    EXPECT_EQ(namesOf(nodes), firstOf(smallTreeByBranches, budget));
  }
}

TEST(Traversal, CountsWhatTheListAlreadyHoldsAgainstTheBudget) {
  SmallTree tree;
  std::vector<NodeRef> nodes{{tree.root, {}}, {tree.root, {}}};
  collectNodesLimited(tree.root, {}, 0, 8, 2, nodes);
  EXPECT_EQ(nodes.size(), 2U);
  collectNodesLimited(tree.root, {}, 0, 8, 3, nodes);
  EXPECT_EQ(nodes.size(), 3U);
}

TEST(Traversal, FollowsParentsFromTheNodeUpward) {
  SmallTree tree;
  const NodeRef node = breadthFirstNodes(tree.root).back();
  EXPECT_EQ(namesOf(ancestorChain(node)), (Names{"a11 in a1", "a1 in a", "a in app", "app"}));
}

TEST(Traversal, TheChainOfANodeWithoutARecordedParentIsTheNodeAlone) {
  SmallTree tree;
  const Element a = tree.handle(*tree.app().children().front());
  EXPECT_EQ(namesOf(ancestorChain({a, {}})), Names{"a"});
}

TEST(Traversal, StartsUpwardFromTheRecordedParentNotTheRealOne) {
  SmallTree tree;
  const auto nodes = breadthFirstNodes(tree.root);
  EXPECT_EQ(namesOf(ancestorChain({nodes[3].element, nodes[2].element})),
            (Names{"a1 in b", "b in app", "app"}));
}

TEST(Traversal, EndsTheChainAtAnElementThatIsGone) {
  SmallTree tree;
  const auto nodes = breadthFirstNodes(tree.root);
  tree.app().removeChild(*tree.app().children().back());
  EXPECT_EQ(namesOf(ancestorChain(nodes[5])), (Names{"unnamed in unnamed", "unnamed"}));
}

TEST(Traversal, CutsTheChainAtTwentyFiveEntries) {
  BareDesktop world;
  const Element last = world.handle(addChain(world.app(), 40));
  const auto chain = ancestorChain({last, axParent(last)});
  ASSERT_EQ(chain.size(), 25U);
  EXPECT_EQ(nameOf(chain.front()), "40 in 39");
  EXPECT_EQ(nameOf(chain.back()), "16 in 15");

  const Element inner = world.handle(addChain(world.app(), 24));
  EXPECT_EQ(ancestorChain({inner, axParent(inner)}).size(), 25U);
}

}  // namespace
}  // namespace tessarine::test
