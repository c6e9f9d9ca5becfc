// The words on the Open panel in each language.
#pragma once

#include <string>

#include "simulator/panel/panel_options.h"

namespace simulator {

struct PanelTexts {
  std::string open;         // title of a window, confirm button
  std::string description;  // AXDescription of the panel; empty: none
  std::string choose;       // confirm button of a folder panel, where an application calls it so
  std::string cancel;
  std::string sidebar;   // AXDescription of the list of places
  std::string listView;  // AXDescription of the listing, also the two that follow
  std::string columnView;
  std::string iconView;
  std::string viewOptions;
  std::string groupBy;
  std::string where;  // title of the pop-up
  std::string search;
  std::string back;
  std::string forward;
  std::string newFolder;
  std::string name;        // header of the listing's column
  std::string favourites;  // header of the sidebar
  std::string goToFolder;  // text on the go-to sheet
  std::string go;
};

// The words that a Chromium browser puts on a panel, and in its question after an upload.
struct BrowserTexts {
  std::string message;  // above a folder panel
  std::string select;   // confirm button of a folder panel
  std::string upload;   // confirm button of an upload
  std::string cancel;   // in the question
  std::string askUpload;
};

const PanelTexts& panelTexts(Language language);
const BrowserTexts& browserTexts(Language language);

// The language's tag in scenario files: "en", "zh-Hans", "de".
std::string languageTag(Language language);

}  // namespace simulator
