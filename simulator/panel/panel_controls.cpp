// What the controls of a panel do when they are pressed or written to.
#include "simulator/panel/folder.h"
#include "simulator/panel/open_panel.h"
#include "simulator/panel/panel_texts.h"

namespace simulator {
namespace {

// Measured: the menu of enclosing folders takes this long.
constexpr Seconds menu_delay = 0.4;
// Assumed (Live.SearchResultsAppearWithinNineTenthsOfASecond): from the last change of the search
// text to its results.
constexpr Seconds search_delay = 0.3;

}  // namespace

// Assumed (Live.APressOfADisabledButtonHasNoEffect,
// Live.APressOfTheDisabledBackButtonSucceedsAndHasNoEffect): pressing a disabled button succeeds
// and nothing happens.
void OpenPanel::attachPress(Element* button, std::function<void()> effect) {
  if (button == nullptr) return;
  const auto pressed = [button, effect] {
    if (std::get<bool>(*button->get("AXEnabled"))) effect();
  };
  button->addAction("AXPress", [this, pressed] {
    if (options_.faults.pressRefused != ax::success) return options_.faults.pressRefused;
    pressed();
    return ax::success;
  });
  presses_.emplace_back(button, pressed);
}

void OpenPanel::attachConfirm() {
  attachPress(elements_.confirm, [this] {
    if (!options_.faults.confirmDoesNothing) confirm();
  });
  if (elements_.confirm == nullptr || options_.faults.pressRefused != ax::success) return;
  const auto press = presses_.back().second;
  elements_.confirm->addAction("AXPress", [this, press] {
    const std::int32_t answer = options_.faults.confirmAnswers;
    press();
    return answer;
  });
}

// Those that exist when the panel opens.
std::vector<SidebarPlace> OpenPanel::sidebarPlaces() const {
  const std::string& home = surroundings_.home;
  std::vector<SidebarPlace> places;
  if (surroundings_.places) {
    for (SidebarPlace place : *surroundings_.places) {
      const auto path = typedPath(place.path, home, "/");
      if (!path) continue;
      place.path = *path;
      places.push_back(std::move(place));
    }
    return places;
  }
  for (const std::string& path :
       {std::string("/Applications"), pathWithin(home, "Desktop"), pathWithin(home, "Documents"),
        pathWithin(home, "Downloads"), home, std::string("/")}) {
    if (isDirectory(path)) places.push_back({desktop_.displayName(path), path});
  }
  return places;
}

// Assumed (no test can tell: which places there are is not ours to choose): a place can be selected
// by who sets its row's attribute.
void OpenPanel::attachPlaces() {
  for (std::size_t i = 0; i < places_.size(); ++i) {
    elements_.places[i]->makeSettable("AXSelected",
                                      [this, path = places_[i].path](const Value& value) {
                                        const bool* selected = std::get_if<bool>(&value);
                                        if (selected == nullptr) return ax::illegalArgument;
                                        if (*selected) navigate(path);
                                        return ax::success;
                                      });
  }
}

// Assumed (Live.TheSearchFieldOffersNoConfirmation,
// Live.SearchResultsAppearWithinNineTenthsOfASecond,
// Live.ASearchKeepsTheEntriesWhoseNamesContainItsText): nobody saw which actions the search field
// has, so it has none unless a scenario says so; what is written into it is searched for as what is
// typed; it can be given the keyboard.
void OpenPanel::attachSearch() {
  Element& field = *elements_.search;
  field.makeSettable("AXValue", [this](const Value& value) {
    const std::string* text = std::get_if<std::string>(&value);
    if (text == nullptr) return ax::illegalArgument;
    search_ = {*text, false};
    editSearch();
    return ax::success;
  });
  field.makeSettable("AXFocused", [this](const Value& value) {
    const bool* focused = std::get_if<bool>(&value);
    if (focused == nullptr) return ax::illegalArgument;
    if (*focused) takeKeyboard(Keyboard::search);
    return ax::success;
  });
  if (!options_.searchConfirms) return;
  field.addAction("AXConfirm", [this] {
    searchAtOnce();
    return ax::success;
  });
}

void OpenPanel::searchAtOnce() {
  fillListing();
  updateControls();
}

void OpenPanel::editSearch() {
  updateControls();
  later(search_delay, [this, text = search_.text] {
    if (phase_ != Phase::open || text != search_.text) return;
    fillListing();
    updateControls();
  });
}

// Measured: AXShowMenu opens the menu. Assumed (no test can tell: the tool does not use it): a
// press does, too.
void OpenPanel::attachWhere() {
  attachPress(elements_.where, [this] { openMenu(); });
  elements_.where->addAction("AXShowMenu", [this] {
    if (options_.faults.showMenuRefused != ax::success) return options_.faults.showMenuRefused;
    openMenu();
    return ax::success;
  });
}

// The folder shown and those around it up to its volume.
// Assumed (Live.OtherVolumesFollowTheFoldersInTheLocationMenuByTheirPaths): then the other volumes,
// in the order of their paths.
std::vector<std::string> OpenPanel::menuPaths() const {
  const auto& volumes = desktop_.volumes();
  std::vector<std::string> paths{folder_};
  while (!volumes.contains(paths.back())) paths.push_back(parentFolder(paths.back()));
  const std::string own = paths.back();
  for (const auto& [path, name] : volumes) {
    if (path != own) paths.push_back(path);
  }
  return paths;
}

void OpenPanel::openMenu() {
  later(menu_delay, [this] {
    if (phase_ != Phase::open || menu_ != nullptr) return;
    menu_paths_ = menuPaths();
    std::vector<std::string> names;
    for (const auto& path : menu_paths_) names.push_back(desktop_.displayName(path));
    menu_ = &buildMenu(*elements_.where, names);
    for (std::size_t i = 0; i < menu_paths_.size(); ++i) {
      const auto pick = [this, path = menu_paths_[i]] {
        pickMenuItem(path);
        return ax::success;
      };
      Element& item = *menu_->children()[i];
      if (!options_.faults.menuItemsWithoutPress) item.addAction("AXPress", pick);
      if (!options_.faults.menuItemsWithoutPick) item.addAction("AXPick", pick);
    }
    menu_->addAction("AXCancel", [this] {
      closeMenu();
      return ax::success;
    });
    note("menu opened");
  });
}

void OpenPanel::closeMenu() {
  if (menu_ == nullptr) return;
  elements_.where->removeChild(*menu_);
  menu_ = nullptr;
}

void OpenPanel::pickMenuItem(const std::string& path) {
  closeMenu();
  navigate(path);
}

void OpenPanel::takeKeyboard(Keyboard where) {
  keyboard_ = where;
  listing_->showKeyboard(where == Keyboard::list);
  if (elements_.search != nullptr) elements_.search->set("AXFocused", where == Keyboard::search);
  const Element* focused = where == Keyboard::list     ? &listing_->keyboardElement()
                           : where == Keyboard::search ? elements_.search
                                                       : nullptr;
  if (focused != nullptr && !go_to_.isShown() && isSeen()) {
    shownIn().root.set("AXFocusedUIElement", focused->id());
  }
}

}  // namespace simulator
