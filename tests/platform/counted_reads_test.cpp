// Reads whose failure counts: what tells an element that is gone from one that does not answer now,
// and both from one that has no such attribute.
#include <gmock/gmock.h>

#include "dialog/tree.h"
#include "platform/accessibility.h"

namespace tessarine::test::counted_reads {
namespace {

namespace ax = simulator::ax;
using simulator::Url;

class Probe : public BareDesktop {
 public:
  Probe(std::initializer_list<std::pair<std::string, simulator::Value>> attributes = {}) {
    for (const auto& [name, value] : attributes) element.set(name, value);
  }
  Element handle() const { return BareDesktop::handle(element); }
  void refuse(const std::string& attribute, std::int32_t error) {
    desktop.faults().refused_requests.push_back({.error = error, .name = attribute});
  }

  simulator::Element& element = app().addChild("AXTextField");
};

// "a value", "absent", or whom the failure says: "gone" or "silent".
template <class Read>
std::string outcomeOf(const Read& read) {
  try {
    return read() ? "a value" : "absent";
  } catch (const Unanswered& unanswered) {
    return unanswered.gone() ? "gone" : "silent";
  }
}

// One after the other of every reader.
std::vector<std::string> everyOutcome(const Element& element) {
  return {outcomeOf([&] { return readText(element, "AXTitle"); }),
          outcomeOf([&] { return readFlag(element, "AXEnabled"); }),
          outcomeOf([&] { return readElement(element, "AXTitleUIElement"); }),
          outcomeOf([&] { return readElements(element, "AXRows"); }),
          outcomeOf([&] { return readFrame(element); }),
          outcomeOf([&] { return readLocation(element); })};
}

std::vector<std::string> all(const std::string& outcome) {
  return std::vector<std::string>(6, outcome);
}

Probe& fill(Probe& probe) {
  probe.element.set("AXTitle", "title");
  probe.element.set("AXEnabled", false);
  probe.element.set("AXTitleUIElement", probe.app().id());
  probe.element.set("AXRows", simulator::List{probe.app().id()});
  probe.element.setFrame({1, 2, 3, 4});
  probe.element.set("AXURL", Url{"file:///usr/"});
  return probe;
}

TEST(CountedReads, HandOutWhatTheElementHolds) {
  Probe probe;
  const Element element = fill(probe).handle();
  EXPECT_EQ(everyOutcome(element), all("a value"));
  EXPECT_EQ(readText(element, "AXTitle"), "title");
  EXPECT_EQ(readFlag(element, "AXEnabled"), false);
  EXPECT_EQ(readElement(element, "AXTitleUIElement"), probe.appHandle());
  EXPECT_EQ(readElements(element, "AXRows")->size(), 1U);
  EXPECT_EQ(readFrame(element), (Rect{1, 2, 3, 4}));
  EXPECT_EQ(readLocation(element), "/usr");
}

TEST(CountedReads, HandOutEmptyTextsAndLists) {
  Probe probe{{"AXTitle", ""}, {"AXRows", simulator::List{}}};
  EXPECT_EQ(readText(probe.handle(), "AXTitle"), "");
  EXPECT_EQ(readElements(probe.handle(), "AXRows")->size(), 0U);
}

TEST(CountedReads, AreAbsentForWhatAnElementDoesNotHave) {
  Probe probe;
  EXPECT_EQ(everyOutcome(probe.handle()), all("absent"));
}

TEST(CountedReads, AreAbsentForAnAttributeWithoutAValue) {
  Probe probe;
  for (const char* name :
       {"AXTitle", "AXEnabled", "AXTitleUIElement", "AXRows", "AXPosition", "AXSize", "AXURL"}) {
    probe.element.set(name, std::monostate());
  }
  EXPECT_EQ(everyOutcome(probe.handle()), all("absent"));
}

TEST(CountedReads, AreAbsentForAValueOfAnotherType) {
  Probe probe{{"AXTitle", 1.0},   {"AXEnabled", "true"},  {"AXTitleUIElement", "text"},
              {"AXRows", "text"}, {"AXPosition", "1, 2"}, {"AXSize", simulator::Point{3, 4}},
              {"AXURL", 3.0}};
  EXPECT_EQ(everyOutcome(probe.handle()), all("absent"));
}

TEST(CountedReads, AreAbsentForAListThatHoldsMoreThanElements) {
  Probe probe;
  probe.element.set("AXRows", simulator::List{probe.app().id(), "text"});
  EXPECT_EQ(outcomeOf([&] { return readElements(probe.handle(), "AXRows"); }), "absent");
}

TEST(CountedReads, ADecisiveListIsAbsentOnlyWhenTheElementSaysSo) {
  const auto outcome = [](const Probe& probe) {
    return outcomeOf([&] { return readDecisive(probe.handle(), "AXRows"); });
  };
  Probe probe;
  EXPECT_EQ(outcome(probe), "absent");
  probe.element.set("AXRows", std::monostate());
  EXPECT_EQ(outcome(probe), "absent");
  probe.element.set("AXRows", simulator::List{probe.app().id()});
  EXPECT_EQ(outcome(probe), "a value");
  probe.refuse("AXRows", ax::failure);
  EXPECT_EQ(outcome(probe), "silent");
  EXPECT_EQ(outcomeOf([&] { return readElements(probe.handle(), "AXRows"); }), "absent");
}

TEST(CountedReads, AFrameNeedsBothPositionAndSize) {
  Probe placed{{"AXPosition", simulator::Point{1, 2}}};
  EXPECT_EQ(readFrame(placed.handle()), std::nullopt);
}

TEST(CountedReads, AFrameWithAnExtentAloneIsAbsent) {
  Probe sized{{"AXSize", simulator::Size{1, 2}}};
  EXPECT_EQ(readFrame(sized.handle()), std::nullopt);
}

TEST(CountedReads, ThrowForAnElementThatIsGone) {
  Probe probe;
  const Element element = fill(probe).handle();
  probe.app().removeChildren();
  EXPECT_EQ(everyOutcome(element), all("gone"));
}

TEST(CountedReads, ThrowForAProcessThatHasEnded) {
  Probe probe;
  const Element element = fill(probe).handle();
  probe.desktop.terminateProcess(browserPid, false);
  EXPECT_EQ(everyOutcome(element), all("gone"));
}

TEST(CountedReads, ThrowForAProcessThatDoesNotAnswer) {
  Probe probe;
  const Element element = fill(probe).handle();
  probe.desktop.faults().silent_processes.insert(browserPid);
  EXPECT_EQ(everyOutcome(element), all("silent"));
}

TEST(CountedReads, ThrowWithoutTrust) {
  Probe probe;
  const Element element = fill(probe).handle();
  probe.desktop.faults().untrusted = true;
  EXPECT_EQ(everyOutcome(element), all("silent"));
}

TEST(CountedReads, TellEachAnswerOfThePlatform) {
  struct Case {
    std::int32_t error;
    std::string outcome;
  };
  for (const Case& each : {Case{ax::invalidElement, "gone"}, Case{ax::cannotComplete, "silent"},
                           Case{ax::apiDisabled, "silent"}, Case{ax::noValue, "absent"},
                           Case{ax::attributeUnsupported, "absent"}}) {
    Probe probe;
    const Element element = fill(probe).handle();
    for (const char* name :
         {"AXTitle", "AXEnabled", "AXTitleUIElement", "AXRows", "AXPosition", "AXURL"}) {
      probe.refuse(name, each.error);
    }
    EXPECT_EQ(everyOutcome(element), all(each.outcome)) << each.error;
  }
}

TEST(CountedReads, ThrowWhenHalfAFrameIsNotAnswered) {
  Probe probe;
  const Element element = fill(probe).handle();
  probe.refuse("AXSize", ax::cannotComplete);
  EXPECT_EQ(outcomeOf([&] { return readFrame(element); }), "silent");
}

// --- Locations. ---

std::string locationOf(simulator::Value url) {
  Probe probe{{"AXURL", std::move(url)}};
  return readLocation(probe.handle()).value_or("absent");
}

TEST(CountedReads, NameLocationsAsPaths) {
  EXPECT_EQ(locationOf(Url{"file:///Users/me/My%20Folder/"}), "/Users/me/My Folder");
  EXPECT_EQ(locationOf("file:///Users/me/%E6%96%87%E7%A8%BF"), "/Users/me/文稿");
}

TEST(CountedReads, ResolveFileReferences) {
  EXPECT_EQ(locationOf(Url{"file:///.file/id=2F757372"}), "/usr");
}

TEST(CountedReads, AreAbsentForLocationsWithoutAPath) {
  EXPECT_EQ(locationOf(Url{"mailto:someone"}), "absent");
  EXPECT_EQ(locationOf(Url{"https://example.com"}), "absent");
}

// --- Who is there. ---

TEST(IsGone, HoldsForWhatIsNoMoreAlone) {
  Probe probe;
  const Element element = probe.handle();
  EXPECT_FALSE(isGone(element));
  probe.app().removeChildren();
  EXPECT_TRUE(isGone(element));
  EXPECT_FALSE(isGone(probe.appHandle()));
}

TEST(IsGone, HoldsWhenTheProcessHasEnded) {
  Probe probe;
  const Element element = probe.handle();
  probe.desktop.terminateProcess(browserPid, true);
  EXPECT_TRUE(isGone(element));
}

TEST(IsGone, DoesNotHoldForWhatDoesNotAnswer) {
  Probe probe;
  const Element element = probe.handle();
  probe.desktop.faults().silent_processes.insert(browserPid);
  EXPECT_FALSE(isGone(element));
  probe.desktop.faults().silent_processes.clear();
  probe.desktop.faults().untrusted = true;
  EXPECT_FALSE(isGone(element));
}

TEST(AnswersNow, HoldsAlsoForWhatIsNoMore) {
  Probe probe;
  const Element element = probe.handle();
  EXPECT_TRUE(answersNow(element));
  probe.app().removeChildren();
  EXPECT_TRUE(answersNow(element));
}

TEST(AnswersNow, DoesNotHoldWhileNobodyAnswers) {
  Probe probe;
  const Element element = probe.handle();
  probe.desktop.faults().silent_processes.insert(browserPid);
  EXPECT_FALSE(answersNow(element));
}

// --- Acting. ---

TEST(PerformAction, AnswersThePlatformsCode) {
  Probe probe;
  int presses = 0;
  probe.element.addAction("AXPress", [&] { return ++presses, ax::success; });
  probe.element.addAction("AXOpen", [] { return ax::attributeUnsupported; });
  const Element element = probe.handle();
  EXPECT_EQ(performAction("AXPress", element), 0);
  EXPECT_EQ(presses, 1);
  EXPECT_EQ(performAction("AXOpen", element), -25205);
  EXPECT_EQ(performAction("AXPick", element), -25206);
  probe.app().removeChildren();
  EXPECT_EQ(performAction("AXPress", element), -25202);
}

// --- Processes. ---

TEST(ElementPid, IsThatOfTheProcessWhoseElementItIsAndNotOfTheTreeItStandsIn) {
  BareDesktop world;
  auto& service = world.desktop.addProcess({.pid = servicePid,
                                            .name = "Service",
                                            .command = "Service",
                                            .application = false,
                                            .host = browserPid});
  const auto& own = world.app().addChild("AXSheet");
  const auto& remote = world.app().addChild("AXButton", service.elements);
  EXPECT_EQ(elementPid(world.handle(own)), browserPid);
  EXPECT_EQ(elementPid(world.handle(remote)), servicePid);
}

TEST(ElementPid, AsksNobody) {
  Probe probe;
  const Element element = probe.handle();
  probe.desktop.faults().silent_processes.insert(browserPid);
  const auto requests = probe.desktop.record().accessibilityRequests();
  const double before = probe.now();
  EXPECT_EQ(elementPid(element), browserPid);
  EXPECT_EQ(probe.desktop.record().accessibilityRequests(), requests);
  EXPECT_EQ(probe.now(), before);
}

TEST(MessagingTimeout, SaysHowLongARequestWaits) {
  Probe probe;
  const Element element = probe.handle();
  probe.desktop.faults().silent_processes.insert(browserPid);
  const auto wait = [&] {
    const double before = probe.now();
    EXPECT_FALSE(answersNow(element));
    return probe.now() - before;
  };
  EXPECT_NEAR(wait(), 6, 0.01);
  setMessagingTimeout(1.5);
  EXPECT_NEAR(wait(), 1.5, 0.01);
  setMessagingTimeout(0);
  EXPECT_NEAR(wait(), 6, 0.01);
}

}  // namespace
}  // namespace tessarine::test::counted_reads
