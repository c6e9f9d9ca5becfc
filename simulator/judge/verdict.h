// What calls of the tool reported, against what the panels did. Texts:
//   true
//   false success: panel 1 chose PATH           it reported something else, or a closed panel
//   false success: panel 1 was cancelled
//   false success: panel 1 is still open
//   false success: panel 1 ended with its application
//   false success: no panel chose anything      no panel was open in its time
//   more than asked: panel 2 chose PATH         what it reported is so, and this came with it
//   more than asked: panel 2 was cancelled
//   unreported: panel 1 chose PATH              it failed, or nobody called
//   unreported: panel 1 was cancelled
// Of several effects the one of the lowest panel is named. Panels are numbered from 1.
//
// Which effects are a call's: a panel that was chosen or cancelled from its begin on until the next
// call begins, so also after its own end, since an effect may still be under way. A call that
// overlaps ends nothing, and what it reported rightly is its own. Calls that touch no panel
// (listings, the usage text, usage errors) have no time of their own: what happens meanwhile is of
// the call before. What happens in the time of a click-point, type-text or press-key was asked for,
// also where another call overlaps it: by whose event a panel ended cannot be told. What a
// program of the caller's own does to a panel cannot be told from a call's late effect either.
// What a browser asks after an upload is not the panel's: a choice that it declines is a choice.
// A person's clicks are held against no call (see panel_fate.h); an application that a person ends
// only spoils a success.
#pragma once

#include <string>
#include <vector>

#include "simulator/judge/call_log.h"
#include "simulator/judge/panel_fate.h"

namespace simulator {

inline constexpr const char* verdict_true = "true";

// When the last call has ended, the desktop's time is moved on by this much before anything is
// judged. A key or a press takes effect within a second, on a slow panel or with a busy process
// later; after a minute nothing is under way that a scenario does not stretch on purpose.
inline constexpr Seconds settling_seconds = 60;

// One for each call, in order:
//   choose-folder and choose-path that succeeded are right when one panel chose their target, and
//   nothing else ended; a close that reports a number when so many panels were cancelled, and none
//   chosen; any of these that failed, or is gone without a word, when no panel ended. A call that
//   still runs has claimed nothing yet, and one of another command never claims anything: true.
std::vector<std::string> callVerdicts(const std::vector<ToolCall>& calls,
                                      const std::vector<PanelFate>& panels);

// Of everything together: the first verdict on a call that is not true, else "unreported: ..." for
// a panel that ended in no call's time, else true; "no call" without any.
std::string overallVerdict(const std::vector<ToolCall>& calls,
                           const std::vector<PanelFate>& panels);

}  // namespace simulator
