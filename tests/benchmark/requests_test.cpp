// How much each route asks of other processes, and how long it takes beyond its own pauses, on
// folders of a certain size: each request is served on the browser's main thread.
#include <algorithm>
#include <iostream>

#include "benchmark/floors.h"
#include "support/folder_world.h"

namespace tessarine::test::requests {
namespace {

using Json = nlohmann::ordered_json;

// A way to call the tool, and what it may cost in a folder of 40 entries at 0.3 ms a request.
struct Call {
  std::string name;
  std::string scenario;
  std::vector<std::string> arguments;  // FOLDER stands for the folder to choose, FILE for a file
  std::string ending;                  // the strategy that the result names, or what it counts
  double floorSeconds;
  std::size_t mostRequests;
  // Requests of a walk that reads attribute by attribute and to its end: this route at c68d6cb.
  std::size_t requestsOneByOne;
  World::Patches patches = {};
};

std::vector<Call> calls() {
  const std::vector<std::string> folder{"choose-folder", "--path", "FOLDER"};
  const std::vector<std::string> strict{"choose-folder", "--path", "FOLDER", "--strict-background"};
  const std::vector<std::string> file{"choose-path", "--path", "FILE"};
  const std::string strictly = "embedded-chooser-ax-goto-folder-strict-background";
  const std::string english = "english-service-window";
  const std::string chinese = "chinese-service-window";
  const World::Patches place{
      {"/places", {{{"label", "start"}, {"path", "~"}, {"urlKnown", true}}}}};
  const World::Patches unlisted{{"/panels/0/listed", "none"}};
  return {
      {"strict, English", english, strict, strictly, sheetByControls, 1400, 4668},
      {"strict, Chinese", chinese, strict, strictly, sheetByControls, 1300, 4665},
      {"go-to", english, folder, "go-to-folder-ax", walkAndSheet, 4900, 9681},
      {"hierarchy", chinese, folder, "hierarchy", click, 4300, 13313, place},
      {"file", "file-panel-english", file, "go-to-folder-ax", sheetByControls + 1.0, 180, 1621},
      {"close", english, {"close"}, "closed 1", cancelPress, 60, 128, unlisted},
      {"strict close",
       english,
       {"close", "--strict-background"},
       "closed 1",
       cancelPress,
       120,
       401},
  };
}

const Call& callNamed(const std::string& name) {
  static const std::vector<Call> all = calls();
  return *std::ranges::find(all, name, &Call::name);
}

struct Cost {
  std::string ending;
  std::size_t requests = 0;
  double beyondFloorSeconds = 0;
};

// One call in a folder of so many entries, each request at a price in seconds.
Cost costOf(const Call& call, int entries, double price) {
  World::Patches patches = call.patches;
  patches.emplace_back("/prices", Json{{"request", price}});
  FolderWorld folders(call.scenario, patches);
  for (int i = 1; i < entries; ++i) folders.files.makeFolder("start/entry " + std::to_string(i));
  const std::string file = folders.files.makeFile("start/target/notes.txt");
  std::vector<std::string> arguments = call.arguments;
  std::ranges::replace(arguments, "FOLDER", folders.target);
  std::ranges::replace(arguments, "FILE", file);
  arguments.insert(arguments.end(), {"--pid", std::to_string(browserPid)});
  const Outcome outcome = folders.world.run(arguments);
  std::string ending = outcome.errors;
  if (outcome.exitStatus == 0) {
    const Json result = Json::parse(outcome.output);
    ending = result.value("strategy", "closed " + result.value("closed", Json()).dump());
  }
  return {ending, folders.world.record().accessibilityRequests(),
          folders.world.desktop().now() - call.floorSeconds};
}

TEST(Requests, OfEachRouteAreNoMoreThanSoMany) {
  for (const Call& call : calls()) {
    const Cost cost = costOf(call, 40, 0.0003);
    EXPECT_EQ(cost.ending, call.ending) << call.name;
    EXPECT_LE(cost.requests, call.mostRequests) << call.name;
    std::cout << call.name << ": " << cost.requests << " requests (" << call.requestsOneByOne
              << " one by one), beyond its pauses " << cost.beyondFloorSeconds << " s at 0.3 ms, "
              << costOf(call, 40, 0.002).beyondFloorSeconds << " s at 2 ms\n";
  }
}

// The search for the panel has 4 s, each later step 2 s.
TEST(Requests, OfAStrictChoiceFitItsTimeAt2MillisecondsInAFolderOfAThousandEntries) {
  const Call& strict = callNamed("strict, English");
  const Cost cost = costOf(strict, 1000, 0.002);
  EXPECT_EQ(cost.ending, strict.ending);
  EXPECT_LT(cost.beyondFloorSeconds, 4);
}

TEST(Requests, OfAFileAndOfAClosedPanelAreNoMoreInALargeFolder) {
  for (const char* name : {"file", "close", "strict close"}) {
    const Call& call = callNamed(name);
    EXPECT_EQ(costOf(call, 1000, 0.0003).requests, costOf(call, 40, 0.0003).requests) << name;
  }
}

// Only the walk for the go-to field, capped at 700 nodes, sees more of a larger folder.
TEST(Requests, OfAStrictChoiceGrowWithTheFolderNoFurtherThanTheCapsOfItsWalks) {
  const Call& strict = callNamed("strict, English");
  const std::size_t small = costOf(strict, 40, 0.0003).requests;
  const std::size_t large = costOf(strict, 400, 0.0003).requests;
  EXPECT_LE(large - small, 700U);
  EXPECT_LE(costOf(strict, 1000, 0.0003).requests, large + 30);
}

}  // namespace
}  // namespace tessarine::test::requests
