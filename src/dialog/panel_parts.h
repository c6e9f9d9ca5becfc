// The parts of an Open panel, by their identifiers, which depend on neither language nor prompt;
// where the panel has none, by known titles, descriptions and places.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/element.h"

namespace tessarine {

enum class ListingView { list, columns, icons };

struct PanelParts {
  std::optional<Element> confirmButton;
  std::optional<Element> cancelButton;
  std::optional<Element> newFolderButton;  // only folder panels have one
  std::optional<Element> locationPopup;
  std::optional<Element> searchField;
  std::optional<Element> sidebar;
  std::optional<Element> listing;
  ListingView view = ListingView::list;  // of the listing

  // Whether it can be seen what the panel shows, and confirmed.
  bool complete() const { return listing && confirmButton; }
};

// One bounded walk: seven levels, 250 elements, into containers alone, not into sheets that hang
// from the root, nor into listings and their rows. Where neither the buttons nor the listing have
// their identifiers, the buttons are known by the titles of Choose and Cancel buttons, and the
// listing by its description ("list view", "列表视图"), or else as the one to the right of another.
// Throws Unanswered.
PanelParts panelParts(const Element& root);

// Whether elements of this role hold others that are worth a look: windows, groups, areas.
bool isContainerRole(std::string_view role);

}  // namespace tessarine
