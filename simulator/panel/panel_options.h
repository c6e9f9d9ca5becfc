// Everything that can differ between one Open panel and another. The defaults describe a healthy
// folder chooser in English that opened long ago.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/desktop/desktop.h"
#include "simulator/desktop/request.h"
#include "simulator/desktop/value.h"

namespace simulator {

// Where accessibility shows the panel.
enum class PanelShape {
  serviceWindow,  // a window that only the panel service exposes
  hostWindow,     // a window among the browser's windows
  hostSheet,      // a sheet, child of the browser's first window
  embedded,       // a group inside the browser's first window
};

// What the panel may choose.
enum class PanelMode { folders, files };

// Which of the panel's two windows the window server lists.
enum class ListedWindows { hostAndService, host, service, none };

// Which process's key events arrive at the panel.
enum class KeysReach { service, host, both, serviceWhileHostFrontmost };

struct GoToOptions {
  bool oldGeneration = false;    // a sheet with Go and Cancel buttons instead of "GoToWindow"
  bool comboBox = false;         // the old sheet's field is an AXComboBox
  bool normalisesField = false;  // what is written to the field loses its trailing slashes
  bool withoutConfirm = false;   // the field has no AXConfirm action
  bool neverOpens = false;       // the chord does nothing
  bool openAtStart = false;      // the sheet is open as soon as the panel is
};

// What can be wrong with a panel. Everything is off by default.
struct PanelFaults {
  bool confirmDoesNothing = false;               // a press answers success and nothing happens
  std::int32_t confirmAnswers = ax::success;     // what a press answers although it lands
  std::int32_t pressRefused = ax::success;       // what a press of any button answers, not landing
  std::int32_t fieldWriteRefused = ax::success;  // what writing the go-to field answers
  bool ignoresKeys = false;                      // no key event has any effect
  bool ignoresSelection = false;                 // setting AXSelectedRows succeeds without effect
  bool staleListing = false;                     // the rows stay those of the first folder shown
  bool noConfirmButton = false;                  // the panel has no confirm button
  bool goToReturnConfirms = false;               // the go-to sheet's Return confirms the panel too
  Seconds closesLateBySeconds = 0;               // added to the time the panel takes to close
};

struct PanelOptions {
  Pid host = 812;
  Pid service = 900;
  std::string serviceName;     // "Open and Save Panel Service (Browser)"
  std::string serviceCommand;  // what ps shows for it
  PanelShape shape = PanelShape::serviceWindow;
  PanelMode mode = PanelMode::folders;
  Language language = Language::english;
  ListedWindows listed = ListedWindows::hostAndService;
  KeysReach keysReach = KeysReach::service;
  std::string folder = "/usr";         // the folder shown first
  std::optional<std::string> title;    // absent: "Open" in the language; a sheet has none
  std::optional<std::string> prompt;   // the confirm button's text; absent: by mode and language
  std::optional<std::string> message;  // the static text; absent: by language, embedded only
  bool modal = true;                   // of windows: an AXDialog, else an AXStandardWindow
  Rect frame{320, 180, 800, 450};
  Seconds opensAtSeconds = 0;  // 0: opened long ago, everything is there from the start
  double slow = 1;             // multiplies every delay of the panel
  GoToOptions goTo;
  PanelFaults faults;
};

}  // namespace simulator
