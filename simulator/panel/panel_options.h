// Everything that can differ between one Open panel and another. The defaults describe a folder
// chooser in English as the facts have it, which opened long ago.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/desktop/desktop.h"
#include "simulator/desktop/request.h"
#include "simulator/desktop/value.h"
#include "simulator/panel/folder.h"
#include "simulator/panel/printed_tree.h"

namespace simulator {

// Where accessibility shows the panel.
enum class PanelShape {
  serviceWindow,  // a window that only the panel service exposes
  hostWindow,     // a window among the browser's windows
  hostSheet,      // a sheet, child of the browser's first window
  embedded,       // a group inside the browser's first window; nobody saw it
  unseen,         // nowhere: it has its windows and takes input, and no tree shows it
};

// What the panel may choose. An upload is of a folder, too; a browser asks once more after it.
enum class PanelMode { folders, files, upload };

// How it shows the entries of a folder.
enum class PanelView { list, columns, icons };

// Which of the panel's two windows the window server lists.
enum class ListedWindows { hostAndService, host, service, none };

// Which process's key events arrive at the panel.
enum class KeysReach { service, host, both, nobody, serviceWhileHostFrontmost };

// Which process's clicks arrive at the panel, when they are posted to a process.
enum class ClicksReach {
  service,
  host,
  both,
  none,
  windowCorner,  // those of either, at the top left corner of the window that is hit
};

struct GoToOptions {
  bool oldGeneration = false;    // a sheet with Go and Cancel buttons instead of "GoToWindow"
  bool comboBox = false;         // the old sheet's field is an AXComboBox
  bool normalisesField = false;  // what is written to the field loses its trailing slashes
  bool withoutConfirm = false;   // the field has no AXConfirm action
  bool neverOpens = false;       // the chord does nothing
  bool openAtStart = false;      // the sheet is open as soon as the panel is
  // A path that is suggested for whatever is typed, selected, and taken by Return.
  std::optional<std::string> suggestion = {};
};

// What the window list does besides naming the panel's open windows. Times count from when the
// panel is first seen, or from its end. Everything is off by default.
struct WindowListOptions {
  std::optional<Seconds> leavesAfterSeconds;         // the open panel's windows are listed no more
  std::optional<Seconds> changesNumberAfterSeconds;  // each window gets another number
  Seconds hostListedAfterSeconds = 0;                // the host's window is not listed until then
  bool listedTwice = false;              // each listed window under a second number as well
  Seconds staysAfterClosingSeconds = 0;  // closed windows stay listed and can be captured
  bool staysUncapturable = false;        // closed windows stay listed and cannot be captured
};

// Frames within the panel, from its top left corner; absent ones are where they usually are.
struct PanelLayout {
  std::optional<Rect> confirmButton;
  std::optional<Rect> list;  // its header row at the top, the first entry 24 points below
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
  bool noCancelButton = false;                   // the panel has no Cancel button
  bool cancelDoesNothing = false;                // a press of Cancel succeeds without effect
  bool confirmsOnSecondReturn = false;           // the first Return that could confirm is lost
  bool keysNeedClick = false;                    // keys are lost until the panel is clicked
  bool escapeNeedsClick = false;                 // Escape alone is
  std::int32_t showMenuRefused = ax::success;    // what AXShowMenu answers, without effect
  bool menuItemsWithoutPress = false;            // the pop-up's items have no AXPress
  bool menuItemsWithoutPick = false;             // the pop-up's items have no AXPick
  bool goToReturnConfirms = false;               // the go-to sheet's Return confirms the panel too
  Seconds closesLateBySeconds = 0;               // added to the time the panel takes to close
};

// What ps shows for a panel service. Measured.
inline constexpr const char* usual_service_command =
    "/System/Library/Frameworks/AppKit.framework/Versions/C/XPCServices/"
    "com.apple.appkit.xpc.openAndSavePanelService.xpc/Contents/MacOS/"
    "com.apple.appkit.xpc.openAndSavePanelService";

struct PanelOptions {
  Pid host = 812;
  Pid service = 900;
  std::string serviceName;  // "Open and Save Panel Service (Browser)"
  std::string serviceCommand = usual_service_command;
  bool serviceEnds = false;  // with its last panel
  PanelShape shape = PanelShape::hostSheet;
  bool elementsBelongToHost = false;  // what stands in the panel is the host's, not the service's
  bool inBothTrees = false;           // the service's tree shows it, too
  PanelMode mode = PanelMode::folders;
  Language language = Language::english;
  // Some saw the service's window listed, others did not.
  // Assumed (Live.TheWindowListCallsTheServiceByItsApplication): it is.
  ListedWindows listed = ListedWindows::hostAndService;
  // What the window list calls the two windows; absent: the panel's title where the window is the
  // panel or its host's, and nothing.
  std::optional<std::string> hostTitle;
  std::optional<std::string> serviceTitle;
  KeysReach keysReach = KeysReach::service;
  ClicksReach clicksReach = ClicksReach::none;
  std::string folder = "/usr";             // the folder shown first
  std::optional<std::string> title;        // absent: "Open" in the language; a sheet has none
  std::optional<std::string> description;  // of the root; absent: by language
  std::optional<std::string> prompt;       // the confirm button's text; absent: "Open"
  std::optional<std::string> message;      // a static text above the controls
  bool identifiers = true;                 // elements have an AXIdentifier
  bool searchConfirms = false;             // the search field offers AXConfirm
  double searchWidth = 180;                // in points
  bool asksAfterUpload = false;  // after an upload was chosen the host asks whether it is meant
  bool modal = true;             // of windows: an AXDialog, else an AXStandardWindow
  Rect frame{320, 180, 800, 450};
  PanelLayout layout;
  SortOrder sort = SortOrder::name;
  PanelView view = PanelView::list;
  int listColumns = 4;  // cells of a row in the list view
  WindowListOptions windowList;
  Seconds opensAtSeconds = 0;  // 0: opened long ago, everything is there from the start
  double slow = 1;             // multiplies every delay of the panel
  GoToOptions goTo;
  PanelFaults faults;
  PrintedTree tree;  // what was printed of a panel that only stands there; empty: it is modelled
};

}  // namespace simulator
