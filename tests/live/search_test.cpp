// The panel's search field.
#include "live/by_hand.h"

namespace tessarine::test {
namespace {

using Names = std::vector<std::string>;

// Gives the search field the keyboard.
void focusSearch(const Element& panel) {
  const Element field = byIdentifier(panel, "Search");
  setTrue(field, "AXFocused");
  soon([&] { return axIsTrue(field, "AXFocused"); });
}

TEST_F(Live, ASearchKeepsTheEntriesWhoseNamesContainItsText) {
  for (const char* name : {"barley", "garlic", "oats"}) folder().makeFolder(name);
  show({});
  focusSearch(panel());
  typeUnicodeText(keyTaker(), "arl");
  EXPECT_TRUE(soon([&] { return listedNames(panel()) == Names{"barley", "garlic"}; }));
}

TEST_F(Live, ReturnInTheSearchFieldConfirmsNothing) {
  for (const char* name : {"barley", "oats"}) folder().makeFolder(name);
  show({});
  focusSearch(panel());
  typeUnicodeText(keyTaker(), "barley");
  press(keyTaker(), key_return);
  letThingsSettle();
  EXPECT_EQ(outcome(), "open");
}

// Without Return the panel waits for more to be typed.
TEST_F(Live, ReturnInTheSearchFieldSearchesAtOnce) {
  for (const char* name : {"barley", "oats"}) folder().makeFolder(name);
  show({});
  focusSearch(panel());
  const pid_t taker = keyTaker();
  const auto secondsUntilListed = [&](const Names& names) {
    const double start = currentTime();
    EXPECT_TRUE(pollUntil(5, 0.01, [&] { return listedNames(panel()) == names; }));
    return currentTime() - start;
  };
  typeUnicodeText(taker, "barley", 0);
  const double without = secondsUntilListed({"barley"});
  selectAllAndDelete(taker);
  secondsUntilListed({"barley", "oats"});
  typeUnicodeText(taker, "barley", 0);
  tapKey(taker, key_return, 0, {}, 0);
  EXPECT_LT(secondsUntilListed({"barley"}), without / 2);
}

TEST_F(Live, AnotherFolderEndsTheSearch) {
  folder().makeFolder("barley/oats");
  show({});
  focusSearch(panel());
  typeUnicodeText(keyTaker(), "barley");
  goTo(panel(), keyTaker(), folder().path() + "/barley");
  EXPECT_TRUE(soon([&] { return listedNames(panel()) == Names{"oats"}; }));
  EXPECT_EQ(axInputValue(byIdentifier(panel(), "Search")), "");
}

}  // namespace
}  // namespace tessarine::test
