// The parts of an Open panel, found by what the panel calls them in no language.
#include "dialog/panel_parts.h"

#include <gmock/gmock.h>

#include "dialog/hand_built_panel.h"

namespace tessarine::test::panel_parts {
namespace {

using Node = simulator::Element;
namespace ax = simulator::ax;

// What the tests call elements that have no identifier.
std::string calledOf(const std::optional<Element>& element) {
  return element ? axString(*element, "called").value_or("unnamed") : "nothing";
}

std::string viewOf(const PanelParts& parts) {
  if (!parts.listing) return "none";
  switch (parts.view) {
    case ListingView::list:
      return "list";
    case ListingView::columns:
      return "columns";
    case ListingView::icons:
      return "icons";
  }
  return "unknown";
}

// A root with nothing below it.
struct Root : BareDesktop {
  Node& root = add(addWindow("Extensions"), "open-panel", "AXSheet");
  PanelParts parts() const { return panelParts(handle(root)); }
};

// A panel of an old system: no element has an identifier.
struct OldPanel : BareDesktop {
  Node& root = addWindow("Open");
  Node& split = root.addChild("AXSplitGroup");

  Node& put(const std::string& called, const std::string& role, const Attributes& attributes = {},
            const Rect& frame = {}) {
    Node& element = split.addChild(role);
    element.set("called", called);
    for (const auto& [name, value] : attributes) element.set(name, value);
    element.setFrame({frame.x, frame.y, frame.width, frame.height});
    return element;
  }
  PanelParts parts() const { return panelParts(handle(root)); }
};

TEST(PanelParts, AreFoundByTheirIdentifiers) {
  HandBuiltPanel panel;
  add(panel.split, "NewFolderButton", "AXButton", {{"AXTitle", "New Folder"}});
  add(add(panel.split, "left", "AXScrollArea"), "its outline", "AXOutline",
      {{"AXDescription", "sidebar"}});
  const PanelParts parts = panel.parts();
  EXPECT_EQ(nameOf(parts.confirmButton), "OKButton");
  EXPECT_EQ(nameOf(parts.cancelButton), "CancelButton");
  EXPECT_EQ(nameOf(parts.newFolderButton), "NewFolderButton");
  EXPECT_EQ(nameOf(parts.locationPopup), "where popup");
  EXPECT_EQ(nameOf(parts.searchField), "Search");
  EXPECT_EQ(nameOf(parts.listing), "ListView");
  EXPECT_EQ(nameOf(parts.sidebar), "its outline");
  EXPECT_TRUE(parts.complete());
}

TEST(PanelParts, KnowTheThreeViews) {
  EXPECT_EQ(viewOf(HandBuiltPanel("ListView").parts()), "list");
  EXPECT_EQ(viewOf(HandBuiltPanel("ColumnView").parts()), "columns");
  EXPECT_EQ(viewOf(HandBuiltPanel("IconView").parts()), "icons");
  EXPECT_EQ(viewOf(HandBuiltPanel("").parts()), "none");
}

TEST(PanelParts, AreTheSameInAnyLanguage) {
  for (const char* title : {"选择", "Auswählen", "Upload", "", "Cancel"}) {
    HandBuiltPanel panel;
    panel.confirm.set("AXTitle", std::string(title));
    panel.cancel.set("AXTitle", std::string("Choose"));
    EXPECT_EQ(nameOf(panel.parts().confirmButton), "OKButton") << title;
    EXPECT_EQ(nameOf(panel.parts().cancelButton), "CancelButton") << title;
  }
}

TEST(PanelParts, PreferIdentifiersToTitlesThatStandBefore) {
  Root panel;
  add(panel.root, "other", "AXButton", {{"AXTitle", "Choose"}});
  add(panel.root, "stranger", "AXButton", {{"AXTitle", "Cancel"}});
  add(panel.root, "CancelButton", "AXButton", {{"AXTitle", "Abbrechen"}});
  add(panel.root, "OKButton", "AXButton", {{"AXTitle", "Auswählen"}});
  EXPECT_EQ(nameOf(panel.parts().confirmButton), "OKButton");
  EXPECT_EQ(nameOf(panel.parts().cancelButton), "CancelButton");
}

// A panel that has identifiers and no OKButton has no confirm button, whatever others are called.
TEST(PanelParts, TitlesDoNotCountBesideIdentifiers) {
  Root panel;
  add(panel.root, "CancelButton", "AXButton", {{"AXTitle", "Cancel"}});
  add(panel.root, "OptionsButton", "AXButton", {{"AXTitle", "Open"}});
  EXPECT_EQ(nameOf(panel.parts().confirmButton), "nothing");
  EXPECT_FALSE(panel.parts().complete());
}

// Others than those of a panel's parts tell nothing.
TEST(PanelParts, TitlesCountBesideIdentifiersOfOtherElements) {
  Root panel;
  add(panel.root, "_NS:8", "AXButton", {{"AXTitle", "Cancel"}});
  add(panel.root, "_NS:9", "AXButton", {{"AXTitle", "Open"}});
  EXPECT_EQ(nameOf(panel.parts().confirmButton), "_NS:9");
  EXPECT_EQ(nameOf(panel.parts().cancelButton), "_NS:8");
}

TEST(PanelParts, AreIncompleteWithoutListingOrConfirmButton) {
  HandBuiltPanel withoutListing("");
  EXPECT_FALSE(withoutListing.parts().complete());
  HandBuiltPanel withoutButton;
  withoutButton.split.removeChild(withoutButton.confirm);
  EXPECT_FALSE(withoutButton.parts().complete());
  EXPECT_EQ(nameOf(withoutButton.parts().listing), "ListView");
}

TEST(PanelParts, StandInNestedSplitGroupsInAnyOrder) {
  Root panel;
  Node& inner = add(add(panel.root, "outer", "AXSplitGroup"), "inner", "AXSplitGroup");
  add(inner, "OKButton", "AXButton");
  add(panel.root, "where popup", "AXPopUpButton");
  add(add(inner, "area", "AXScrollArea"), "IconView", "AXList");
  EXPECT_EQ(nameOf(panel.parts().confirmButton), "OKButton");
  EXPECT_EQ(nameOf(panel.parts().locationPopup), "where popup");
  EXPECT_EQ(viewOf(panel.parts()), "icons");
}

TEST(PanelParts, OfTwoOfOneNameTheFirstCounts) {
  HandBuiltPanel panel;
  const Element first = *panel.parts().confirmButton;
  add(panel.split, "OKButton", "AXButton");
  EXPECT_EQ(panel.parts().confirmButton, first);
}

TEST(PanelParts, OfTwoViewsTheFirstCounts) {
  HandBuiltPanel panel("ListView");
  add(*panel.listing->parent(), "IconView", "AXList");
  EXPECT_EQ(viewOf(panel.parts()), "list");
}

// --- Where the walk goes. ---

TEST(PanelParts, AreNotLookedForInEntries) {
  Root panel;
  Node& list = add(panel.root, "ListView", "AXOutline");
  Node& row = add(list, "row", "AXRow");
  add(add(row, "cell", "AXCell"), "OKButton", "AXButton");
  add(row, "CancelButton", "AXButton");
  EXPECT_EQ(nameOf(panel.parts().confirmButton), "nothing");
  EXPECT_EQ(nameOf(panel.parts().cancelButton), "nothing");
}

TEST(PanelParts, AreNotLookedForInTheGoToSheet) {
  HandBuiltPanel panel;
  Node& sheet = add(panel.root, "GoToWindow", "AXSheet");
  add(sheet, "NewFolderButton", "AXButton");
  EXPECT_EQ(nameOf(panel.parts().newFolderButton), "nothing");
}

TEST(PanelParts, CostTheSameHoweverManyEntriesThereAre) {
  const auto cost = [](int entries) {
    HandBuiltPanel panel;
    for (int i = 0; i < entries; ++i) panel.addEntry("/a/" + std::to_string(i));
    const Element root = panel.rootHandle();
    const auto before = panel.desktop.record().accessibilityRequests();
    panelParts(root);
    return panel.desktop.record().accessibilityRequests() - before;
  };
  EXPECT_EQ(cost(500), cost(1));
}

TEST(PanelParts, AreFoundSevenLevelsDeepAndNotEight) {
  const auto foundAt = [](int level) {
    Root panel;
    add(addChain(panel.root, level - 1), "OKButton", "AXButton");
    return panel.parts().confirmButton.has_value();
  };
  EXPECT_TRUE(foundAt(1));
  EXPECT_TRUE(foundAt(7));
  EXPECT_FALSE(foundAt(8));
}

TEST(PanelParts, AreLookedForAmongTwoHundredAndFiftyElements) {
  const auto foundAfter = [](int siblings) {
    Root panel;
    addSiblings(panel.root, siblings);
    add(panel.root, "OKButton", "AXButton");
    return panel.parts().confirmButton.has_value();
  };
  EXPECT_TRUE(foundAfter(248));
  EXPECT_FALSE(foundAfter(250));
}

TEST(PanelParts, ContainersAreWindowsGroupsAndAreas) {
  for (const char* role : {"AXWindow", "AXSheet", "AXDialog", "AXGroup", "AXSplitGroup",
                           "AXScrollArea", "AXLayoutArea", "AXUnknown"}) {
    EXPECT_TRUE(isContainerRole(role)) << role;
  }
  for (const char* role : {"AXRow", "AXOutline", "AXList", "AXBrowser", "AXButton", "AXTextField",
                           "AXWebArea", "AXTable", "AXMenu", ""}) {
    EXPECT_FALSE(isContainerRole(role)) << role;
  }
}

// --- Without identifiers. ---

TEST(OldPanelParts, AreKnownByTheirTitles) {
  struct Case {
    std::string confirm;
    std::string cancel;
  };
  for (const Case& each : {Case{"Choose", "Cancel"}, Case{"选择", "取消"}, Case{"Open", "Cancel"},
                           Case{"打开", "取消"}}) {
    OldPanel panel;
    panel.put("cancel", "AXButton", {{"AXTitle", each.cancel}});
    panel.put("confirm", "AXButton", {{"AXTitle", each.confirm}});
    EXPECT_EQ(calledOf(panel.parts().confirmButton), "confirm") << each.confirm;
    EXPECT_EQ(calledOf(panel.parts().cancelButton), "cancel") << each.cancel;
  }
}

TEST(OldPanelParts, HaveNoButtonThatIsCalledOtherwise) {
  OldPanel panel;
  panel.put("confirm", "AXButton", {{"AXTitle", "Select"}});
  panel.put("text", "AXStaticText", {{"AXTitle", "Choose"}});
  EXPECT_EQ(calledOf(panel.parts().confirmButton), "nothing");
}

TEST(OldPanelParts, KnowTheListByItsDescription) {
  for (const char* description : {"list view", "列表视图"}) {
    OldPanel panel;
    panel.put("list", "AXOutline", {{"AXDescription", description}}, {0, 0, 100, 100});
    panel.put("sidebar", "AXOutline", {{"AXDescription", "sidebar"}}, {200, 0, 100, 100});
    EXPECT_EQ(calledOf(panel.parts().listing), "list") << description;
    EXPECT_EQ(viewOf(panel.parts()), "list");
  }
}

TEST(OldPanelParts, TakeTheRightOfTwoListsForTheListing) {
  for (const bool listFirst : {true, false}) {
    OldPanel panel;
    if (listFirst) panel.put("list", "AXOutline", {}, {160, 0, 500, 300});
    panel.put("sidebar", "AXOutline", {}, {0, 0, 160, 300});
    if (!listFirst) panel.put("list", "AXOutline", {}, {160, 0, 500, 300});
    EXPECT_EQ(calledOf(panel.parts().listing), "list");
    EXPECT_EQ(calledOf(panel.parts().sidebar), "sidebar");
  }
}

TEST(OldPanelParts, KnowTheViewOfTheRightOfTwoLists) {
  OldPanel panel;
  panel.put("sidebar", "AXOutline", {}, {0, 0, 160, 300});
  panel.put("columns", "AXBrowser", {}, {160, 0, 500, 300});
  EXPECT_EQ(viewOf(panel.parts()), "columns");
}

TEST(OldPanelParts, KnowTheViewOfAListThatIsDescribed) {
  OldPanel panel;
  panel.put("columns", "AXBrowser", {{"AXDescription", "列表视图"}});
  EXPECT_EQ(viewOf(panel.parts()), "columns");
}

TEST(OldPanelParts, KnowALongerDescription) {
  OldPanel panel;
  panel.put("list", "AXOutline", {{"AXDescription", "list view, 3 items"}});
  EXPECT_EQ(calledOf(panel.parts().listing), "list");
}

TEST(OldPanelParts, OfTwoListsThatAreDescribedTheFirstCounts) {
  OldPanel panel;
  panel.put("list", "AXOutline", {{"AXDescription", "list view"}});
  panel.put("second", "AXOutline", {{"AXDescription", "list view"}});
  EXPECT_EQ(calledOf(panel.parts().listing), "list");
}

TEST(OldPanelParts, AListThatIsDescribedCountsWhateverStandsToItsRight) {
  OldPanel panel;
  panel.put("list", "AXOutline", {{"AXDescription", "list view"}}, {0, 0, 100, 100});
  panel.put("middle", "AXTable", {}, {100, 0, 100, 100});
  panel.put("right", "AXTable", {}, {200, 0, 100, 100});
  EXPECT_EQ(calledOf(panel.parts().listing), "list");
}

TEST(OldPanelParts, TakeTheOtherListForTheListingWhereTheSidebarIsDescribed) {
  OldPanel panel;
  panel.put("list", "AXOutline", {}, {0, 0, 500, 300});
  panel.put("sidebar", "AXOutline", {{"AXDescription", "边栏"}}, {500, 0, 160, 300});
  EXPECT_EQ(calledOf(panel.parts().listing), "list");
  EXPECT_EQ(calledOf(panel.parts().sidebar), "sidebar");
}

TEST(OldPanelParts, HaveNoListingWhereNothingTellsTwoListsApart) {
  OldPanel panel;
  panel.put("first", "AXOutline", {}, {160, 0, 500, 300});
  panel.put("second", "AXOutline", {}, {160, 300, 500, 300});
  EXPECT_EQ(calledOf(panel.parts().listing), "nothing");
}

TEST(OldPanelParts, AreAPopUpAndASearchField) {
  OldPanel panel;
  panel.put("name", "AXTextField");
  panel.put("search", "AXTextField", {{"AXSubrole", "AXSearchField"}});
  panel.put("popup", "AXPopUpButton");
  EXPECT_EQ(calledOf(panel.parts().searchField), "search");
  EXPECT_EQ(calledOf(panel.parts().locationPopup), "popup");
}

// Its go-to sheet may have one all the same.
TEST(OldPanelParts, AreKnownByTitlesWhenASheetAloneHasAnIdentifier) {
  OldPanel panel;
  panel.put("confirm", "AXButton", {{"AXTitle", "Open"}});
  add(panel.root, "GoToWindow", "AXSheet");
  EXPECT_EQ(calledOf(panel.parts().confirmButton), "confirm");
}

TEST(OldPanelParts, KnowColumns) {
  OldPanel panel;
  panel.put("sidebar", "AXOutline", {{"AXDescription", "sidebar"}}, {0, 0, 160, 300});
  panel.put("columns", "AXBrowser", {}, {160, 0, 500, 300});
  EXPECT_EQ(calledOf(panel.parts().listing), "columns");
  EXPECT_EQ(viewOf(panel.parts()), "columns");
}

TEST(OldPanelParts, KnowIcons) {
  for (const char* role : {"AXList", "AXCollection"}) {
    OldPanel panel;
    panel.put("sidebar", "AXOutline", {{"AXDescription", "sidebar"}}, {0, 0, 160, 300});
    panel.put("icons", role, {}, {160, 0, 500, 300});
    EXPECT_EQ(calledOf(panel.parts().listing), "icons") << role;
    EXPECT_EQ(viewOf(panel.parts()), "icons") << role;
  }
}

TEST(OldPanelParts, KnowATable) {
  OldPanel panel;
  panel.put("sidebar", "AXOutline", {{"AXDescription", "sidebar"}}, {0, 0, 160, 300});
  panel.put("table", "AXTable", {}, {160, 0, 500, 300});
  EXPECT_EQ(calledOf(panel.parts().listing), "table");
  EXPECT_EQ(viewOf(panel.parts()), "list");
}

// --- What does not answer. ---

std::string failureOf(const Element& root) {
  try {
    panelParts(root);
  } catch (const Unanswered& unanswered) {
    return unanswered.gone() ? "gone" : "silent";
  }
  return "none";
}

TEST(PanelParts, ThrowWhenThePanelIsGone) {
  HandBuiltPanel panel;
  const Element root = panel.rootHandle();
  EXPECT_EQ(failureOf(root), "none");
  panel.window.removeChild(panel.root);
  EXPECT_EQ(failureOf(root), "gone");
}

TEST(PanelParts, ThrowWhenHalfOfThemDoNotAnswer) {
  HandBuiltPanel panel;
  const Element root = panel.rootHandle();
  panel.desktop.faults().refused_requests.push_back(
      {.error = ax::cannotComplete, .name = "AXIdentifier", .role = "AXButton"});
  EXPECT_EQ(failureOf(root), "silent");
}

TEST(PanelParts, ThrowWhenAContainerDoesNotSayWhatItHolds) {
  HandBuiltPanel panel;
  const Element root = panel.rootHandle();
  panel.desktop.faults().refused_requests.push_back(
      {.error = ax::cannotComplete, .name = "AXChildren", .role = "AXSplitGroup"});
  EXPECT_EQ(failureOf(root), "silent");
}

}  // namespace
}  // namespace tessarine::test::panel_parts
