// The controls of a found dialog. Each finder is one bounded walk below a root and exact tests on
// what it visits; none changes the tree. Finders that find nothing answer nothing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/tables.h"
#include "dialog/traversal.h"
#include "platform/element.h"
#include "platform/element_values.h"

namespace tessarine {

// The first button whose title is one of the titles.
std::optional<NodeRef> findButton(const Element& root, const TitleSet& titles);

// The first button with a Choose title.
std::optional<NodeRef> findChooseButton(const Element& root);

// What a pop-up shows: its value, or its title when the value is empty.
std::string popupValue(const Element& popup);

// Whether this is a pop-up whose title or value contains the location marker; of "AXRole",
// "AXTitle" and "AXValue".
bool isMarkedLocationPopup(const ElementValues& node);

// The location pop-up among the nodes of a walk: the first marked one; without one, the first
// pop-up of all. To be shown every node; takes note of those that findLocationPopup would visit.
struct LocationPopupSearch {
  std::optional<NodeRef> popup;
  std::string shown;     // what popupValue has, at the moment of the walk
  bool certain = false;  // no later node can change it
  void visit(const VisitedNode& node);
};
inline const std::vector<std::string> locationPopupAttributes{"AXRole", "AXTitle", "AXValue"};

std::optional<NodeRef> findLocationPopup(const Element& root);
// What that pop-up shows.
std::optional<std::string> shownLocation(const Element& root);

// The first menu item with that title, below a pop-up or a dialog whose menu is open.
std::optional<NodeRef> findMenuItem(const Element& root, const std::string& title);

std::optional<Element> findSearchField(const Element& root);

// Whether this is a text field at least 120 points wide that can be confirmed ("AXConfirm"); of
// "AXRole", "AXPosition" and "AXSize".
bool isWideConfirmableField(const ElementValues& node);

// Whether this is a wide, confirmable text field that holds exactly the expected value, and a node
// that findChooserNameField would visit; of the above and "AXValue".
bool isChooserNameField(const VisitedNode& node, const std::string& expectedValue);
// The first of them.
std::optional<Element> findChooserNameField(const Element& root, const std::string& expectedValue);

// The field of the go-to-folder sheet, below the dialog or its application: among the text fields
// that are not search fields, the first focused one, or else the first wide one that is empty or
// holds text beginning with "/" or "~".
std::optional<Element> findGoToFolderField(const Element& root);

}  // namespace tessarine
