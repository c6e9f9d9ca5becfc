#include "simulator/replay/time_line.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

#include "simulator/judge/verdict.h"
#include "simulator/replay/drawing.h"

namespace simulator {
namespace {

class Lane {
 public:
  Lane(std::string name, Seconds end) : name_(std::move(name)), end_(end) {}

  void addBar(Seconds from, Seconds to, const std::string& text, const std::string& words) {
    add("bar", "left:" + share(from) + ";width:" + share(std::max(to - from, 0.0)), text, words);
  }
  void addMark(Seconds at, const std::string& sign, const std::string& words) {
    add("tick", "left:" + share(at), sign, words);
  }

  // Nothing without anything in it.
  std::string html() const {
    if (content_.empty()) return "";
    return "<div class=\"lane\"><span class=\"lane-name\">" + escapeMarkup(name_) +
           "</span><div class=\"track\">" + content_ + "</div></div>\n";
  }

 private:
  std::string share(Seconds time) const {
    std::ostringstream text;
    text << std::fixed << std::setprecision(3) << 100 * std::min(time / end_, 1.0) << '%';
    return text.str();
  }
  void add(const char* classes, const std::string& style, const std::string& text,
           const std::string& words) {
    content_ += std::string("<span class=\"") + classes + "\" style=\"" + style + "\" title=\"" +
                escapeMarkup(words) + "\">" + escapeMarkup(text) + "</span>";
  }

  std::string name_;
  Seconds end_;
  std::string content_;
};

Lane callLane(const Recording& recording, Seconds end) {
  Lane lane("Calls", end);
  for (std::size_t i = 0; i < recording.calls.size(); ++i) {
    const RecordedCall& call = recording.calls[i];
    const std::string name = call.arguments.empty() ? "" : call.arguments.front();
    const std::string sign = call.verdict == verdict_true ? "✓ " : "✗ ";
    lane.addBar(call.startedAt, call.endedAt.value_or(end), sign + name,
                "Call " + std::to_string(i + 1) + " " + name + ": " + call.verdict);
  }
  return lane;
}

Lane programLane(const Recording& recording, Seconds end) {
  Lane lane("Programs", end);
  for (const RecordLine& line : recording.lines) {
    const auto* started = std::get_if<ProgramStarted>(&line.entry);
    if (started == nullptr) continue;
    Seconds until = end;
    for (const RecordLine& later : recording.lines) {
      const auto* ended = std::get_if<ProgramEnded>(&later.entry);
      if (ended != nullptr && ended->program == started->program) until = later.time;
    }
    const std::string name = started->path.substr(started->path.rfind('/') + 1);
    lane.addBar(line.time, until, name, started->path);
  }
  return lane;
}

Lane frontLane(const Recording& recording, Seconds end) {
  Lane lane("In front", end);
  Seconds since = 0;
  std::optional<Pid> front;
  const auto add = [&](Seconds until) {
    if (front && until > since) {
      lane.addBar(since, until, processWords(recording, front), processWords(recording, front));
    }
  };
  for (const RecordLine& line : recording.lines) {
    const auto* changed = std::get_if<FrontmostChanged>(&line.entry);
    if (changed == nullptr) continue;
    add(line.time);
    since = line.time;
    front = changed->to;
  }
  add(end);
  return lane;
}

Lane markLane(const char* name, const std::vector<ReplayStep>& steps, ReplayStep::Kind kind,
              const char* sign, Seconds end) {
  Lane lane(name, end);
  for (const ReplayStep& step : steps) {
    if (step.kind == kind) lane.addMark(step.at, step.pointer ? "⬤" : sign, step.words);
  }
  return lane;
}

}  // namespace

std::string timeLineLanes(const Recording& recording, const std::vector<ReplayStep>& steps,
                          Seconds end) {
  return callLane(recording, end).html() + programLane(recording, end).html() +
         frontLane(recording, end).html() +
         markLane("Posted", steps, ReplayStep::Kind::input, "▲", end).html() +
         markLane("Done", steps, ReplayStep::Kind::request, "■", end).html() +
         markLane("Panels", steps, ReplayStep::Kind::panel, "◆", end).html();
}

}  // namespace simulator
