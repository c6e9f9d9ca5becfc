#include "simulator/import/printout.h"

#include <fstream>
#include <nlohmann/json.hpp>

#include "simulator/scenario/json_object.h"
#include "simulator/scenario/json_text.h"
#include "simulator/scenario/scenario.h"

namespace simulator {
namespace importing {
namespace {

constexpr Pid largest_pid = 99999;
constexpr double largest_number = 1e9;  // points: listings may be very long
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

// A frame without position and size is printed as zeros.
Rect readFrame(const JsonPlace& place) {
  JsonObject object(place);
  const Rect frame{object.require("x").number(-largest_number, largest_number),
                   object.require("y").number(-largest_number, largest_number),
                   object.require("width").number(0, largest_number),
                   object.require("height").number(0, largest_number)};
  object.refuseOthers();
  return frame;
}

// What a root and the nodes have in common.
Node readElement(JsonObject& object) {
  Node node;
  node.role = object.require("role").text();
  node.title = object.require("title").text();
  node.description = object.require("description").text();
  node.frame = readFrame(object.require("frame"));
  return node;
}

Node readNode(const JsonPlace& place) {
  JsonObject object(place);
  Node node = readElement(object);
  node.value = object.require("value").text();
  for (const auto& action : object.require("actions").items()) {
    node.actions.push_back(action.text());
  }
  object.refuseOthers();
  return node;
}

Dialog readDialog(const JsonPlace& place, Pid browser) {
  JsonObject object(place);
  Dialog dialog;
  dialog.place = place.pointer;
  dialog.inService = readOwner(object, browser, dialog.pid);
  JsonObject root(object.require("root"));
  dialog.root = readElement(root);
  root.refuseOthers();
  dialog.recognised = object.require("chooserControlsAvailable").flag();
  const JsonPlace nodes = object.require("nodes");
  const auto items = nodes.items();
  if (items.empty() || items.size() > most_nodes) {
    nodes.refuse("expected 1 to " + std::to_string(most_nodes) + " nodes");
  }
  for (const auto& item : items) dialog.nodes.push_back(readNode(item));
  dialog.nodes.erase(dialog.nodes.begin());
  dialog.complete = items.size() < most_nodes;
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
  object.require("description").text();
  window.frame = readFrame(object.require("frame"));
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
