// The file list and the sidebar of a dialog: finding, reading and selecting rows.
#include "dialog/file_list.h"

#include <filesystem>

#include "dialog/traversal.h"
#include "dialog/tree.h"

namespace tessarine::test::file_list {
namespace {

using Names = std::vector<std::string>;
using simulator::Url;

simulator::Element& addOutline(simulator::Element& parent, const std::string& name,
                               simulator::Value description) {
  return add(parent, name, "AXOutline", {{"AXDescription", std::move(description)}});
}

// A row with one name cell; answers the cell.
simulator::Element& addRow(simulator::Element& outline, const std::string& name,
                           const Attributes& attributes, const std::string& role = "AXTextField") {
  auto& row = add(outline, name + " row", "AXRow");
  return add(row, name, role, attributes);
}

// A dialog with a sidebar and, after it, a file list.
class Dialog : public BareDesktop {
 public:
  simulator::Element& root = add(app(), "dialog", "AXSheet");
  simulator::Element& sidebar = addOutline(root, "sidebar", "边栏");
  simulator::Element& list = addOutline(root, "list", "列表视图");
  Element handle() const { return BareDesktop::handle(root); }
};

std::string fileListAmong(const Names& descriptions) {
  BareDesktop world;
  for (const auto& description : descriptions) addOutline(world.app(), description, description);
  const auto found = findFileList(world.appHandle());
  return found ? nameOf(found->element) : "nothing";
}

// --- Outlines. ---

TEST(FileList, PrefersTheOutlineMarkedAsListView) {
  EXPECT_EQ(fileListAmong({"other", "边栏", "文件列表视图 1", "文件列表视图 2"}), "文件列表视图 1");
}

TEST(FileList, WithoutAListViewTakesTheFirstOutlineThatIsNotTheSidebar) {
  EXPECT_EQ(fileListAmong({"左边栏", "other 1", "other 2"}), "other 1");
  EXPECT_EQ(fileListAmong({"左边栏", ""}), "");
}

TEST(FileList, TakesEvenASidebarWhenThereIsNothingElse) {
  EXPECT_EQ(fileListAmong({"边栏 1", "边栏 2"}), "边栏 1");
}

TEST(FileList, IsNothingWithoutAnOutline) {
  BareDesktop world;
  add(world.app(), "table", "AXTable", {{"AXDescription", "列表视图"}});
  EXPECT_EQ(nameOf(findFileList(world.appHandle())), "nothing");
  EXPECT_EQ(namesOf(fileListCandidates(world.appHandle())), Names());
  EXPECT_EQ(fileListFingerprint(world.appHandle()), "");
  EXPECT_EQ(selectedRowLabels(world.appHandle()), Names());
  EXPECT_EQ(nameOf(findFolderRow(world.appHandle(), "/a", "a")), "nothing");
  EXPECT_EQ(nameOf(findSidebarItem(world.appHandle(), "a", "/a")), "nothing");
}

TEST(FileList, FindsTheFirstOutlineWhoseDescriptionContainsTheMarker) {
  Dialog dialog;
  addOutline(dialog.root, "second list", "列表视图");
  EXPECT_EQ(nameOf(findOutline(dialog.handle(), "列表视图")), "list in dialog");
  EXPECT_EQ(nameOf(findOutline(dialog.handle(), "边")), "sidebar in dialog");
  EXPECT_EQ(nameOf(findOutline(dialog.handle(), "图标视图")), "nothing");
}

TEST(FileList, ReadsTheMarkerInTheDescriptionAlone) {
  BareDesktop world;
  add(world.app(), "titled", "AXOutline", {{"AXTitle", "边栏"}, {"AXValue", "边栏"}});
  add(world.app(), "list", "AXList", {{"AXDescription", "边栏"}});
  EXPECT_EQ(nameOf(findOutline(world.appHandle(), "边栏")), "nothing");
}

TEST(FileList, LooksForOutlinesEightLevelsDeep) {
  const auto plant = [](auto& parent) { addOutline(parent, "x", "列表视图"); };
  EXPECT_EQ(reachOf(plant, [](const Element& root) { return findFileList(root).has_value(); }),
            "depth 8, nodes 260");
  EXPECT_EQ(
      reachOf(plant, [](const Element& root) { return findOutline(root, "列表视图").has_value(); }),
      "depth 8, nodes 260");
}

TEST(FileList, ANodeBelongsToAnOutlineThatItStandsIn) {
  Dialog dialog;
  addRow(dialog.list, "cell", {});
  const NodeRef node = fileListCandidates(dialog.handle()).front();
  EXPECT_TRUE(nodeBelongsToOutline(node, "列表视图"));
  EXPECT_FALSE(nodeBelongsToOutline(node, "边栏"));
  EXPECT_TRUE(nodeBelongsToOutline({dialog.BareDesktop::handle(dialog.sidebar), {}}, "边栏"));
  EXPECT_FALSE(nodeBelongsToOutline({node.element, {}}, "列表视图"));
}

TEST(FileList, ANodeBelongsOnlyToAncestorsWithinTwentyFiveEntries) {
  const auto belongs = [](int levelsBelow) {
    Dialog dialog;
    const Element node = dialog.BareDesktop::handle(addChain(dialog.list, levelsBelow));
    return nodeBelongsToOutline({node, axParent(node)}, "列表视图");
  };
  EXPECT_TRUE(belongs(24));
  EXPECT_FALSE(belongs(25));
}

// --- Candidates and fingerprint. ---

TEST(FileList, CandidatesAreTheTextCellsOfTheListInVisitingOrder) {
  Dialog dialog;
  addRow(dialog.sidebar, "place", {});
  auto& group = add(dialog.list, "group");
  addRow(group, "deep", {});
  addRow(dialog.list, "field", {}, "AXTextField");
  addRow(dialog.list, "icon", {}, "AXImage");
  addRow(dialog.list, "text", {}, "AXStaticText");
  EXPECT_EQ(namesOf(fileListCandidates(dialog.handle())),
            (Names{"field in field row", "text in text row", "deep in deep row"}));
}

TEST(FileList, LooksForCandidatesFiveLevelsBelowTheList) {
  const auto plant = [](auto& parent) { add(parent, "x", "AXStaticText"); };
  const auto finds = [](const Element& root) { return !fileListCandidates(root).empty(); };
  const auto inList = [&](int depth, int number) {
    Dialog dialog;
    addSiblings(dialog.list, number - 1 - depth);
    plant(addChain(dialog.list, depth - 1));
    return finds(dialog.handle());
  };
  EXPECT_TRUE(inList(5, 50));
  EXPECT_FALSE(inList(6, 50));
  EXPECT_TRUE(inList(1, 700));
  EXPECT_FALSE(inList(1, 701));
}

TEST(FileList, TheFingerprintJoinsTheLabelsThatAreNotEmpty) {
  Dialog dialog;
  EXPECT_EQ(fileListFingerprint(dialog.handle()), "");
  addRow(dialog.list, "1", {{"AXValue", 1.0}});
  EXPECT_EQ(fileListFingerprint(dialog.handle()), "");
  addRow(dialog.list, "2", {{"AXTitle", "title"}, {"AXValue", "x"}, {"AXDescription", "x"}});
  addRow(dialog.list, "3", {{"AXFilename", "not a label"}});
  addRow(dialog.list, "4", {{"AXValue", "value"}, {"AXDescription", "x"}});
  EXPECT_EQ(fileListFingerprint(dialog.handle()), "title|value");
  addRow(dialog.list, "5", {{"AXDescription", "description"}});
  EXPECT_EQ(fileListFingerprint(dialog.handle()), "title|value|description");
}

// --- Selection. ---

// The writes that were asked for, as "AXSelectedRows of list", and whether they succeeded.
Names writes(const Dialog& dialog) {
  Names texts;
  for (const auto& line : dialog.desktop.record().lines()) {
    const auto* request = std::get_if<simulator::AccessibilityRequest>(&line.entry);
    if (request == nullptr || request->verb != simulator::AccessibilityRequest::Verb::set) continue;
    const auto* element = dialog.desktop.findElement(request->element);
    texts.push_back(request->name + " of " + std::get<std::string>(*element->get("AXIdentifier")) +
                    ": " + std::to_string(request->error));
  }
  return texts;
}

// The chain from the dialog's first name cell upward.
std::vector<NodeRef> chainOfFirstCell(const Dialog& dialog) {
  return ancestorChain(fileListCandidates(dialog.handle()).at(0));
}

TEST(FileList, SelectsTheRowAloneAndThenFocusesTheList) {
  Dialog dialog;
  auto& cell = addRow(dialog.list, "cell", {});
  std::vector<simulator::Value> written;
  for (const char* attribute : {"AXSelectedRows", "AXFocused"}) {
    dialog.list.makeSettable(attribute, [&](const simulator::Value& value) {
      written.push_back(value);
      return simulator::ax::success;
    });
  }
  selectContainingRow(chainOfFirstCell(dialog));
  EXPECT_EQ(writes(dialog), (Names{"AXSelectedRows of list: 0", "AXFocused of list: 0"}));
  EXPECT_EQ(written, (std::vector<simulator::Value>{simulator::List{cell.parent()->id()}, true}));
}

TEST(FileList, FocusesTheListEvenWhenItRefusesTheSelection) {
  Dialog dialog;
  addRow(dialog.list, "cell", {});
  selectContainingRow(chainOfFirstCell(dialog));
  EXPECT_EQ(writes(dialog), (Names{"AXSelectedRows of list: -25205", "AXFocused of list: -25205"}));
}

TEST(FileList, SelectsTheInnermostOfNestedRows) {
  Dialog dialog;
  auto& outer = add(dialog.list, "outer row", "AXRow");
  auto& cell = addRow(outer, "cell", {});
  simulator::Value selected;
  dialog.list.makeSettable("AXSelectedRows", [&](const simulator::Value& value) {
    selected = value;
    return simulator::ax::success;
  });
  selectContainingRow(chainOfFirstCell(dialog));
  EXPECT_EQ(selected, simulator::Value(simulator::List{cell.parent()->id()}));
}

TEST(FileList, LeavesTheSelectionUntouchedWithoutAMarkedListAboveTheRow) {
  Dialog dialog;
  dialog.list.set("AXDescription", "list view");
  addRow(dialog.list, "cell", {});
  selectContainingRow(chainOfFirstCell(dialog));
  EXPECT_EQ(writes(dialog), Names());
}

TEST(FileList, LeavesTheSelectionUntouchedWhenTheListStandsBelowTheRow) {
  Dialog dialog;
  auto& row = add(dialog.root, "outer row", "AXRow");
  const Element inner = dialog.BareDesktop::handle(addOutline(row, "inner", "列表视图"));
  selectContainingRow(ancestorChain({inner, axParent(inner)}));
  EXPECT_EQ(writes(dialog), Names());
}

TEST(FileList, LeavesTheSelectionUntouchedWithoutARow) {
  Dialog dialog;
  add(dialog.list, "cell", "AXTextField");
  selectContainingRow(chainOfFirstCell(dialog));
  selectContainingRow({});
  EXPECT_EQ(writes(dialog), Names());
}

TEST(FileList, ReadsEveryLabelInTheSelectedRows) {
  Dialog dialog;
  auto& first = addRow(dialog.list, "1", {{"AXTitle", "notes"}, {"AXValue", "x"}});
  auto& second = addRow(dialog.list, "2", {{"AXValue", "lib"}}, "AXStaticText");
  addRow(dialog.list, "3", {{"AXValue", "not selected"}});
  second.parent()->set("AXDescription", "a row");
  add(*second.parent(), "kind", "AXImage", {{"AXDescription", "folder"}});
  add(*second.parent(), "size", "AXButton", {{"AXValue", 7.0}});
  add(second, "inside", "AXStaticText", {{"AXValue", "notes"}});
  dialog.list.set("AXSelectedRows", simulator::List{second.parent()->id(), first.parent()->id()});
  EXPECT_EQ(selectedRowLabels(dialog.handle()),
            (Names{"a row", "lib", "folder", "notes", "notes"}));
}

TEST(FileList, ReadsNoLabelsWithoutASelection) {
  Dialog dialog;
  addRow(dialog.list, "1", {{"AXTitle", "notes"}});
  EXPECT_EQ(selectedRowLabels(dialog.handle()), Names());
  dialog.list.set("AXSelectedRows", simulator::List{});
  EXPECT_EQ(selectedRowLabels(dialog.handle()), Names());
}

TEST(FileList, ReadsTheSelectionOfTheMarkedListAlone) {
  for (const char* description : {"边栏", "list view"}) {
    BareDesktop world;
    auto& outline = addOutline(world.app(), "outline", description);
    auto& cell = addRow(outline, "1", {{"AXTitle", "notes"}});
    outline.set("AXSelectedRows", simulator::List{cell.parent()->id()});
    EXPECT_EQ(nameOf(findFileList(world.appHandle()).value().element), "outline");
    EXPECT_EQ(selectedRowLabels(world.appHandle()), Names()) << description;
  }
}

TEST(FileList, ReadsSelectedRowsEightLevelsDeep) {
  const auto labels = [](int depth, int number) {
    Dialog dialog;
    auto& row = add(dialog.list, "row", "AXRow");
    addSiblings(row, number - 1 - depth);
    addChain(row, depth).set("AXTitle", "label");
    dialog.list.set("AXSelectedRows", simulator::List{row.id()});
    return selectedRowLabels(dialog.handle()).size();
  };
  EXPECT_EQ(labels(8, 50), 1U);
  EXPECT_EQ(labels(9, 50), 0U);
  EXPECT_EQ(labels(1, 700), 1U);
  EXPECT_EQ(labels(1, 701), 0U);
}

// --- Rows by path or name. ---

// The row found for the folder "/Users/me/lib" shown as "Library".
std::string folderRowAmong(const std::vector<Attributes>& cells,
                           const std::string& childPath = "/Users/me/lib") {
  Dialog dialog;
  int number = 0;
  for (const Attributes& attributes : cells) {
    addRow(dialog.list, std::to_string(++number), attributes);
  }
  const auto found = findFolderRow(dialog.handle(), childPath, "Library");
  return found ? nameOf(found->element) : "nothing";
}

TEST(FileList, FindsARowByThePathThatItPointsAt) {
  EXPECT_EQ(folderRowAmong({{{"AXURL", Url{"file:///Users/me/other"}}},
                            {{"AXURL", Url{"file:///Users/me/lib"}}, {"AXValue", "x"}}}),
            "2");
}

TEST(FileList, ComparesStandardizedPaths) {
  for (const char* url : {"file:///Users/me/lib/", "file:///Users/me/./lib",
                          "file:///Users/me/lib/.", "/Users/me/x/../lib/"}) {
    EXPECT_EQ(folderRowAmong({{{"AXURL", url}}}), "1") << url;
    EXPECT_EQ(folderRowAmong({{{"AXURL", Url{url}}}}), "1") << url;
  }
  EXPECT_EQ(folderRowAmong({{{"AXURL", Url{"file:///Users/me/lib"}}}}, "/Users/./me/lib/"), "1");
  EXPECT_EQ(folderRowAmong({{{"AXURL", Url{"file:///Users/me/Lib"}}}}), "nothing");
}

TEST(FileList, FindsARowByTheFirstNameThatItCarries) {
  EXPECT_EQ(folderRowAmong({{{"AXFilename", "Library"}, {"AXTitle", "x"}}}), "1");
  EXPECT_EQ(folderRowAmong({{{"AXFilename", ""}, {"AXTitle", "Library"}, {"AXValue", "x"}}}), "1");
  EXPECT_EQ(folderRowAmong({{{"AXValue", "Library"}, {"AXDescription", "x"}}}), "1");
  EXPECT_EQ(folderRowAmong({{{"AXDescription", "Library"}}}), "1");
}

TEST(FileList, LooksAtNoNameBehindTheFirst) {
  EXPECT_EQ(folderRowAmong({{{"AXFilename", "x"}, {"AXTitle", "Library"}},
                            {{"AXTitle", "x"}, {"AXValue", "Library"}},
                            {{"AXValue", "x"}, {"AXDescription", "Library"}}}),
            "nothing");
}

TEST(FileList, MatchesANameAsAWhole) {
  EXPECT_EQ(folderRowAmong({{{"AXTitle", "library"}}, {{"AXTitle", "Library "}}, {}}), "nothing");
}

TEST(FileList, ARowWithoutANameNeverMatchesTheEmptyName) {
  Dialog dialog;
  addRow(dialog.list, "1", {});
  EXPECT_EQ(nameOf(findFolderRow(dialog.handle(), "/Users/me/lib", "")), "nothing");
}

TEST(FileList, AnEmptyPathIsNotTheCurrentDirectory) {
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(folderRowAmong({{{"AXURL", Url{"file://" + here}}}}, here), "1");
  EXPECT_EQ(folderRowAmong({{{"AXURL", ""}}}, here), "nothing");
  EXPECT_EQ(folderRowAmong({{{"AXURL", Url{"file://"}}}}, here), "nothing");
}

TEST(FileList, AnEarlierNameWinsOverALaterPath) {
  EXPECT_EQ(folderRowAmong({{{"AXValue", "Library"}, {"AXURL", Url{"file:///elsewhere"}}},
                            {{"AXURL", Url{"file:///Users/me/lib"}}}}),
            "1");
}

// --- The sidebar. ---

// The place found with the label "Documents" that points at "/Users/me/Documents".
std::string placeAmong(const std::vector<std::pair<std::string, Attributes>>& places) {
  Dialog dialog;
  addRow(dialog.list, "listed",
         {{"AXTitle", "Documents"}, {"AXURL", Url{"file:///Users/me/Documents"}}});
  int number = 0;
  for (const auto& [role, attributes] : places) {
    addRow(dialog.sidebar, std::to_string(++number), attributes, role);
  }
  const auto found = findSidebarItem(dialog.handle(), "Documents", "/Users/me/Documents/");
  return found ? nameOf(found->element) : "nothing";
}

TEST(FileList, FindsThePlaceWithTheLabelAndThePath) {
  const Url documents{"file:///Users/me/./Documents/"};
  const Attributes here{{"AXTitle", "Documents"}, {"AXURL", documents}};
  EXPECT_EQ(placeAmong({{"AXStaticText", here}}), "1");
  EXPECT_EQ(placeAmong({{"AXTextField", here}}), "1");
  EXPECT_EQ(placeAmong({{"AXStaticText", {{"AXValue", "Documents"}, {"AXURL", documents}}}}), "1");
  EXPECT_EQ(placeAmong({{"AXStaticText", {{"AXDescription", "Documents"}, {"AXURL", documents}}}}),
            "1");
  EXPECT_EQ(placeAmong({{"AXImage", here}, {"AXStaticText", here}, {"AXStaticText", here}}), "2");
}

TEST(FileList, PassesOverPlacesWithAnotherPathOrAnotherLabel) {
  const Url documents{"file:///Users/me/Documents"};
  const Attributes elsewhere{{"AXTitle", "Documents"}, {"AXURL", Url{"file:///Documents"}}};
  const Attributes pathless{{"AXTitle", "Documents"}};
  const Attributes otherLabel{{"AXTitle", "documents"}, {"AXURL", documents}};
  const Attributes fileName{{"AXFilename", "Documents"}, {"AXURL", documents}};
  const Attributes here{{"AXTitle", "Documents"}, {"AXURL", documents}};
  EXPECT_EQ(placeAmong({{"AXStaticText", elsewhere},
                        {"AXStaticText", pathless},
                        {"AXStaticText", otherLabel},
                        {"AXStaticText", fileName}}),
            "nothing");
  EXPECT_EQ(placeAmong({{"AXStaticText", elsewhere}, {"AXStaticText", here}}), "2");
}

TEST(FileList, LooksForPlacesEightLevelsBelowTheSidebar) {
  const auto finds = [](int depth, int number) {
    Dialog dialog;
    addSiblings(dialog.sidebar, number - 1 - depth);
    add(addChain(dialog.sidebar, depth - 1), "place", "AXStaticText",
        {{"AXTitle", "a"}, {"AXURL", "/a"}});
    return findSidebarItem(dialog.handle(), "a", "/a").has_value();
  };
  EXPECT_TRUE(finds(8, 50));
  EXPECT_FALSE(finds(9, 50));
  EXPECT_TRUE(finds(1, 700));
  EXPECT_FALSE(finds(1, 701));
}

}  // namespace
}  // namespace tessarine::test::file_list
