// The page that replays a recording: its structure.
#include "simulator/replay/page.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "replay/recorded_run.h"
#include "simulator/replay/steps.h"

namespace simulator::page {
namespace {

using tessarine::test::TemporaryFolder;

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// What the first group matches, each time.
std::vector<std::string> allMatches(const std::string& text, const std::string& pattern) {
  const std::regex expression(pattern);
  std::vector<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
       ++match) {
    found.push_back((*match)[1]);
  }
  return found;
}

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

// A panel in which a folder of this name is gone to, and chosen.
Recording choosing(const std::string& folder) {
  RecordedRun run(R"({"panels": [{"shape": "service-window", "folder": "/usr"}]})");
  const std::size_t call = run.calls.begin({"choose-folder", "--path", folder}, "/", 0.5);
  run.wait(1);
  run.press(900, 5, 0x120000);
  run.wait(1);
  for (const char letter : folder) run.type(900, std::u16string(1, static_cast<char16_t>(letter)));
  run.press(900, 36);
  run.wait(1);
  run.scene->desktop.answer(PostEvent{MouseEvent{1, {500, 190}, 1}, {}});
  run.press(900, 36);
  run.wait(1);
  run.calls.end(call, 0, R"({"ok": true})", run.scene->desktop.now());
  return run.recording();
}

TEST(ReplayPage, DrawsEachStep) {
  const Recording recording = choosing("/usr/share");
  const std::string page = replayPage(recording);
  const auto shows = allMatches(page, "data-shows=\"([^\"]*)\"");
  EXPECT_EQ(shows.size(), stepsOf(recording).size());
  EXPECT_GT(shows.size(), 8U);
  const auto defined = allMatches(page, "<g id=\"(d[0-9]+)\">");
  const std::set<std::string> drawings(defined.begin(), defined.end());
  EXPECT_EQ(drawings.size(), defined.size());
  std::set<std::string> used;
  for (const std::string& step : shows) {
    std::istringstream names(step);
    for (std::string name; names >> name;) {
      EXPECT_TRUE(drawings.contains(name)) << name;
      used.insert(name);
    }
  }
  EXPECT_EQ(used, drawings);
  EXPECT_EQ(countOf(page, "<ol id=\"steps\">"), 1U);
  EXPECT_TRUE(holds(page, "✓</span> Verdict: true</p>")) << recording.verdict;
  EXPECT_TRUE(holds(page, "Panel 1: chosen /usr/share"));
}

// The drawing that shows a text.
std::string drawingWith(const std::string& page, const std::string& text) {
  const std::size_t at = page.find(text, page.find("<defs>"));
  if (at == std::string::npos) return "";
  const std::size_t from = page.rfind("<g id=", at);
  return page.substr(from, page.find("</g>", from) - from);
}

TEST(ReplayPage, ShowsRowsPlacesFieldsThePointerAndWhatWasPostedToWhom) {
  const std::string page = replayPage(choosing("/usr/share"));
  const std::string panel = drawingWith(page, ">Search<");
  for (const char* shown : {">bin<", ">share<", ">Favorites<", ">Macintosh HD<", ">Cancel<"}) {
    EXPECT_TRUE(holds(panel, shown));
  }
  const std::string sheet = drawingWith(page, ">/usr/share<");
  EXPECT_TRUE(holds(sheet, "class=\"field focused\""));
  EXPECT_TRUE(holds(sheet, ">Go to the folder:<"));
  EXPECT_TRUE(holds(page, "<circle class=\"press\" cx=\"500\" cy=\"190\""));
  EXPECT_TRUE(holds(page, "⇧⌘G → Open and Save Panel Service"));
}

TEST(ReplayPage, FetchesNothing) {
  const std::string page = replayPage(choosing("/usr/share"));
  EXPECT_TRUE(holds(page,
                    "default-src 'none'; style-src 'unsafe-inline'; script-src "
                    "'unsafe-inline'"));
  // The name of SVG's elements, which nobody fetches.
  EXPECT_EQ(countOf(page, "://"), 1U);
  EXPECT_EQ(countOf(page, "http://www.w3.org/2000/svg"), 1U);
  for (const char* fetching : {" src=", "url(", "@import", "<link", "<img", "<iframe", "fetch(",
                               "XMLHttpRequest", "import(", "href=\""}) {
    EXPECT_FALSE(holds(page, fetching)) << fetching;
  }
}

TEST(ReplayPage, NamesAreTextAndNothingElse) {
  const TemporaryFolder folder;
  const std::string name = "</script><b>&\"'";
  const std::string path = folder.makeFolder(name);
  const std::string page = replayPage(choosing(path));
  EXPECT_EQ(countOf(page, "</script>"), 1U);
  EXPECT_EQ(countOf(page, "<b>"), 0U);
  const std::string escaped = "&lt;/script&gt;&lt;b&gt;&amp;&quot;&#39;";
  EXPECT_GT(countOf(page, escaped), 3U);
  EXPECT_TRUE(holds(page, "Panel 1: chosen " + folder.path() + "/" + escaped));
  EXPECT_TRUE(holds(drawingWith(page, ">script&gt;&lt;b&gt;"), "class=\"panel\""));
}

TEST(ReplayPage, AFalseSuccessStandsOnTop) {
  Recording recording = choosing("/usr/share");
  recording.verdict = "false success: panel 1 chose /usr";
  const std::string page = replayPage(recording);
  EXPECT_TRUE(holds(page,
                    "<p class=\"verdict is-not\"><span aria-hidden=\"true\">✗</span> "
                    "Verdict: false success: panel 1 chose /usr</p>"));
  EXPECT_LT(page.find("✗</span> Verdict"), page.find("id=\"screen\""));
}

TEST(ReplayPage, OfADesktopOnWhichNothingHappenedHasOneStep) {
  const std::string page = replayPage(RecordedRun("{}").recording());
  EXPECT_EQ(countOf(page, "data-shows="), 1U);
  EXPECT_TRUE(holds(page, "Verdict: no call"));
}

}  // namespace
}  // namespace simulator::page
