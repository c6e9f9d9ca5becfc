// The controls of a found dialog. Each finder is one bounded walk below a root and exact tests on
// what it visits; none changes the tree. Finders that find nothing answer nothing.
#pragma once

#include <optional>
#include <string>

#include "core/tables.h"
#include "platform/element.h"

namespace tessarine {

// The first button whose title is one of the titles.
std::optional<NodeRef> findButton(const Element& root, const TitleSet& titles);

// What a pop-up shows: its value, or its title when the value is empty.
std::string popupValue(const Element& popup);

// Whether a pop-up's title or shown value contains the location marker.
bool isMarkedLocationPopup(const Element& popup);

// The first marked location pop-up; without one, the first pop-up of all.
std::optional<NodeRef> findLocationPopup(const Element& root);

// The first menu item with that title, below a pop-up or a dialog whose menu is open.
std::optional<NodeRef> findMenuItem(const Element& root, const std::string& title);

std::optional<Element> findSearchField(const Element& root);

// Whether the element is at least 120 points wide and can be confirmed ("AXConfirm").
bool isWideConfirmableField(const Element& field);

// The first wide, confirmable text field that holds exactly the expected value.
std::optional<Element> findChooserNameField(const Element& root, const std::string& expectedValue);

// The field of the go-to-folder sheet, below the dialog or its application: among the text fields
// that are not search fields, the first focused one, or else the first wide one that is empty or
// holds text beginning with "/" or "~".
std::optional<Element> findGoToFolderField(const Element& root);

}  // namespace tessarine
