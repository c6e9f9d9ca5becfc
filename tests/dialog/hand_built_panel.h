// An Open panel built element by element, a sheet of the browser's window, for what no scenario
// says: entries of anywhere, selections of any kind, parts at any place.
#pragma once

#include <string>
#include <vector>

#include "dialog/panel_parts.h"
#include "dialog/tree.h"
#include "support/world.h"

namespace tessarine::test {

class HandBuiltPanel : public BareDesktop {
 public:
  using Node = simulator::Element;

  // Lists entries in a view: "ListView", "ColumnView" or "IconView"; "" for a panel without one.
  explicit HandBuiltPanel(const std::string& view = "ListView") : view_(view) {
    if (view == "ColumnView") {
      listing = &add(split, view, "AXBrowser");
      listing->setFrame({200, 100, 700, 400});
      listing->set("AXColumns", simulator::List{});
    } else if (!view.empty()) {
      Node& area = add(split, "area", "AXScrollArea");
      listing = &add(area, view, view == "IconView" ? "AXList" : "AXOutline");
      listing->setFrame({200, 100, 700, 400});
      list = listing;
      list->set(selectionAttribute(), simulator::List{});
      if (view == "ListView") list->set("AXRows", simulator::List{});
    }
  }

  // A column to the right of the others; entries are added to the last one.
  Node& addColumn() {
    Node& area = add(*listing, "area", "AXScrollArea");
    list = &add(area, "column", "AXList");
    list->set(selectionAttribute(), simulator::List{});
    columns_.emplace_back(area.id());
    listing->set("AXColumns", simulator::List(columns_));
    return *list;
  }

  // An entry of the view; without a location when that is empty.
  Node& addEntry(const std::string& location) {
    Node& entry = list->addChild(view_ == "ListView" ? "AXRow" : "AXGroup");
    entry.set("AXSelected", false);
    Node& holder = view_ == "ListView" ? entry.addChild("AXCell") : entry;
    if (view_ == "ListView") {
      entry.set("AXSubrole", std::string("AXOutlineRow"));
      rows_.emplace_back(entry.id());
      list->set("AXRows", simulator::List(rows_));
    }
    holder.addChild("AXImage");
    Node& field = holder.addChild("AXTextField");
    field.set("AXValue", location.substr(location.rfind('/') + 1));
    if (!location.empty()) field.set("AXURL", simulator::Url{"file://" + location});
    return entry;
  }

  // What is listed from now on is built anew.
  void removeEntries() {
    list->removeChildren();
    rows_.clear();
    if (view_ == "ListView") list->set("AXRows", simulator::List{});
    list->set(selectionAttribute(), simulator::List{});
  }
  // The view itself is built anew.
  void rebuildListing() {
    rows_.clear();
    Node& area = *listing->parent();
    area.removeChild(*listing);
    listing = list = &add(area, view_, view_ == "IconView" ? "AXList" : "AXOutline");
    removeEntries();
  }

  void select(const std::vector<const Node*>& entries) {
    simulator::List ids;
    for (const Node* entry : entries) ids.emplace_back(entry->id());
    list->set(selectionAttribute(), std::move(ids));
    for (const auto& child : list->children()) {
      const bool chosen = std::find(entries.begin(), entries.end(), child.get()) != entries.end();
      child->set("AXSelected", chosen);
    }
  }

  std::string selectionAttribute() const {
    return view_ == "ListView" ? "AXSelectedRows" : "AXSelectedChildren";
  }

  Element rootHandle() const { return handle(root); }
  PanelParts parts() const { return panelParts(rootHandle()); }

  Node& window = addWindow("Extensions");
  Node& root = add(window, "open-panel", "AXSheet");
  Node& split = add(root, "split", "AXSplitGroup");
  Node& popup = add(split, "where popup", "AXPopUpButton", {{"AXValue", ""}});
  Node& search =
      add(split, "Search", "AXTextField", {{"AXSubrole", "AXSearchField"}, {"AXValue", ""}});
  Node& cancel = add(split, "CancelButton", "AXButton", {{"AXTitle", "Cancel"}});
  Node& confirm = add(split, "OKButton", "AXButton", {{"AXTitle", "Select"}, {"AXEnabled", true}});
  Node* listing = nullptr;  // the view
  Node* list = nullptr;     // what entries stand in

 private:
  std::string view_;
  simulator::List columns_;
  simulator::List rows_;
};

}  // namespace tessarine::test
