// Waiting for what a panel shows, and stopping when it is gone.
#include "navigation/panel_choice.h"

#include <gmock/gmock.h>

#include "dialog/hand_built_panel.h"
#include "navigation/moving_panel.h"

namespace tessarine::test::panel_choice {
namespace {

namespace ax = simulator::ax;

// A panel that shows /usr, with /usr/lib in it.
struct Choice {
  HandBuiltPanel panel;
  simulator::Element& entry = panel.addEntry("/usr/lib/");
  PanelChoice choice = choiceOf({panel.rootHandle(), {panel.appHandle(), browserPid, "x"}}, "/usr");

  void after(double seconds, std::function<void()> what) {
    panel.desktop.schedule(seconds, std::move(what));
  }
  void close() { panel.window.removeChild(panel.root); }
  void silence() { panel.desktop.faults().silent_processes.insert(browserPid); }
  double now() const { return panel.now(); }
};

std::string textOf(const std::optional<Proof>& proof) {
  if (!proof) return "none";
  return *proof == Proof::folderShown ? "folder shown" : "entry selected";
}

TEST(WithinDeadline, CutsAWait) {
  Choice world;
  world.choice.deadline = currentTime() + 5;
  EXPECT_EQ(withinDeadline(world.choice, 2), 2);
  EXPECT_NEAR(withinDeadline(world.choice, 8), 5, 1e-6);
  world.choice.deadline = currentTime() - 1;
  EXPECT_EQ(withinDeadline(world.choice, 8), 0);
  EXPECT_EQ(withinDeadline(world.choice, -1), 0);
}

TEST(Glance, IsOneLook) {
  Choice world;
  const auto sight = glance(world.choice);
  ASSERT_TRUE(sight);
  EXPECT_EQ(sight->folder, "/usr");
}

TEST(Glance, IsAbsentWhileThePanelIsBusy) {
  Choice world;
  setMessagingTimeout(0.5);
  world.silence();
  const double before = world.now();
  EXPECT_FALSE(glance(world.choice));
  EXPECT_NEAR(world.now() - before, 0.5, 0.1) << "one request that nobody answers is enough";
  setMessagingTimeout(0);
}

TEST(Glance, FindsTheListingThatWasBuiltAnew) {
  Choice world;
  world.panel.rebuildListing();
  world.panel.addEntry("/usr/share/");
  std::optional<PanelSight> sight;
  for (int i = 0; i < 3 && !sight; ++i) sight = glance(world.choice);
  ASSERT_TRUE(sight);
  EXPECT_EQ(sight->folder, "/usr");
}

TEST(Glance, IsAbsentWhileTheNewListingCannotBeFound) {
  Choice world;
  world.panel.rebuildListing();
  world.panel.desktop.faults().refused_requests.push_back(
      {.error = ax::cannotComplete, .name = "AXIdentifier", .role = "AXButton"});
  EXPECT_FALSE(glance(world.choice));
}

TEST(Glance, ThrowsWhenThePanelIsGone) {
  Choice world;
  world.close();
  EXPECT_THROW(glance(world.choice), PanelGone);
}

TEST(ProofWithin, LooksAtLeastOnce) {
  Choice world;
  EXPECT_EQ(textOf(proofWithin(world.choice, 0)), "folder shown");
}

TEST(ProofWithin, DoesNotLookAfterTheDeadline) {
  Choice world;
  world.choice.deadline = currentTime() - 10;
  EXPECT_THROW(proofWithin(world.choice, 3), TimeIsUp);
}

TEST(ProofWithin, WaitsForThePanel) {
  Choice world;
  world.panel.select({&world.entry});
  world.after(0.75, [&] { world.panel.select({}); });
  EXPECT_EQ(textOf(proofWithin(world.choice, 2)), "folder shown");
  EXPECT_GE(world.now(), 0.75);
  EXPECT_LE(world.now(), 1.0);
}

TEST(ProofWithin, EndsWithoutProof) {
  Choice world;
  world.panel.select({&world.entry});
  const double before = world.now();
  EXPECT_EQ(textOf(proofWithin(world.choice, 1)), "none");
  EXPECT_NEAR(world.now() - before, 1, 0.2);
}

TEST(ProofWithin, EndsAtTheDeadline) {
  Choice world;
  world.panel.select({&world.entry});
  const double before = world.now();
  world.choice.deadline = currentTime() + 0.5;
  EXPECT_EQ(textOf(proofWithin(world.choice, 5)), "none");
  EXPECT_NEAR(world.now() - before, 0.5, 0.2);
}

TEST(ProofWithin, StopsWhenThePanelIsGone) {
  Choice world;
  world.panel.select({&world.entry});
  world.after(0.3, [&] { world.close(); });
  EXPECT_THROW(proofWithin(world.choice, 5), PanelGone);
  EXPECT_LE(world.now(), 0.6);
}

TEST(ShowsWithin, ComparesFoldersAndNotTexts) {
  Choice world;
  EXPECT_TRUE(showsWithin(world.choice, "/usr", 0));
  EXPECT_TRUE(showsWithin(world.choice, "/usr/lib/..", 0));
  EXPECT_FALSE(showsWithin(world.choice, "/usr/lib", 0));
  EXPECT_FALSE(showsWithin(world.choice, "/", 0));
}

// The panel shows its folder whatever is selected in it.
TEST(ShowsWithin, DoesNotMindASelection) {
  Choice world;
  world.panel.select({&world.entry});
  EXPECT_TRUE(showsWithin(world.choice, "/usr", 0));
}

TEST(ShowsWithin, WaitsAndEnds) {
  Choice world;
  const double before = world.now();
  EXPECT_FALSE(showsWithin(world.choice, "/usr/share", 1));
  EXPECT_NEAR(world.now() - before, 1, 0.2);
  world.after(0.4, [&] {
    world.panel.removeEntries();
    world.panel.addEntry("/usr/share/doc/");
  });
  EXPECT_TRUE(showsWithin(world.choice, "/usr/share", 2));
}

TEST(ShowsWithin, StopsWhenThePanelIsGone) {
  Choice world;
  world.close();
  EXPECT_THROW(showsWithin(world.choice, "/usr", 1), PanelGone);
}

TEST(Holds, PassesTheAnswerOn) {
  Choice world;
  EXPECT_TRUE(holds(world.choice, [] { return true; }));
  EXPECT_FALSE(holds(world.choice, [] { return false; }));
}

TEST(Holds, IsFalseWhenNobodyAnswersWhileThePanelIsThere) {
  Choice world;
  EXPECT_FALSE(holds(world.choice, []() -> bool { throw Unanswered(false); }));
  EXPECT_FALSE(holds(world.choice, []() -> bool { throw Unanswered(true); }));
}

TEST(Holds, ThrowsWhenNobodyAnswersAsThePanelIsGone) {
  Choice world;
  world.close();
  EXPECT_THROW(holds(world.choice, []() -> bool { throw Unanswered(true); }), PanelGone);
}

TEST(Holds, DoesNotTakeABusyPanelForAGoneOne) {
  Choice world;
  setMessagingTimeout(0.5);
  world.silence();
  const double before = world.now();
  EXPECT_FALSE(holds(world.choice, []() -> bool { throw Unanswered(false); }));
  EXPECT_EQ(world.now(), before) << "nothing more is asked of it";
  setMessagingTimeout(0);
}

TEST(Holds, AsksNothingAfterTheDeadline) {
  Choice world;
  world.choice.deadline = currentTime() - 1;
  int asked = 0;
  EXPECT_THROW(holds(world.choice, [&] { return ++asked > 0; }), TimeIsUp);
  EXPECT_EQ(asked, 0);
}

TEST(MayActOn, HoldsWhileTheElementIsThereAndAnswers) {
  Choice world;
  const Element entry = world.panel.handle(world.entry);
  EXPECT_TRUE(mayActOn(world.choice, entry));
  setMessagingTimeout(0.5);
  world.silence();
  EXPECT_FALSE(mayActOn(world.choice, entry));
  setMessagingTimeout(0);
  world.panel.desktop.faults().silent_processes.clear();
  world.panel.removeEntries();
  EXPECT_FALSE(mayActOn(world.choice, entry));
}

}  // namespace
}  // namespace tessarine::test::panel_choice
