// What is filmed of a desktop.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

#include "simulator/replay/camera.h"
#include "support/temporary_folder.h"

namespace simulator::camera {
namespace {

using tessarine::test::TemporaryFolder;
using Json = nlohmann::ordered_json;
using Texts = std::vector<std::string>;

class Film {
 public:
  // A panel with these further members that shows a folder with "alpha", "beta" and the file
  // "readme.txt".
  explicit Film(const std::string& members) {
    Json panel = Json::parse(members);
    for (const char* name : {"alpha/inner", "beta"}) folder.makeFolder(name);
    folder.makeFile("readme.txt", "x");
    panel["folder"] = folder.path();
    if (!panel.contains("listColumns")) panel["listColumns"] = 1;
    const Json place{{"label", "Place"}, {"path", folder.path() + "/beta"}};
    scene = makeScene(scenarioFromText(
        Json{{"panels", {panel}}, {"places", {place}}, {"lastGoToPath", "/usr"}}.dump(), "text"));
    camera.emplace(*scene);
  }

  void wait(Seconds seconds) { scene->desktop.advanceTo(scene->desktop.now() + seconds); }
  void press(std::uint16_t code, std::uint64_t flags = 0) {
    scene->desktop.answer(PostEvent{KeyEvent{code, true, flags, {}}, 900});
  }

  // The first element of the desktop that is so.
  Element& find(const std::function<bool(const Element&)>& isWanted) const {
    std::vector<Element*> found;
    const auto look = [&](const auto& self, const Element& element) -> void {
      for (const auto& child : element.children()) {
        if (isWanted(*child)) found.push_back(child.get());
        self(self, *child);
      }
    };
    for (const auto& process : scene->desktop.processes()) look(look, process->root);
    return *found.at(0);
  }

  // What was filmed of the part, in order.
  std::vector<PanelShown> of(const std::string& part) const {
    std::vector<PanelShown> shown;
    for (const RecordLine& line : scene->desktop.record().lines()) {
      const auto* entry = std::get_if<PanelShown>(&line.entry);
      if (entry != nullptr && entry->part == part) shown.push_back(*entry);
    }
    return shown;
  }
  std::size_t screens() const {
    return static_cast<std::size_t>(std::ranges::count_if(
        scene->desktop.record().lines(),
        [](const RecordLine& line) { return std::holds_alternative<ScreenShown>(line.entry); }));
  }

  TemporaryFolder folder;
  std::unique_ptr<Scene> scene;
  std::optional<Camera> camera;
};

Texts textsOf(const PanelShown& shown, const std::string& role) {
  Texts texts;
  for (const ShownElement& element : shown.elements) {
    if (element.role == role) texts.push_back(element.text);
  }
  return texts;
}

const ShownElement& named(const PanelShown& shown, const std::string& text) {
  const auto found = std::ranges::find(shown.elements, text, &ShownElement::text);
  if (found == shown.elements.end()) throw std::runtime_error("nothing shows " + text);
  return *found;
}

TEST(Camera, SeesAPanelsRowsPlacesAndControlsOnceAsLongAsNothingChanges) {
  Film film(R"({"shape": "service-window", "prompt": "Select"})");
  film.wait(30);
  ASSERT_EQ(film.of("panel").size(), 1U);
  const PanelShown shown = film.of("panel").front();
  EXPECT_EQ(shown.panel, 1);
  EXPECT_EQ(shown.leftOut, 0);
  EXPECT_EQ(textsOf(shown, "AXTextField"), (Texts{"alpha", "beta", "readme.txt", ""}));
  EXPECT_EQ(named(shown, "alpha").folder, true);
  EXPECT_EQ(named(shown, "readme.txt").folder, false);
  EXPECT_TRUE(named(shown, "readme.txt").disabled);
  EXPECT_EQ(named(shown, "Place").role, "AXStaticText");
  EXPECT_EQ(named(shown, "Select").identifier, "OKButton");
  EXPECT_EQ(named(shown, "Select").frame, (Rect{1016, 586, 84, 24}));
  EXPECT_EQ(shown.elements.back().role, "AXButton");
  EXPECT_EQ(film.of("sheet").size(), 0U);
  EXPECT_EQ(film.screens(), 1U);
}

TEST(Camera, TellsTheSheetAloneWhileItIsTypedInto) {
  Film film(R"({"shape": "service-window"})");
  film.press(5, 0x120000);
  film.wait(1);
  const std::size_t panels = film.of("panel").size();
  const std::size_t sheets = film.of("sheet").size();
  film.scene->desktop.answer(PostEvent{KeyEvent{0, true, 0, u"/x"}, 900});
  EXPECT_EQ(film.of("panel").size(), panels);
  ASSERT_EQ(film.of("sheet").size(), sheets + 1);
  EXPECT_EQ(textsOf(film.of("sheet").back(), "AXTextField"), Texts{"/x"});
  EXPECT_EQ(textsOf(film.of("sheet").back(), "AXStaticText"), (Texts{"Go to the folder:", "/usr"}));
  EXPECT_EQ(textsOf(film.of("panel").back(), "AXSheet"), Texts{});
  film.press(53);
  film.wait(1);
  EXPECT_TRUE(film.of("sheet").back().elements.empty());
}

TEST(Camera, SeesASelectionAndThePanelsEnd) {
  Film film(R"({"shape": "host-sheet", "mode": "files"})");
  Element& name = film.find(
      [](const Element& element) { return element.offers("AXOpen") && element.text() == "beta"; });
  Element& row = *name.parent()->parent();
  film.scene->desktop.answer(SetAttribute{row.id(), "AXSelected", true});
  ASSERT_EQ(film.of("panel").size(), 2U);
  const PanelShown shown = film.of("panel").back();
  const auto selected = [](const ShownElement& element) { return element.selected; };
  ASSERT_EQ(std::ranges::count_if(shown.elements, selected), 1);
  EXPECT_EQ(std::ranges::find_if(shown.elements, selected)->frame.y,
            named(shown, "beta").frame.y - 4);
  EXPECT_FALSE(named(shown, "Open").disabled);
  film.press(53);
  film.wait(1);
  EXPECT_TRUE(film.of("panel").back().elements.empty());
  EXPECT_EQ(film.screens(), 2U);
}

TEST(Camera, CountsWhatIsScrolledOutOfSight) {
  Film film(R"({"shape": "service-window"})");
  for (int i = 0; i < 40; ++i) film.folder.makeFolder("more-" + std::to_string(i));
  film.wait(1);
  film.scene->desktop.answer(CopyAttribute{{812, 0}, "AXTitle"});  // the folder is looked at
  ASSERT_EQ(film.of("panel").size(), 2U);
  const PanelShown shown = film.of("panel").back();
  const Texts rows = textsOf(shown, "AXTextField");
  EXPECT_EQ(rows.size() - 1 + static_cast<std::size_t>(shown.leftOut), 43U);
  EXPECT_EQ(shown.leftOut, 30);
}

TEST(Camera, SeesPanelsThatNoTreeShowsAndOtherViews) {
  for (const char* shape : {"unseen", "embedded", "host-window"}) {
    for (const char* view : {"list", "columns", "icons"}) {
      const Film film(Json{{"shape", shape}, {"view", view}}.dump());
      ASSERT_EQ(film.of("panel").size(), 1U) << shape << ' ' << view;
      EXPECT_EQ(named(film.of("panel").front(), "beta").folder, true) << shape << ' ' << view;
    }
  }
}

TEST(Camera, SeesTheMenuOfTheLocation) {
  Film film(R"({"shape": "service-window"})");
  const Element& where =
      film.find([](const Element& element) { return element.role() == "AXPopUpButton"; });
  film.scene->desktop.answer(PerformAction{where.id(), "AXShowMenu"});
  film.wait(1);
  ASSERT_EQ(film.of("menu").size(), 1U);
  const Texts items = textsOf(film.of("menu").front(), "AXMenuItem");
  ASSERT_GE(items.size(), 2U);
  EXPECT_EQ(items.back(), "Macintosh HD");
  EXPECT_EQ(textsOf(film.of("panel").back(), "AXMenuItem"), Texts{});
  film.press(53);
  EXPECT_TRUE(film.of("menu").back().elements.empty());
}

TEST(Camera, SeesTheQuestionAfterAnUpload) {
  Film film(R"({"shape": "service-window", "mode": "upload", "asksAfterUpload": true})");
  film.press(36);
  film.wait(1);
  ASSERT_EQ(film.of("question").size(), 1U);
  EXPECT_EQ(textsOf(film.of("question").front(), "AXButton"), (Texts{"Cancel", "Upload"}));
  film.scene->desktop.answer(PostEvent{KeyEvent{36, true, 0, {}}, 812});
  EXPECT_TRUE(film.of("question").back().elements.empty());
}

}  // namespace
}  // namespace simulator::camera
