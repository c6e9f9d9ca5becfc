#include "simulator/replay/page.h"

#include <algorithm>
#include <iomanip>
#include <map>
#include <sstream>
#include <vector>

#include "simulator/judge/verdict.h"
#include "simulator/replay/drawing.h"
#include "simulator/replay/page_files.h"
#include "simulator/replay/steps.h"
#include "simulator/replay/time_line.h"

namespace simulator {
namespace {

// Every distinct drawing once, by the number that steps name it by.
class Drawings {
 public:
  // Nothing for a drawing of nothing.
  void add(std::string& names, const std::string& svg) {
    if (svg.empty()) return;
    const auto [found, isNew] = numbers_.try_emplace(svg, numbers_.size() + 1);
    if (isNew) order_.push_back(svg);
    names += (names.empty() ? "d" : " d") + std::to_string(found->second);
  }
  std::string definitions() const {
    std::string html;
    for (std::size_t i = 0; i < order_.size(); ++i) {
      html += "<g id=\"d" + std::to_string(i + 1) + "\">" + order_[i] + "</g>\n";
    }
    return html;
  }

 private:
  std::map<std::string, std::size_t> numbers_;
  std::vector<std::string> order_;
};

Rect aroundAll(const std::vector<Rect>& screens) {
  Rect all = screens.front();
  for (const Rect& screen : screens) {
    const double right = std::max(all.x + all.width, screen.x + screen.width);
    const double bottom = std::max(all.y + all.height, screen.y + screen.height);
    all.x = std::min(all.x, screen.x);
    all.y = std::min(all.y, screen.y);
    all.width = right - all.x;
    all.height = bottom - all.y;
  }
  return all;
}

std::string secondsText(Seconds time) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(3) << time;
  return text.str();
}

// Draws what is seen after a step, from the back to the front.
class SightDrawing {
 public:
  SightDrawing(const Recording& recording, Drawings& drawings)
      : recording_(recording), drawings_(drawings) {}

  // The numbers of the drawings.
  std::string draw(const ReplayStep& step) {
    std::string names;
    for (const Rect& screen : recording_.screens) drawings_.add(names, drawScreen(screen));
    drawWindows(step.sight, names);
    const std::string front =
        step.sight.frontmost ? nameOf(*step.sight.frontmost) : "no application";
    drawings_.add(names, drawMenuBar(recording_.screens.front(), front));
    if (step.mark) drawings_.add(names, drawMark(*step.mark));
    if (step.pointer) drawings_.add(names, drawPointer(*step.pointer, step.pressed));
    if (!step.keys.empty()) {
      drawings_.add(names, drawPosted(recording_.screens.front(), step.keys));
    }
    return names;
  }

 private:
  std::string nameOf(Pid pid) const {
    const auto name = recording_.processes.find(pid);
    return name == recording_.processes.end() ? "process " + std::to_string(pid) : name->second;
  }

  // A window with a part's frame is that part's; two windows may be one panel's. What has no window
  // of its own is in front of the others.
  void drawWindows(const Sight& sight, std::string& names) {
    std::map<std::pair<int, std::string>, PanelShown> left = sight.parts;
    std::vector<std::string> front;
    for (const ShownWindow& window : sight.windows) {
      bool isPart = false;
      for (const auto& [key, shown] : sight.parts) {
        if (shown.elements.front().frame != window.frame) continue;
        isPart = true;
        if (left.erase(key) > 0) front.push_back(drawPart(shown));
      }
      const bool active = sight.frontmost == window.owner;
      if (isPart) continue;
      const bool covering = std::ranges::any_of(
          left, [&](const auto& part) { return overlap(part.second, window.frame); });
      front.push_back(drawWindow(window, nameOf(window.owner), active, covering));
    }
    for (auto each = front.rbegin(); each != front.rend(); ++each) drawings_.add(names, *each);
    for (const auto& [key, shown] : left) drawings_.add(names, drawPart(shown));
  }

  static bool overlap(const PanelShown& part, const Rect& frame) {
    const Rect& own = part.elements.front().frame;
    return own.x < frame.x + frame.width && frame.x < own.x + own.width &&
           own.y < frame.y + frame.height && frame.y < own.y + own.height;
  }

  const Recording& recording_;
  Drawings& drawings_;
};

const char* kindName(ReplayStep::Kind kind) {
  switch (kind) {
    case ReplayStep::Kind::start:
      return "start";
    case ReplayStep::Kind::call:
      return "call";
    case ReplayStep::Kind::input:
      return "posted";
    case ReplayStep::Kind::request:
      return "done";
    case ReplayStep::Kind::program:
      return "program";
    case ReplayStep::Kind::foreground:
      return "front";
    case ReplayStep::Kind::panel:
      return "panel";
    case ReplayStep::Kind::sight:
      return "picture";
  }
  return "";
}

std::string stepItems(const Recording& recording, const std::vector<ReplayStep>& steps,
                      Drawings& drawings) {
  SightDrawing drawing(recording, drawings);
  std::string html;
  for (const ReplayStep& step : steps) {
    html += "<li data-at=\"" + secondsText(step.at) + "\" data-shows=\"" + drawing.draw(step) +
            "\"><button type=\"button\"><span class=\"when\">" + secondsText(step.at) +
            " s</span> <span class=\"kind\">" + kindName(step.kind) +
            "</span> <span class=\"what\">" + escapeMarkup(step.words) + "</span></button></li>\n";
  }
  return html;
}

std::string summaryOf(const Recording& recording) {
  const bool isTrue = recording.verdict == verdict_true;
  std::string html = std::string("<p class=\"verdict ") + (isTrue ? "is-true" : "is-not") +
                     "\"><span aria-hidden=\"true\">" + (isTrue ? "✓" : "✗") +
                     "</span> Verdict: " + escapeMarkup(recording.verdict) + "</p>\n<ul>";
  for (std::size_t i = 0; i < recording.calls.size(); ++i) {
    const RecordedCall& call = recording.calls[i];
    html += "<li>Call " + std::to_string(i + 1) + ": <code>tessarine";
    for (const std::string& argument : call.arguments) html += " " + escapeMarkup(argument);
    html += "</code> — " + (call.status ? "status " + std::to_string(*call.status) : "no status") +
            ", " + escapeMarkup(call.verdict) + "</li>";
  }
  for (std::size_t i = 0; i < recording.panels.size(); ++i) {
    html +=
        "<li>Panel " + std::to_string(i + 1) + ": " + escapeMarkup(recording.panels[i]) + "</li>";
  }
  return html + "</ul>\n";
}

std::string pageHead(const Recording& recording) {
  std::string html = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<meta http-equiv="Content-Security-Policy"
  content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
)";
  html += "<title>Replay of " + escapeMarkup(recording.scenario) + ": " +
          escapeMarkup(recording.verdict) + "</title>\n<style>\n";
  html += drawing_css;
  html += page_css;
  return html + "</style>\n</head>\n";
}

}  // namespace

std::string replayPage(const Recording& recording) {
  const std::vector<ReplayStep> steps = stepsOf(recording);
  Drawings drawings;
  const std::string items = stepItems(recording, steps, drawings);
  const Seconds end = std::max(steps.back().at, 0.001);
  const Rect view = aroundAll(recording.screens);
  std::ostringstream box;
  box << view.x << ' ' << view.y << ' ' << view.width << ' ' << view.height;
  std::ostringstream page;
  page << pageHead(recording) << "<body>\n<header>\n<h1>Replay of <code>"
       << escapeMarkup(recording.scenario) << "</code></h1>\n"
       << summaryOf(recording)
       << "</header>\n<main>\n<section id=\"stage\" aria-label=\"Screen\">\n"
       << "<p id=\"now\" aria-live=\"polite\"></p>\n<svg id=\"screen\" viewBox=\"" << box.str()
       << "\" role=\"img\" aria-labelledby=\"now\"></svg>\n<div id=\"timeline\" data-end=\""
       << secondsText(end) << "\" aria-hidden=\"true\">\n"
       << timeLineLanes(recording, steps, end)
       << "<div class=\"lane\"><span class=\"lane-name\">0 – " << secondsText(end)
       << " s</span><div class=\"track\" id=\"axis\"><span id=\"cursor\"></span></div></div>\n"
       << "</div>\n"
       << controls_html << "</section>\n<section id=\"list\" aria-label=\"Steps\">\n"
       << "<h2>Steps</h2>\n<ol id=\"steps\">\n"
       << items << "</ol>\n</section>\n</main>\n<section id=\"pictures\" hidden></section>\n"
       << "<noscript><p>Playing needs scripts; the steps stand above in words.</p></noscript>\n"
       << "<svg id=\"drawings\" aria-hidden=\"true\" width=\"0\" height=\"0\"><defs>\n"
       << drawings.definitions() << "</defs></svg>\n<script>\n"
       << page_js << "</script>\n</body>\n</html>\n";
  return page.str();
}

}  // namespace simulator
