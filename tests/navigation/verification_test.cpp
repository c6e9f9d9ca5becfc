#include "navigation/verification.h"

#include <optional>

#include "support/world.h"

namespace tessarine::test::verification {
namespace {

using Node = simulator::Element;
using Texts = std::vector<std::pair<std::string, std::string>>;

// A dialog on a desktop in Chinese, where "/Users" is displayed as "用户".
struct Chooser {
  BareDesktop world;
  Node& root = world.addWindow("Open");

  Chooser() { world.desktop.setLanguage(simulator::Language::simplifiedChinese); }

  Node& add(Node& parent, const std::string& role, const Texts& texts = {}) {
    Node& node = parent.addChild(role);
    for (const auto& [name, text] : texts) node.set(name, text);
    return node;
  }
  Node& addNameField(const std::string& value, double width = 120) {
    Node& field = add(root, "AXTextField", {{"AXValue", value}});
    field.setFrame({0, 0, width, 22});
    field.addAction("AXConfirm", [] { return simulator::ax::success; });
    return field;
  }
  // An outline with a row for each label; all rows are selected.
  void addSelection(const std::vector<std::string>& labels, const std::string& description) {
    Node& outline = add(root, "AXOutline", {{"AXDescription", description}});
    simulator::List selected;
    for (const std::string& label : labels) {
      Node& row = add(outline, "AXRow");
      add(add(row, "AXCell"), "AXTextField", {{"AXValue", label}});
      selected.emplace_back(row.id());
    }
    outline.set("AXSelectedRows", selected);
  }
  bool shows(const std::string& path) const {
    return chooserCurrentFolderMatches(world.handle(root), path);
  }
  bool hasSelected(const std::string& path) const {
    return selectedFileListEntryMatches(world.handle(root), path);
  }
};

TEST(ChooserCurrentFolder, IsTheOneThatTheLocationPopupNames) {
  const std::vector<std::pair<Texts, bool>> popups{
      {{{"AXValue", "Users"}}, true},
      {{{"AXValue", "用户"}}, true},
      {{{"AXTitle", "Users"}}, true},
      {{{"AXTitle", "用户"}, {"AXValue", ""}}, true},
      {{{"AXTitle", "Users"}, {"AXValue", "usr"}}, false},
      {{{"AXValue", "users"}}, false},
      {{{"AXValue", "/Users"}}, false},
      {{{"AXValue", "Users "}}, false},
      {{{"AXDescription", "Users"}}, false},
      {{}, false},
  };
  for (const auto& [texts, expected] : popups) {
    Chooser chooser;
    chooser.add(chooser.root, "AXPopUpButton", texts);
    EXPECT_EQ(chooser.shows("/Users"), expected)
        << (texts.empty() ? "" : texts.back().first + " " + texts.back().second);
  }
}

TEST(ChooserCurrentFolder, IsNoneWithoutAPopupAndANameField) {
  Chooser chooser;
  chooser.add(chooser.root, "AXStaticText", {{"AXValue", "Users"}});
  EXPECT_FALSE(chooser.shows("/Users"));
}

TEST(ChooserCurrentFolder, IsTheOneInTheNameFieldWhateverThePopupNames) {
  Chooser chooser;
  chooser.add(chooser.root, "AXPopUpButton", {{"AXValue", "usr"}});
  EXPECT_FALSE(chooser.shows("/Users"));
  chooser.addNameField("Users");
  EXPECT_TRUE(chooser.shows("/Users"));
}

TEST(ChooserCurrentFolder, IsNotTheOneInAnyOtherField) {
  Chooser displayName;
  displayName.addNameField("用户");
  EXPECT_FALSE(displayName.shows("/Users"));

  Chooser narrow;
  narrow.addNameField("Users", 119);
  EXPECT_FALSE(narrow.shows("/Users"));

  Chooser notConfirmable;
  notConfirmable.add(notConfirmable.root, "AXTextField", {{"AXValue", "Users"}})
      .setFrame({0, 0, 200, 22});
  EXPECT_FALSE(notConfirmable.shows("/Users"));
}

TEST(ChooserCurrentFolder, ComparesTheStandardizedPath) {
  Chooser chooser;
  chooser.add(chooser.root, "AXPopUpButton", {{"AXValue", "用户"}});
  EXPECT_TRUE(chooser.shows("/Users/"));
  EXPECT_TRUE(chooser.shows("/usr/lib/../../Users/."));
  EXPECT_FALSE(chooser.shows("/Users/Shared"));
}

TEST(ChooserCurrentFolder, TakesTheDisplayNameFromTheFinder) {
  Chooser chooser;
  chooser.world.desktop.installProgram("/usr/bin/osascript", [](simulator::ProgramRun& run) {
    run.print("共享资料\n");
    run.end(0);
  });
  chooser.add(chooser.root, "AXPopUpButton", {{"AXValue", "共享资料"}});
  EXPECT_TRUE(chooser.shows("/srv/shared"));
}

TEST(SelectedFileListEntry, IsAnyRowWithTheNameOrTheDisplayName) {
  const std::vector<std::pair<std::vector<std::string>, bool>> selections{
      {{"Users"}, true}, {{"用户"}, true},   {{"usr", "lib", "Users"}, true},
      {{"usr"}, false},  {{"users"}, false}, {{"/Users"}, false},
      {{}, false},
  };
  for (const auto& [labels, expected] : selections) {
    Chooser chooser;
    chooser.addSelection(labels, "列表视图");
    EXPECT_EQ(chooser.hasSelected("/Users"), expected) << ::testing::PrintToString(labels);
    EXPECT_EQ(chooser.hasSelected("/usr/../Users/"), expected);
  }
}

TEST(SelectedFileListEntry, IsOnlyLookedForInTheListView) {
  for (const char* description : {"list view", "边栏", ""}) {
    Chooser chooser;
    chooser.addSelection({"Users"}, description);
    EXPECT_FALSE(chooser.hasSelected("/Users")) << description;
  }
  Chooser without;
  EXPECT_FALSE(without.hasSelected("/Users"));
}

TEST(SelectedFileListEntry, IsNoRowThatIsNotSelected) {
  Chooser chooser;
  chooser.addSelection({"Users"}, "列表视图");
  chooser.root.children().front()->set("AXSelectedRows", simulator::List{});
  EXPECT_FALSE(chooser.hasSelected("/Users"));
}

TEST(ChooserReached, ByWhatIsShownOrSelected) {
  Chooser shown;
  shown.add(shown.root, "AXPopUpButton", {{"AXValue", "Users"}});
  EXPECT_TRUE(chooserReached(shown.world.handle(shown.root), "/Users"));

  Chooser selected;
  selected.addSelection({"Users"}, "列表视图");
  EXPECT_TRUE(chooserReached(selected.world.handle(selected.root), "/Users"));

  Chooser neither;
  EXPECT_FALSE(chooserReached(neither.world.handle(neither.root), "/Users"));
}

}  // namespace
}  // namespace tessarine::test::verification
