// The seconds of pauses, and of waits that run out in any case, on routes that work by a panel's
// controls.
#pragma once

namespace tessarine::test {

// Seconds of a key, held and followed by a pause, and of a click, held.
constexpr double key(double pause) {
  return 0.02 + pause;
}
inline constexpr double click = 0.05;

// The sheet by controls: its chord and arrival, the path written, the field confirmed, Return.
inline constexpr double sheetByControls = key(0.15) + 0.25 + 0.12 + 0.2 + key(0.25);
// The volume is shown, its first row looked for in vain; after the sheet the folder's own row is.
inline constexpr double walkAndSheet = 0.15 + 2.5 + sheetByControls + 0.3 + 2.0;
inline constexpr double cancelPress = 0.1;

}  // namespace tessarine::test
