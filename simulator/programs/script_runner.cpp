// Carries out the statements of a script.
#include <filesystem>
#include <memory>
#include <optional>

#include "simulator/desktop/keyboard_layout.h"
#include "simulator/desktop/text.h"
#include "simulator/desktop/unmodelled.h"
#include "simulator/programs/programs.h"
#include "simulator/programs/script.h"

namespace simulator {
namespace {

// Assumed (Live.SystemEventsAnswersOnceTheApplicationHasComeForward): so much longer than the
// application takes to come forward.
constexpr Seconds coming_forward_margin = 0.01;

// One step of a run: does it and returns how long until the next, which is absent when that never
// comes. It may end the run.
using Step = std::function<std::optional<Seconds>()>;

void failStep(ProgramRun& run, const std::string& problem) {
  run.complain("0:0: execution error: " + problem + "\n");
  run.end(1);
}

void pressKey(ProgramRun& run, KeyEvent event) {
  if (run.desktop().faults().untrusted) {
    return failStep(run,
                    "System Events got an error: osascript is not allowed to send keystrokes. "
                    "(1002)");
  }
  run.desktop().postKey(event, std::nullopt, Origin::script);
  event.down = false;
  run.desktop().postKey(event, std::nullopt, Origin::script);
}

KeyEvent keyThatTypes(char16_t unit, std::uint64_t flags, KeyboardLayout layout) {
  if (unit == u'\n') unit = u'\r';
  KeyEvent event;
  event.flags = flags;
  std::optional<TypingKey> key;
  if (unit < 0x80) key = keyTyping(static_cast<char>(unit), layout);
  // Assumed (Live.SystemEventsTypesTheLetterAForWhatNoKeyTypes): as script authors report, System
  // Events types "a" for what the keyboard layout has no key for.
  if (!key) unit = u'a';
  if (key && key->shifted) event.flags |= shift_flag;
  event.keyCode = key ? key->code : 0;
  event.text = std::u16string(1, unit);
  return event;
}

// Assumed (no test can tell: it would need a permission both given and refused): the words are
// those that script authors report.
bool mayTell(ProgramRun& run, std::string_view told) {
  const std::string application(told);
  if (!run.desktop().faults().automation_denied.contains(application)) return true;
  failStep(run, "Not authorized to send Apple events to " + application + ". (-1743)");
  return false;
}

// The system asks the person whether the script may tell the application something, and the script
// waits for an answer.
bool waitsForAnswer(ProgramRun& run, std::string_view told) {
  const Faults& faults = run.desktop().faults();
  const std::string application(told);
  return faults.automation_unasked.contains(application) &&
         !faults.automation_denied.contains(application);
}

void bringForward(ProgramRun& run, Pid pid) {
  if (run.desktop().faults().untrusted) {
    return failStep(
        run, "System Events got an error: osascript is not allowed assistive access. (-1719)");
  }
  if (!run.desktop().activate(pid, Origin::script)) {
    failStep(run, "System Events got an error: Can’t get process 1 whose unix id = " +
                      std::to_string(pid) + ". Invalid index. (-1719)");
  }
}

void showDisplayedName(ProgramRun& run, const std::string& path) {
  std::error_code problem;
  if (!std::filesystem::exists(path, problem)) {
    std::string shown = path;
    for (char& letter : shown) {
      if (letter == '/') letter = ':';
    }
    return failStep(
        run, "File file \"" + run.desktop().displayName("/") + shown + "\" wasn’t found. (-43)");
  }
  run.print(run.desktop().displayName(path) + "\n");
}

// Breaks statements into steps.
struct StepPlanner {
  ProgramRun& program;
  std::vector<Step>& steps;

  void operator()(const TypeText& statement) const {
    // A character beyond the basic plane is two units, neither of which has a key.
    for (const char16_t unit : utf16FromUtf8(statement.text)) {
      add(system_events_application, prices().scriptKey,
          [&run = program, unit, flags = statement.flags] {
            pressKey(run, keyThatTypes(unit, flags, run.desktop().keyboardLayout()));
          });
    }
  }
  void operator()(const PressKey& statement) const {
    KeyEvent event;
    event.keyCode = statement.keyCode;
    event.flags = statement.flags;
    add(system_events_application, prices().scriptKey,
        [&run = program, event] { pressKey(run, event); });
  }
  void operator()(const Delay& statement) const {
    steps.push_back([seconds = statement.seconds] { return std::optional(seconds); });
  }
  void operator()(const BringForward& statement) const {
    add(system_events_application, prices().comingForward + coming_forward_margin,
        [&run = program, pid = statement.pid] { bringForward(run, pid); });
  }
  void operator()(const ShowDisplayedName& statement) const {
    add(finder_application, prices().finder,
        [&run = program, path = statement.path] { showDisplayedName(run, path); });
  }

  const Prices& prices() const { return program.desktop().prices(); }

  // Tells the application something that takes so long.
  template <typename Effect>
  void add(std::string_view application, Seconds time, Effect effect) const {
    steps.push_back([&run = program, application, time,
                     effect = std::move(effect)]() -> std::optional<Seconds> {
      if (waitsForAnswer(run, application)) return {};
      if (mayTell(run, application)) {
        run.desktop().noteTold(std::string(application));
        effect();
      }
      return time;
    });
  }
};

void runSteps(ProgramRun& run, const std::shared_ptr<const std::vector<Step>>& steps,
              std::size_t at) {
  if (at == steps->size()) return run.end(0);
  const std::optional<Seconds> time = (*steps)[at]();
  if (run.ended() || !time) return;
  run.after(*time, [&run, steps, at] { runSteps(run, steps, at + 1); });
}

std::string sourceFromArguments(const std::vector<std::string>& words) {
  std::string source;
  for (std::size_t at = 0; at < words.size(); at += 2) {
    if (words[at] != "-e" || at + 1 == words.size()) {
      abortUnmodelled("/usr/bin/osascript with the argument \"" + words[at] + "\"");
    }
    if (at > 0) source += '\n';
    source += words[at + 1];
  }
  return source;
}

void compileAndRun(ProgramRun& run, const std::string& source) {
  auto steps = std::make_shared<std::vector<Step>>();
  try {
    for (const Statement& statement : parseScript(source)) {
      std::visit(StepPlanner{run, *steps}, statement);
    }
  } catch (const SyntaxError& error) {
    run.complain(std::string(error.what()) + "\n");
    return run.end(1);
  }
  runSteps(run, steps, 0);
}

}  // namespace

void runScript(ProgramRun& run) {
  if (run.desktop().faults().script_hangs) return;
  run.after(run.desktop().prices().script,
            [&run, source = sourceFromArguments(run.arguments())] { compileAndRun(run, source); });
}

}  // namespace simulator
