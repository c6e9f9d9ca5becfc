// Builds the elements of an Open panel. Nothing here has an effect yet: the panel attaches what its
// controls do.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/desktop/element.h"
#include "simulator/panel/panel_options.h"
#include "simulator/panel/panel_texts.h"

namespace simulator {

// A named location of the sidebar.
struct SidebarPlace {
  std::string name;
  std::string path;
  bool urlKnown = false;  // its text has an AXURL
};

// The panel's elements, null until they are built and when the panel has none of the kind.
struct PanelElements {
  Element* root = nullptr;
  Element* twin = nullptr;           // the root in the service's tree
  ElementTable* contents = nullptr;  // of the process whose elements stand below the root
  Element* closeButton = nullptr;
  Element* split = nullptr;
  Element* sidebar = nullptr;
  std::vector<Element*> places;  // the sidebar's rows, without its header
  Element* listArea = nullptr;   // the scroll area around the listing, or a browser itself
  Element* list = nullptr;
  Element* viewOptions = nullptr;
  Element* groupBy = nullptr;
  Element* where = nullptr;
  Element* search = nullptr;
  Element* back = nullptr;
  Element* forward = nullptr;
  Element* newFolder = nullptr;
  Element* cancel = nullptr;
  Element* confirm = nullptr;
};

// Appends a child with a frame and attributes.
Element& addElement(Element& parent, const std::string& role, const Rect& frame,
                    std::vector<std::pair<std::string, Value>> attributes = {});

// The panel's own element below `parent` (the application or the browser window), with what is
// readable as soon as the panel is announced: its title bar and its message.
void buildRoot(PanelElements& elements, Element& parent, const PanelOptions& options);

// A window below `application` that shows what the panel's root shows.
void buildTwin(PanelElements& elements, Element& application, const PanelOptions& options);

// The split group with the sidebar and an empty listing.
void buildLists(PanelElements& elements, const PanelOptions& options,
                const std::vector<SidebarPlace>& places);

// Everything that stands around the lists.
void buildControls(PanelElements& elements, const PanelOptions& options);

// Takes the identifiers of the element and of all below it away, as panels of old systems have
// none.
void removeIdentifiers(Element& element);

// The pop-up's menu, one item for each name, first at the top.
Element& buildMenu(Element& popUp, const std::vector<std::string>& names);

}  // namespace simulator
