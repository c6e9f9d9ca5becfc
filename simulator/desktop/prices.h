// What things cost on the desktop, in seconds.
#pragma once

#include "simulator/desktop/value.h"

namespace simulator {

struct Prices {
  // Assumed (Live.AnIdleApplicationAnswersARequestWithinAMillisecond): a request to an idle process
  // is answered in about a third of a millisecond.
  Seconds request = 0.0003;
  // Measured: "AXPress" on any button takes about 0.1 s.
  Seconds press = 0.1;
  // Assumed (Live.TheWindowListIsAnsweredWithinSixMilliseconds): with some dozens of windows.
  Seconds windowList = 0.002;
  // Assumed (Live.AnEventIsPostedWithinThreeTenthsOfAMillisecond): who posts an event hands it over
  // and does not wait for who receives it.
  Seconds event = 0.0001;
  // Assumed (Live.AskingForTheForegroundIsAnsweredWithin150Milliseconds): what the workspace takes
  // to answer who asks an application to come forward.
  Seconds activation = 0.05;
  // Assumed (Live.AnApplicationComesForwardWithin150Milliseconds): from that answer until the
  // application is in front.
  Seconds comingForward = 0.05;
  // Assumed (Live.AllProcessesAreListedWithin60Milliseconds): ps, with a few hundred processes.
  Seconds processList = 0.02;
  // Assumed (Live.AShortScriptIsCompiledAndRunWithin360Milliseconds): osascript, until it has
  // compiled a short script.
  Seconds script = 0.12;
  // Assumed (Live.SystemEventsTypesAtLeast34KeysInASecond): from one key that System Events types
  // to the next.
  Seconds scriptKey = 0.01;
  // Assumed (Live.TheFinderNamesAFolderWithin90MillisecondsMoreThanAScriptTakes): its answer to a
  // script.
  Seconds finder = 0.03;
  // Assumed (Live.ASnapshotOfAWindowIsTakenWithin90Milliseconds): screencapture, of one window of
  // usual size.
  Seconds snapshot = 0.03;
};

}  // namespace simulator
