#include "simulator/import/printout.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "simulator/scenario/json_object.h"
#include "simulator/scenario/json_text.h"
#include "simulator/scenario/printed_tree_reader.h"
#include "simulator/scenario/scenario.h"

namespace simulator {
namespace importing {
namespace {

constexpr Pid largest_pid = 99999;
constexpr std::size_t most_dialogs = 100;

// Reads what every result begins with; the browser's pid.
Pid readHeader(JsonObject& object, const char* command) {
  const JsonPlace ok = object.require("ok");
  if (!ok.flag()) ok.refuse("expected true");
  const JsonPlace name = object.require("command");
  if (name.text() != command) name.refuse("expected \"" + std::string(command) + "\"");
  return object.require("primaryPid").integer(1, largest_pid);
}

// Reads "pid" and "label"; whether it is a service's label.
bool readOwner(JsonObject& object, Pid browser, Pid& pid) {
  const JsonPlace place = object.require("pid");
  pid = place.integer(1, largest_pid);
  bool service = false;
  object.require("label");
  object.read(
      "label", service,
      JsonObject::Choices<bool>{{"primary-browser", false}, {"open-save-panel-service", true}});
  if (service && pid == browser) place.refuse("expected another pid than the browser's");
  if (!service && pid != browser) place.refuse("expected " + std::to_string(browser));
  return service;
}

PrintedElement readRoot(const JsonPlace& place) {
  JsonObject object(place);
  PrintedElement root;
  root.role = object.require("role").text();
  root.title = object.require("title").text();
  root.description = object.require("description").text();
  root.frame = readPrintedFrame(object.require("frame"));
  object.refuseOthers();
  return root;
}

Dialog readDialog(const JsonPlace& place, Pid browser) {
  JsonObject object(place);
  Dialog dialog;
  dialog.place = place.pointer;
  dialog.inService = readOwner(object, browser, dialog.pid);
  dialog.root = readRoot(object.require("root"));
  object.require("chooserControlsAvailable").flag();
  dialog.tree = readPrintedTree(object.require("nodes"));
  object.refuseOthers();
  return dialog;
}

AppWindow readWindow(const JsonPlace& place) {
  JsonObject object(place);
  AppWindow window;
  window.place = place.pointer;
  window.role = object.require("role").text();
  window.subrole = object.require("subrole").text();
  window.title = object.require("title").text();
  window.description = object.require("description").text();
  window.frame = readPrintedFrame(object.require("frame"));
  object.refuseOthers();
  return window;
}

}  // namespace

Inspection readInspection(const Printout& printout) {
  const auto document = parseJson(printout.text, printout.file);
  JsonObject object({document, printout.file, ""});
  Inspection inspection;
  inspection.browser = readHeader(object, "inspect-open-dialog");
  const JsonPlace list = object.require("dialogs");
  const auto items = list.items();
  if (items.size() > most_dialogs) {
    list.refuse("expected at most " + std::to_string(most_dialogs) + " dialogs");
  }
  for (const auto& item : items) {
    inspection.dialogs.push_back(readDialog(item, inspection.browser));
  }
  object.refuseOthers();
  return inspection;
}

Listing readListing(const Printout& printout, Pid browser) {
  const auto document = parseJson(printout.text, printout.file);
  JsonObject object({document, printout.file, ""});
  if (readHeader(object, "list-windows") != browser) {
    object.require("primaryPid").refuse("expected " + std::to_string(browser));
  }
  Listing listing;
  for (const auto& item : object.require("apps").items()) {
    JsonObject app(item);
    Pid pid = 0;
    if (readOwner(app, browser, pid)) listing.services.push_back(pid);
    for (const auto& place : app.require("windows").items()) {
      listing.windows.push_back(readWindow(place));
      listing.windows.back().pid = pid;
    }
    app.refuseOthers();
  }
  object.refuseOthers();
  return listing;
}

}  // namespace importing

Printout readPrintout(const std::string& file) {
  constexpr std::streamsize most_bytes = 4 << 20;
  Printout printout{file, std::string(most_bytes + 1, '\0')};
  std::ifstream stream(file, std::ios::binary);
  stream.read(printout.text.data(), most_bytes + 1);
  const std::streamsize count = stream.gcount();
  if (!stream.is_open() || stream.bad()) {
    throw ScenarioError(file + ": /: expected a file that can be read");
  }
  if (count > most_bytes) throw ScenarioError(file + ": /: expected at most 4 MiB");
  printout.text.resize(static_cast<std::size_t>(count));
  return printout;
}

}  // namespace simulator
