// The controls of a dialog: by which marks each is told, and which of several is preferred.
#include "dialog/controls.h"

#include "core/tables.h"
#include "dialog/tree.h"

namespace tessarine::test {
namespace {

// A dialog in which elements are added one after the other.
class Dialog : public BareDesktop {
 public:
  simulator::Element& root = add(app(), "dialog", "AXSheet");
  Element handle() const { return BareDesktop::handle(root); }
};

void confirmable(simulator::Element& field) {
  field.addAction("AXConfirm", [] { return simulator::ax::success; });
}

// --- Buttons. ---

TEST(DialogControls, TakesTheButtonThatIsVisitedFirst) {
  Dialog dialog;
  auto& group = add(dialog.root, "group");
  add(group, "deep choose", "AXButton", {{"AXTitle", "Choose"}});
  add(dialog.root, "cancel", "AXButton", {{"AXTitle", "Cancel"}});
  add(dialog.root, "open", "AXButton", {{"AXTitle", "Open"}});
  add(dialog.root, "choose", "AXButton", {{"AXTitle", "Choose"}});
  EXPECT_EQ(nameOf(findButton(dialog.handle(), tables().chooseButtonTitles)), "open in dialog");
  EXPECT_EQ(nameOf(findButton(dialog.handle(), tables().cancelButtonTitles)), "cancel in dialog");
}

TEST(DialogControls, MatchesChineseButtonTitles) {
  Dialog dialog;
  add(dialog.root, "choose", "AXButton", {{"AXTitle", "选择"}});
  add(dialog.root, "cancel", "AXButton", {{"AXTitle", "取消"}});
  EXPECT_EQ(nameOf(findButton(dialog.handle(), tables().chooseButtonTitles)), "choose in dialog");
  EXPECT_EQ(nameOf(findButton(dialog.handle(), tables().cancelButtonTitles)), "cancel in dialog");
}

TEST(DialogControls, MatchesAButtonByItsRoleAndWholeTitleAlone) {
  Dialog dialog;
  add(dialog.root, "blank", "AXButton", {{"AXTitle", "Open "}});
  add(dialog.root, "lower case", "AXButton", {{"AXTitle", "open"}});
  add(dialog.root, "longer", "AXButton", {{"AXTitle", "Open File"}});
  add(dialog.root, "text", "AXStaticText", {{"AXTitle", "Open"}});
  add(dialog.root, "described", "AXButton",
      {{"AXTitle", "x"}, {"AXDescription", "Open"}, {"AXValue", "Open"}, {"AXHelp", "Open"}});
  add(dialog.root, "untitled", "AXButton", {{"AXDescription", "Open"}});
  EXPECT_EQ(nameOf(findButton(dialog.handle(), {"Open"})), "nothing");
  EXPECT_EQ(nameOf(findButton(dialog.handle(), {""})), "untitled in dialog");
}

TEST(DialogControls, FindsADisabledButton) {
  Dialog dialog;
  add(dialog.root, "open", "AXButton", {{"AXTitle", "Open"}, {"AXEnabled", false}});
  EXPECT_EQ(nameOf(findButton(dialog.handle(), {"Open"})), "open in dialog");
}

TEST(DialogControls, LooksForButtonsEightLevelsDeep) {
  EXPECT_EQ(reachOf(
                [](auto& parent) {
                  add(parent, "x", "AXButton", {{"AXTitle", "Open"}});
                },
                [](const Element& root) { return findButton(root, {"Open"}).has_value(); }),
            "depth 8, nodes 1800");
}

// --- Pop-ups and their menus. ---

std::string shownBy(const Attributes& attributes) {
  Dialog dialog;
  return popupValue(
      dialog.BareDesktop::handle(add(dialog.root, "popup", "AXPopUpButton", attributes)));
}

TEST(DialogControls, APopUpShowsItsValueOrElseItsTitle) {
  EXPECT_EQ(shownBy({{"AXValue", "value"}, {"AXTitle", "title"}}), "value");
  EXPECT_EQ(shownBy({{"AXValue", ""}, {"AXTitle", "title"}}), "title");
  EXPECT_EQ(shownBy({{"AXValue", 3.0}, {"AXTitle", "title"}}), "title");
  EXPECT_EQ(shownBy({{"AXDescription", "description"}}), "");
}

std::string locationPopupAmong(const std::vector<Attributes>& popups) {
  Dialog dialog;
  int number = 0;
  for (const Attributes& attributes : popups) {
    add(dialog.root, std::to_string(++number), "AXPopUpButton", attributes);
  }
  return nameOf(findLocationPopup(dialog.handle()));
}

TEST(DialogControls, TheLocationPopUpCarriesTheMarkerInTitleOrValue) {
  const Attributes plain{{"AXTitle", "Format"}, {"AXValue", "PNG"}};
  const Attributes titled{{"AXTitle", "文件位置："}, {"AXValue", "Documents"}};
  const Attributes valued{{"AXTitle", "Where:"}, {"AXValue", "位置"}};
  EXPECT_EQ(locationPopupAmong({plain, titled, valued}), "2 in dialog");
  EXPECT_EQ(locationPopupAmong({plain, valued, titled}), "2 in dialog");
  EXPECT_EQ(locationPopupAmong({plain, {{"AXDescription", "位置"}}, titled}), "3 in dialog");
}

TEST(DialogControls, TheFirstPopUpStandsInForOneWithoutTheMarker) {
  EXPECT_EQ(locationPopupAmong({{{"AXTitle", "Where:"}}}), "1 in dialog");
  EXPECT_EQ(locationPopupAmong({{}, {{"AXTitle", "Where:"}}}), "1 in dialog");
}

TEST(DialogControls, WithoutAPopUpThereIsNoLocation) {
  Dialog dialog;
  add(dialog.root, "menu button", "AXMenuButton", {{"AXTitle", "位置"}});
  EXPECT_EQ(nameOf(findLocationPopup(dialog.handle())), "nothing");
}

TEST(DialogControls, LooksForTheLocationPopUpSixLevelsDeep) {
  EXPECT_EQ(reachOf([](auto& parent) { add(parent, "x", "AXPopUpButton"); },
                    [](const Element& root) { return findLocationPopup(root).has_value(); }),
            "depth 6, nodes 220");
}

TEST(DialogControls, FindsTheFirstMenuItemWithExactlyTheTitle) {
  Dialog dialog;
  auto& menu = add(dialog.root, "menu", "AXMenu", {{"AXTitle", "Data"}});
  add(menu, "blank", "AXMenuItem", {{"AXTitle", "Data "}});
  add(menu, "described", "AXMenuItem", {{"AXDescription", "Data"}});
  add(menu, "button", "AXButton", {{"AXTitle", "Data"}});
  add(menu, "first", "AXMenuItem", {{"AXTitle", "Data"}});
  add(menu, "second", "AXMenuItem", {{"AXTitle", "Data"}});
  EXPECT_EQ(nameOf(findMenuItem(dialog.handle(), "Data")), "first in menu");
  EXPECT_EQ(nameOf(findMenuItem(dialog.handle(), "Dat")), "nothing");
}

TEST(DialogControls, LooksForMenuItemsEightLevelsDeep) {
  EXPECT_EQ(reachOf(
                [](auto& parent) {
                  add(parent, "x", "AXMenuItem", {{"AXTitle", "Data"}});
                },
                [](const Element& root) { return findMenuItem(root, "Data").has_value(); }),
            "depth 8, nodes 700");
}

// --- Text fields. ---

const Attributes searchField{{"AXSubrole", "AXSearchField"}};

TEST(DialogControls, TheSearchFieldIsATextFieldOfThatSubrole) {
  Dialog dialog;
  add(dialog.root, "plain", "AXTextField");
  add(dialog.root, "group", "AXGroup", searchField);
  EXPECT_EQ(nameOf(findSearchField(dialog.handle())), "nothing");
  add(dialog.root, "search", "AXTextField", searchField);
  add(dialog.root, "second", "AXTextField", searchField);
  EXPECT_EQ(nameOf(findSearchField(dialog.handle())), "search");
}

TEST(DialogControls, LooksForTheSearchFieldSevenLevelsDeep) {
  EXPECT_EQ(reachOf([](auto& parent) { add(parent, "x", "AXTextField", searchField); },
                    [](const Element& root) { return findSearchField(root).has_value(); }),
            "depth 7, nodes 260");
}

// A field that takes a typed name, as it should be.
simulator::Element& addNameField(simulator::Element& parent, const std::string& name,
                                 const Attributes& attributes = {{"AXValue", "notes"}}) {
  auto& field = add(parent, name, "AXTextField", attributes);
  field.setFrame({0, 0, 120, 22});
  confirmable(field);
  return field;
}

TEST(DialogControls, TheNameFieldHoldsTheTextIsWideAndCanBeConfirmed) {
  Dialog dialog;
  auto& area = add(dialog.root, "other role", "AXTextArea", {{"AXValue", "notes"}});
  area.setFrame({0, 0, 200, 22});
  confirmable(area);
  addNameField(dialog.root, "longer text", {{"AXValue", "notes "}});
  addNameField(dialog.root, "titled", {{"AXTitle", "notes"}});
  addNameField(dialog.root, "narrow").setFrame({0, 0, 100, 22});
  addNameField(dialog.root, "just too narrow").setFrame({0, 0, 119.9, 22});
  add(dialog.root, "without action", "AXTextField", {{"AXValue", "notes"}})
      .setFrame({0, 0, 200, 22});
  EXPECT_EQ(nameOf(findChooserNameField(dialog.handle(), "notes")), "nothing");
  addNameField(dialog.root, "fits");
  addNameField(dialog.root, "fits as well");
  EXPECT_EQ(nameOf(findChooserNameField(dialog.handle(), "notes")), "fits");
}

TEST(DialogControls, AFieldWithoutAValueHoldsTheEmptyText) {
  Dialog dialog;
  addNameField(dialog.root, "valueless", {});
  EXPECT_EQ(nameOf(findChooserNameField(dialog.handle(), "")), "valueless");
}

TEST(DialogControls, LooksForTheNameFieldSevenLevelsDeep) {
  EXPECT_EQ(
      reachOf([](auto& parent) { addNameField(parent, "x"); },
              [](const Element& root) { return findChooserNameField(root, "notes").has_value(); }),
      "depth 7, nodes 260");
}

TEST(DialogControls, TellsAWideConfirmableFieldByWidthAndAction) {
  Dialog dialog;
  const auto fits = [&](double width, const char* action) {
    auto& field = add(dialog.root, "field", "AXTextField");
    field.setFrame({0, 0, width, 22});
    field.addAction("AXPress", [] { return simulator::ax::success; });
    field.addAction(action, [] { return simulator::ax::success; });
    const Element handle = dialog.BareDesktop::handle(field);
    const AttributeNames asked({"AXRole", "AXPosition", "AXSize"});
    return isWideConfirmableField(ElementValues(handle, asked));
  };
  EXPECT_TRUE(fits(120, "AXConfirm"));
  EXPECT_FALSE(fits(119, "AXConfirm"));
  EXPECT_FALSE(fits(120, "AXCancel"));
}

// A field of the go-to-folder sheet's width.
simulator::Element& addPathField(Dialog& dialog, const std::string& name, Attributes attributes) {
  auto& field = add(dialog.root, name, "AXTextField", attributes);
  field.setFrame({0, 0, 200, 22});
  return field;
}

std::string goToFieldOf(const Dialog& dialog) {
  return nameOf(findGoToFolderField(dialog.handle()));
}

TEST(DialogControls, PrefersTheFocusedFieldWhateverItHolds) {
  Dialog dialog;
  addPathField(dialog, "likely", {{"AXValue", "/"}});
  addPathField(dialog, "search", {{"AXSubrole", "AXSearchField"}, {"AXFocused", true}});
  add(dialog.root, "focused", "AXTextField", {{"AXValue", "notes"}, {"AXFocused", true}});
  add(dialog.root, "focused too", "AXTextField", {{"AXFocused", true}});
  EXPECT_EQ(goToFieldOf(dialog), "focused");
}

TEST(DialogControls, PassesOverAFieldThatSaysThatItIsNotFocused) {
  Dialog dialog;
  addPathField(dialog, "unfocused", {{"AXValue", "/"}, {"AXFocused", false}});
  addPathField(dialog, "focused", {{"AXValue", "notes"}, {"AXFocused", true}});
  EXPECT_EQ(goToFieldOf(dialog), "focused");
}

TEST(DialogControls, NeverTakesASearchFieldOrAnotherRoleForTheGoToField) {
  Dialog dialog;
  addPathField(dialog, "search", {{"AXSubrole", "AXSearchField"}, {"AXFocused", true}});
  add(dialog.root, "combo box", "AXComboBox", {{"AXFocused", true}}).setFrame({0, 0, 200, 22});
  EXPECT_EQ(goToFieldOf(dialog), "nothing");
}

TEST(DialogControls, TakesAnUnfocusedFieldThatIsEmptyOrHoldsAPath) {
  for (const char* value : {"~", "~/Documents", "/", "/usr/lib", ""}) {
    Dialog dialog;
    addPathField(dialog, "field", {{"AXValue", value}, {"AXFocused", false}});
    EXPECT_EQ(goToFieldOf(dialog), "field") << value;
  }
}

TEST(DialogControls, TakesTheFirstOfUnfocusedFieldsThatFit) {
  Dialog dialog;
  addPathField(dialog, "valueless", {});
  addPathField(dialog, "path", {{"AXValue", "/usr"}});
  EXPECT_EQ(goToFieldOf(dialog), "valueless");
}

TEST(DialogControls, PassesOverUnfocusedFieldsWithANameOrTooNarrow) {
  Dialog dialog;
  addPathField(dialog, "name", {{"AXValue", "Documents"}});
  addPathField(dialog, "blank", {{"AXValue", " /usr"}});
  addPathField(dialog, "narrow", {{"AXValue", "/usr"}}).setFrame({0, 0, 119.9, 22});
  add(dialog.root, "without frame", "AXTextField", {{"AXValue", "/usr"}});
  EXPECT_EQ(goToFieldOf(dialog), "nothing");
  addPathField(dialog, "just wide enough", {{"AXValue", "/usr"}}).setFrame({0, 0, 120, 22});
  EXPECT_EQ(goToFieldOf(dialog), "just wide enough");
}

TEST(DialogControls, LooksForTheGoToFieldEightLevelsDeep) {
  EXPECT_EQ(reachOf(
                [](auto& parent) {
                  add(parent, "x", "AXTextField", {{"AXFocused", true}});
                },
                [](const Element& root) { return findGoToFolderField(root).has_value(); }),
            "depth 8, nodes 700");
}

}  // namespace
}  // namespace tessarine::test
