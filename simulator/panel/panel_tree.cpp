#include "simulator/panel/panel_tree.h"

namespace simulator {
namespace {

// Sizes in points.
// Assumed (Live.TheTwoButtonsStandAtTheLowerRight, Live.TheSidebarTakesAbout160PointsAtTheLeft,
// Live.TheListStandsBetweenTheBars, Live.TheSearchFieldEndsTheToolBar,
// Live.ThePlacesOfTheSidebarAreAbout24PointsHigh): nobody wrote the panel's measures down.
constexpr double title_bar_height = 28;
constexpr double tool_bar_height = 44;
constexpr double bottom_bar_height = 56;
constexpr double sidebar_width = 160;
constexpr double row_height = 24;
constexpr double button_width = 84;
constexpr double button_height = 24;
constexpr double icon_width = 28;
constexpr double margin = 20;
constexpr double message_height = 20;

bool isWindow(const PanelOptions& options) {
  return options.shape != PanelShape::hostSheet && options.shape != PanelShape::embedded;
}

// A frame of the layout, on the screen.
Rect placed(const std::optional<Rect>& wanted, const PanelOptions& options, const Rect& usual) {
  if (!wanted) return usual;
  return {options.frame.x + wanted->x, options.frame.y + wanted->y, wanted->width, wanted->height};
}

// What the title bar leaves.
Rect content(const PanelOptions& options) {
  Rect rest = options.frame;
  const double bar = isWindow(options) ? title_bar_height : 0;
  rest.y += bar;
  rest.height -= bar;
  return rest;
}

Rect listsArea(const PanelOptions& options) {
  const Rect area = content(options);
  return {area.x, area.y + tool_bar_height, area.width,
          area.height - tool_bar_height - bottom_bar_height};
}

Element& addTitleBarButton(Element& root, const Rect& panel, const char* subrole, int position) {
  const Rect frame{panel.x + 8 + 20 * position, panel.y + 7, 14, 14};
  // Assumed (Live.AWindowPanelCanBeClosedAndNeitherMinimisedNorZoomed,
  // Live.ClosingThePanelCancelsIt): a panel can be closed, and neither minimised nor zoomed.
  return addElement(
      root, "AXButton", frame,
      {{"AXSubrole", std::string(subrole)}, {"AXEnabled", position == 0}, {"AXTitle", Value{}}});
}

Element& addButton(Element& parent, const Rect& frame, const char* identifier,
                   const std::string& title) {
  return addElement(
      parent, "AXButton", frame,
      {{"AXIdentifier", std::string(identifier)}, {"AXTitle", title}, {"AXEnabled", true}});
}

Element& addDescribedButton(Element& parent, const char* role, const Rect& frame,
                            const std::string& description, bool enabled) {
  return addElement(parent, role, frame, {{"AXDescription", description}, {"AXEnabled", enabled}});
}

// Adds a row with the text, of which the result is the text's element.
Element& addSidebarRow(PanelElements& elements, Rect& frame, const std::string& name, bool place) {
  Element& row = addElement(*elements.sidebar, "AXRow", frame,
                            {{"AXSubrole", std::string("AXOutlineRow")}, {"AXSelected", false}});
  Element& cell = addElement(row, "AXCell", frame);
  if (place) {
    addElement(cell, "AXImage", {frame.x + 4, frame.y + 4, 16, 16});
    elements.places.push_back(&row);
  }
  Element& text = addElement(
      cell, "AXStaticText", {frame.x + 24, frame.y + 4, frame.width - 28, 16}, {{"AXValue", name}});
  frame.y += frame.height;
  return text;
}

// The element of the listing, without entries. A browser's columns have scroll areas of their own.
void buildListing(PanelElements& elements, const Rect& frame, const PanelOptions& options) {
  const PanelTexts& texts = panelTexts(options.language);
  const auto add = [&](Element& parent, const char* role, const char* identifier,
                       const std::string& description) {
    return &addElement(parent, role, frame,
                       {{"AXIdentifier", std::string(identifier)}, {"AXDescription", description}});
  };
  Element& split = *elements.split;
  if (options.view == PanelView::columns) {
    elements.list = add(split, "AXBrowser", "ColumnView", texts.columnView);
    elements.listArea = elements.list;
    return;
  }
  elements.listArea = &addElement(split, "AXScrollArea", frame);
  if (options.view == PanelView::icons) {
    elements.list = add(*elements.listArea, "AXList", "IconView", texts.iconView);
  } else {
    elements.list = add(*elements.listArea, "AXOutline", "ListView", texts.listView);
  }
}

}  // namespace

Element& addElement(Element& parent, const std::string& role, const Rect& frame,
                    std::vector<std::pair<std::string, Value>> attributes) {
  Element& element = parent.addChild(role);
  element.setFrame(frame);
  for (auto& [name, value] : attributes) element.set(name, std::move(value));
  return element;
}

void buildRoot(PanelElements& elements, Element& parent, const PanelOptions& options) {
  const PanelTexts& texts = panelTexts(options.language);
  const bool sheet = options.shape == PanelShape::hostSheet;
  const bool embedded = options.shape == PanelShape::embedded;
  const char* role = sheet ? "AXSheet" : embedded ? "AXGroup" : "AXWindow";
  Element& root =
      addElement(parent, role, options.frame, {{"AXIdentifier", std::string("open-panel")}});
  const std::string description = options.description.value_or(texts.description);
  if (!description.empty()) root.set("AXDescription", description);
  elements.root = &root;
  if (isWindow(options)) {
    const std::string title = options.title.value_or(texts.open);
    root.set("AXSubrole", std::string(options.modal ? "AXDialog" : "AXStandardWindow"));
    root.set("AXModal", options.modal);
    root.set("AXTitle", title);
    const Rect& frame = options.frame;
    elements.closeButton = &addTitleBarButton(root, frame, "AXCloseButton", 0);
    addTitleBarButton(root, frame, "AXMinimizeButton", 1);
    addTitleBarButton(root, frame, "AXZoomButton", 2);
    addElement(root, "AXStaticText", {frame.x + 80, frame.y + 6, frame.width - 160, 16},
               {{"AXValue", title}});
  } else if (options.title) {
    root.set("AXTitle", *options.title);
  }
  if (!embedded) {
    root.set("AXDefaultButton", Value{});
    root.set("AXCancelButton", Value{});
  }
  if (options.message) {
    const Rect area = content(options);
    // Assumed (Live.WhatTheApplicationWritesStandsOnThePanel): it is a text above the lists, there
    // as soon as the panel is.
    Element& text = root.addChild("AXStaticText", *elements.contents);
    text.setFrame({area.x + margin, area.y, area.width - 2 * margin, message_height});
    text.set("AXValue", *options.message);
  }
  if (!options.identifiers) removeIdentifiers(root);
}

// One measurement found the panel there and says no more.
// Assumed (Live.TheServicesOwnTreeDoesNotShowThePanel): by default it is not.
// Assumed (no test can tell: that one would have to fail first): it is a window there.
void buildTwin(PanelElements& elements, Element& application, const PanelOptions& options) {
  Element& twin = addElement(application, "AXWindow", options.frame,
                             {{"AXIdentifier", std::string("open-panel")},
                              {"AXSubrole", std::string("AXDialog")},
                              {"AXTitle", options.serviceTitle.value_or("")}});
  twin.showChildrenOf(*elements.root);
  elements.twin = &twin;
  if (!options.identifiers) removeIdentifiers(twin);
}

void buildLists(PanelElements& elements, const PanelOptions& options,
                const std::vector<SidebarPlace>& places) {
  const PanelTexts& texts = panelTexts(options.language);
  const Rect area = listsArea(options);
  elements.split = &elements.root->addChild("AXSplitGroup", *elements.contents);
  elements.split->setFrame(content(options));
  const Rect left{area.x, area.y, sidebar_width, area.height};
  Element& leftArea = addElement(*elements.split, "AXScrollArea", left);
  elements.sidebar = &addElement(leftArea, "AXOutline", left, {{"AXDescription", texts.sidebar}});
  Rect row{left.x, left.y, left.width, row_height};
  addSidebarRow(elements, row, texts.favourites, false);
  for (const auto& place : places) {
    Element& text = addSidebarRow(elements, row, place.name, true);
    // Assumed (no test can tell: which places have one is not ours to choose): where it is known,
    // the text has it, as in the listing.
    if (place.urlKnown) text.set("AXURL", Url{fileUrl(place.path, true)});
  }
  addElement(*elements.split, "AXSplitter", {area.x + sidebar_width, area.y, 1, area.height});
  const Rect right =
      placed(options.layout.list, options,
             {area.x + sidebar_width + 1, area.y, area.width - sidebar_width - 1, area.height});
  buildListing(elements, right, options);
  if (!options.identifiers) removeIdentifiers(*elements.split);
}

void buildControls(PanelElements& elements, const PanelOptions& options) {
  const PanelTexts& texts = panelTexts(options.language);
  const Rect area = content(options);
  const double toolY = area.y + (tool_bar_height - button_height) / 2;
  const double bottomY = area.y + area.height - margin - button_height;
  const double right = area.x + area.width - margin;
  const auto tool = [&](double x, double width) {
    return Rect{area.x + x, toolY, width, button_height};
  };
  Element& split = *elements.split;
  elements.viewOptions =
      &addDescribedButton(split, "AXMenuButton", tool(240, icon_width), texts.viewOptions, true);
  elements.groupBy =
      &addDescribedButton(split, "AXMenuButton", tool(276, icon_width), texts.groupBy, true);
  elements.where = &addElement(split, "AXPopUpButton", tool(316, 200),
                               {{"AXIdentifier", std::string("where popup")},
                                {"AXTitle", texts.where},
                                {"AXValue", std::string()},
                                {"AXEnabled", true}});
  elements.search =
      &addElement(split, "AXTextField",
                  {right - options.searchWidth, toolY, options.searchWidth, button_height},
                  {{"AXSubrole", std::string("AXSearchField")},
                   {"AXIdentifier", std::string("Search")},
                   {"AXPlaceholderValue", texts.search},
                   {"AXValue", std::string()},
                   {"AXFocused", false},
                   {"AXEnabled", true}});
  elements.back = &addDescribedButton(split, "AXButton", tool(172, icon_width), texts.back, false);
  elements.forward =
      &addDescribedButton(split, "AXButton", tool(200, icon_width), texts.forward, false);
  if (options.mode == PanelMode::folders) {
    elements.newFolder = &addButton(split, {area.x + margin, bottomY, 100, button_height},
                                    "NewFolderButton", texts.newFolder);
  }
  if (!options.faults.noCancelButton) {
    elements.cancel =
        &addButton(split, {right - 2 * button_width - 12, bottomY, button_width, button_height},
                   "CancelButton", texts.cancel);
  }
  if (!options.faults.noConfirmButton) {
    elements.confirm =
        &addButton(split,
                   placed(options.layout.confirmButton, options,
                          {right - button_width, bottomY, button_width, button_height}),
                   "OKButton", options.prompt.value_or(texts.open));
  }
  if (!options.identifiers) removeIdentifiers(split);
}

void removeIdentifiers(Element& element) {
  element.clear("AXIdentifier");
  for (const auto& child : element.children()) removeIdentifiers(*child);
}

Element& buildMenu(Element& popUp, const std::vector<std::string>& names) {
  Rect item = *popUp.frame();
  Element& menu =
      addElement(popUp, "AXMenu",
                 {item.x, item.y, item.width, item.height * static_cast<double>(names.size())});
  for (const auto& name : names) {
    addElement(menu, "AXMenuItem", item, {{"AXTitle", name}, {"AXEnabled", true}});
    item.y += item.height;
  }
  return menu;
}

}  // namespace simulator
