// How what is seen is drawn: nothing is told by colour alone.
#include "simulator/replay/drawing.h"

#include <gtest/gtest.h>

#include <regex>

namespace simulator::drawing {
namespace {

ShownElement element(const std::string& role, const Rect& frame, const std::string& text = "") {
  ShownElement made;
  made.role = role;
  made.frame = frame;
  made.text = text;
  return made;
}

PanelShown panelOf(std::vector<ShownElement> elements, int leftOut = 0) {
  elements.insert(elements.begin(), element("AXWindow", {0, 0, 400, 300}));
  return {1, "panel", std::move(elements), leftOut};
}

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(Drawing, ASelectedRowHasAMarkAndBoldText) {
  ShownElement row = element("AXRow", {0, 40, 400, 24});
  const ShownElement name = element("AXStaticText", {24, 44, 100, 16}, "alpha");
  const std::string plain = drawPart(panelOf({row, name}));
  row.selected = true;
  const std::string selected = drawPart(panelOf({row, name}));
  EXPECT_EQ(countOf(plain, "class=\"selected\"") + countOf(plain, "class=\"pointing\""), 0U);
  EXPECT_EQ(countOf(plain, "class=\"text\""), 1U);
  EXPECT_EQ(countOf(selected, "class=\"pointing\""), 1U);
  EXPECT_EQ(countOf(selected, "class=\"text on\""), 1U);
  EXPECT_NE(drawingStyle().find(".on { fill: var(--on-accent); font-weight: 700; }"),
            std::string_view::npos);
}

TEST(Drawing, WhatIsDisabledHasABrokenFrameAndWhatHasTheKeyboardADoubledOne) {
  ShownElement button = element("AXButton", {10, 10, 84, 24}, "Open");
  ShownElement field = element("AXTextField", {10, 50, 100, 24});
  field.placeholder = "Search";
  const std::string plain = drawPart(panelOf({button, field}));
  EXPECT_EQ(countOf(plain, "disabled") + countOf(plain, "focus"), 0U);
  EXPECT_EQ(countOf(plain, ">Search<"), 1U);
  button.disabled = true;
  field.focused = true;
  const std::string changed = drawPart(panelOf({button, field}));
  EXPECT_EQ(countOf(changed, "class=\"button disabled\""), 1U);
  EXPECT_EQ(countOf(changed, "class=\"focus\""), 1U);
  EXPECT_NE(drawingStyle().find(".disabled { stroke-dasharray: 3 3; }"), std::string_view::npos);
}

TEST(Drawing, FoldersAndFilesHaveDifferentIcons) {
  ShownElement name = element("AXTextField", {24, 4, 100, 16}, "name");
  name.folder = true;
  const ShownElement icon = element("AXImage", {4, 4, 16, 16});
  EXPECT_EQ(countOf(drawPart(panelOf({icon, name})), "class=\"folder\""), 1U);
  name.folder = false;
  const std::string file = drawPart(panelOf({icon, name}));
  EXPECT_EQ(countOf(file, "class=\"file\""), 1U);
  EXPECT_EQ(countOf(file, "class=\"field"), 0U);
}

TEST(Drawing, TextsEndWhereTheirFramesDo) {
  const std::string longName(100, 'x');
  const std::string svg = drawPart(panelOf({element("AXStaticText", {0, 0, 70, 16}, longName)}));
  std::smatch text;
  ASSERT_TRUE(std::regex_search(svg, text, std::regex(">(x+)…<")));
  EXPECT_LT(text[1].length(), 11);
  EXPECT_GT(text[1].length(), 5);
  // Never within a letter.
  std::string wide;
  for (int i = 0; i < 40; ++i) wide += "文";
  const std::string cut = drawPart(panelOf({element("AXStaticText", {0, 0, 70, 16}, wide)}));
  ASSERT_TRUE(std::regex_search(cut, text, std::regex(">((文)+)…<")));
}

TEST(Drawing, SaysWhatIsOutOfSight) {
  EXPECT_EQ(countOf(drawPart(panelOf({})), "out of sight"), 0U);
  EXPECT_EQ(countOf(drawPart(panelOf({}, 30)), ">30 more, out of sight<"), 1U);
}

TEST(Drawing, AWindowInFrontOfAPanelIsOfGlass) {
  const ShownWindow window{1, 300, "Terminal", {0, 0, 200, 100}, true};
  EXPECT_EQ(countOf(drawWindow(window, "Terminal", true, false), "glass"), 0U);
  EXPECT_EQ(countOf(drawWindow(window, "Terminal", true, true), "glass"), 2U);
}

TEST(Drawing, EscapesWhatMarkupWouldTakeForItsOwn) {
  EXPECT_EQ(escapeMarkup("<a href='x'>&\"\n"), "&lt;a href=&#39;x&#39;&gt;&amp;&quot; ");
  const PanelShown shown = panelOf({element("AXStaticText", {0, 0, 300, 16}, "</text><b>")});
  EXPECT_EQ(countOf(drawPart(shown), "<b>"), 0U);
}

}  // namespace
}  // namespace simulator::drawing
