// What the program prints about its use, in full.
#pragma once

namespace tessarine::test {

inline constexpr const char* usageText =
    R"(tessarine — operate macOS Open panels inside a background browser process
Usage:

  tessarine close --pid PID
  tessarine choose-folder --pid PID --path /absolute/folder/path [--timeout 10] )"
    R"([--prefer-background-panel] [--strict-background] [--temporary-foreground] )"
    R"([--exclude-window-id ID ...]
  tessarine choose-path --pid PID --path /absolute/file/or/folder [--timeout 10]
  tessarine click-point --pid PID --x 3205 --y 987
  tessarine type-text --pid PID --text "filename.png"
  tessarine press-key --pid PID --key return|delete|escape|cmd-a|cmd-shift-g
  tessarine list-windows --pid PID
  tessarine list-background-panels --pid PID
  tessarine inspect-open-dialog --pid PID
)";

}  // namespace tessarine::test
