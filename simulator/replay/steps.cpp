#include "simulator/replay/steps.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "simulator/replay/changes.h"
#include "simulator/replay/key_words.h"

namespace simulator {
namespace {

// Times are written to the microsecond.
constexpr Seconds same_time = 2e-6;
constexpr std::size_t longest_words = 400;

std::string quotedWords(const std::string& text) {
  return "“" + text + "”";
}

std::string cutShort(const std::string& text) {
  if (text.size() <= longest_words) return text;
  std::size_t end = longest_words;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end) + "…";
}

std::string joinedWords(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += " " + word;
  return text;
}

const char* whoIs(Origin origin) {
  switch (origin) {
    case Origin::tool:
      return "";
    case Origin::script:
      return " by System Events";
    case Origin::person:
      return " by a person";
  }
  return "";
}

std::string valueWords(const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return quotedWords(*text);
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
  if (const auto* list = std::get_if<List>(&value)) {
    return "a list of " + std::to_string(list->size());
  }
  if (const auto* number = std::get_if<double>(&value)) return std::to_string(*number);
  return "a value";
}

std::string pointWords(const Point& point) {
  return "(" + std::to_string(std::lround(point.x)) + ", " + std::to_string(std::lround(point.y)) +
         ")";
}

// Takes the entries of a recording one after the other.
class Teller {
 public:
  explicit Teller(const Recording& recording) : recording_(recording) {
    ReplayStep start;
    start.words = "The desktop at its start";
    steps_.push_back(start);
  }

  std::vector<ReplayStep> tell() {
    tellCalls(-1, -1);
    for (const RecordLine& line : recording_.lines) {
      tellCalls(line.time, line.time - same_time);
      now_ = line.time;
      std::visit([this](const auto& entry) { tell(entry); }, line.entry);
    }
    constexpr Seconds end = 1e12;
    tellCalls(end, end);
    return std::move(steps_);
  }

 private:
  // Those that have begun by the one time and ended by the other, in order.
  void tellCalls(Seconds begun, Seconds ended) {
    while (true) {
      const auto next = nextCall(begun, ended);
      if (!next) return;
      const auto& [at, number, ends] = *next;
      const RecordedCall& call = recording_.calls[number];
      now_ = at;
      const std::string name = "Call " + std::to_string(number + 1);
      if (!ends) {
        add(ReplayStep::Kind::call, name + " begins: tessarine" + joinedWords(call.arguments));
      } else {
        const std::string status =
            call.status ? "with status " + std::to_string(*call.status) : "without a word";
        add(ReplayStep::Kind::call, name + " ends " + status + "; verdict: " + call.verdict);
      }
      told_.insert({number, ends});
    }
  }

  struct CallMoment {
    Seconds at;
    std::size_t number;
    bool ends;
    auto operator<=>(const CallMoment&) const = default;
  };
  std::optional<CallMoment> nextCall(Seconds begun, Seconds ended) const {
    std::optional<CallMoment> next;
    const auto offer = [&](const CallMoment& moment, Seconds limit) {
      const bool told = told_.contains({moment.number, moment.ends});
      if (!told && moment.at <= limit && (!next || moment < *next)) next = moment;
    };
    for (std::size_t i = 0; i < recording_.calls.size(); ++i) {
      const RecordedCall& call = recording_.calls[i];
      offer({call.startedAt, i, false}, begun);
      if (call.endedAt) offer({*call.endedAt, i, true}, ended);
    }
    return next;
  }

  // What is there from the beginning belongs to the first step.
  bool atStart() const { return now_ <= 0 && steps_.size() == 1; }

  ReplayStep& add(ReplayStep::Kind kind, const std::string& words) {
    ReplayStep step;
    step.at = now_;
    step.kind = kind;
    step.words = cutShort(words);
    step.sight = steps_.back().sight;
    steps_.push_back(std::move(step));
    until_ = now_;
    typing_ = std::nullopt;
    return steps_.back();
  }

  void tell(const AccessibilityRequest& request) {
    const std::string element = request.role.empty() ? "an element that is gone" : request.role;
    const std::string name = request.text.empty() ? "" : " " + quotedWords(request.text);
    const std::string whose = " of " + processWords(recording_, request.element.pid);
    const bool sets = request.verb == AccessibilityRequest::Verb::set;
    std::string words = request.name + " of " + element + name + whose;
    if (sets)
      words = request.name + " of " + element + whose + " is set to " + valueWords(request.value);
    if (request.error != ax::success) words += "; answered " + std::to_string(request.error);
    add(ReplayStep::Kind::request, words).mark = request.frame;
  }

  struct Typing {
    std::optional<Pid> target;
    Origin origin;
    std::string text;
    bool operator==(const Typing&) const = default;
  };
  void tell(const PostedKey& key) {
    if (!key.event.down) return;
    const std::string whom =
        " is posted to " + processWords(recording_, key.target) + whoIs(key.origin);
    const std::string typed = typedBy(key.event);
    if (typed.empty()) {
      add(ReplayStep::Kind::input, keyWords(key.event) + whom).keys =
          keyWords(key.event) + " → " + processWords(recording_, key.target);
      return;
    }
    Typing typing{key.target, key.origin, ""};
    const bool goesOn =
        typing_ && typing_->target == typing.target && typing_->origin == typing.origin;
    typing.text = (goesOn ? typing_->text : "") + typed;
    ReplayStep& step = goesOn ? steps_.back() : add(ReplayStep::Kind::input, "");
    step.words = cutShort("The text " + quotedWords(typing.text) + whom);
    step.keys = cutShort(quotedWords(typing.text)) + " → " + processWords(recording_, key.target);
    until_ = now_;
    typing_ = typing;
  }

  void tell(const PostedMouse& mouse) {
    constexpr std::uint32_t left_down = 1;
    const bool down = mouse.event.type == left_down;
    const bool second = mouse.event.clickState > 1;
    ReplayStep& step =
        add(ReplayStep::Kind::input,
            std::string("The mouse button ") + (down ? "is pressed" : "is let go") + " at " +
                pointWords(mouse.event.at) + (second ? " (double click)" : "") + ", posted to " +
                processWords(recording_, mouse.target) + whoIs(mouse.origin));
    step.pointer = mouse.event.at;
    step.pressed = down;
    step.keys = "click → " + processWords(recording_, mouse.target);
  }

  void tell(const ProgramStarted& started) {
    add(ReplayStep::Kind::program, "Runs " + started.path + joinedWords(started.arguments));
  }
  void tell(const ProgramEnded& ended) {
    add(ReplayStep::Kind::program,
        ended.path + " ends with status " + std::to_string(ended.status));
  }
  void tell(const ActivationAsked& asked) {
    add(ReplayStep::Kind::foreground,
        processWords(recording_, asked.pid) + " is asked to come forward" + whoIs(asked.origin));
  }
  void tell(const FrontmostChanged& changed) {
    if (!atStart()) {
      add(ReplayStep::Kind::foreground,
          (changed.to ? processWords(recording_, changed.to) : "No application") + " is in front");
    }
    steps_.back().sight.frontmost = changed.to;
  }

  void tell(const Milestone& milestone) {
    if (atStart()) return;
    const ReplayStep& last = steps_.back();
    if (last.kind == ReplayStep::Kind::panel && now_ - until_ <= same_time) {
      steps_.back().words = cutShort(last.words + "; " + milestone.text);
      return;
    }
    const std::string panel =
        milestone.panel ? "Panel " + std::to_string(*milestone.panel) + ": " : "";
    add(ReplayStep::Kind::panel, panel + milestone.text);
  }

  void tell(const ScreenShown& screen) {
    see("the windows have changed");
    steps_.back().sight.windows = screen.windows;
  }
  void tell(const PanelShown& shown) {
    auto& parts = steps_.back().sight.parts;
    const std::pair key{shown.panel, shown.part};
    see(changeWords(parts.contains(key) ? parts.at(key) : PanelShown{}, shown));
    auto& now = steps_.back().sight.parts;
    if (shown.elements.empty()) {
      now.erase(key);
    } else {
      now[key] = shown;
    }
  }
  // A change belongs to what happened at the same time, or is a step of its own.
  void see(const std::string& words) {
    if (atStart() || now_ - until_ > same_time) {
      if (atStart()) return;
      add(ReplayStep::Kind::sight, "The picture changes: " + words);
    } else if (steps_.back().kind == ReplayStep::Kind::sight) {
      steps_.back().words = cutShort(steps_.back().words + "; " + words);
    }
  }

  // Nothing else is read back.
  template <typename Other>
  void tell(const Other&) {}

  const Recording& recording_;
  std::vector<ReplayStep> steps_;
  std::set<std::pair<std::size_t, bool>> told_;  // calls, and whether their ends
  Seconds now_ = 0;
  Seconds until_ = 0;  // when the last step's last part happened
  std::optional<Typing> typing_;
};

}  // namespace

std::string processWords(const Recording& recording, const std::optional<Pid>& pid) {
  if (!pid) return "the session";
  const auto name = recording.processes.find(*pid);
  const std::string number = std::to_string(*pid);
  return name == recording.processes.end() ? "process " + number
                                           : name->second + " (" + number + ")";
}

std::vector<ReplayStep> stepsOf(const Recording& recording) {
  return Teller(recording).tell();
}

}  // namespace simulator
