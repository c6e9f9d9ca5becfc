// The process-wide tables: set up once by the entry, then read-only unless said otherwise. Only the
// command's worker touches them after start-up.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tessarine {

using TitleSet = std::set<std::string, std::less<>>;

struct Tables {
  TitleSet openDialogTitles{"Open", "打开"};
  TitleSet cancelButtonTitles{"Cancel", "取消"};
  TitleSet chooseButtonTitles{"Choose", "选择", "Open", "打开"};
  // Standardized path to display name; filled on first use, never evicted.
  std::map<std::string, std::string> localizedDisplayNameCache;
  // How this program was started: its first argument, empty when there was none.
  std::string programPath;
  // Window numbers that the panel capture ignores; set once after the command line was parsed.
  std::set<std::uint32_t> excludedPanelWindowIDs;
};

// The tables of this run.
Tables& tables();

// Puts the tables into their initial state.
void initializeTables();

// Texts contained in element labels and descriptions.
inline constexpr std::string_view locationMarker = "位置";
inline constexpr std::string_view listViewMarker = "列表视图";
inline constexpr std::string_view sidebarMarker = "边栏";
inline constexpr std::string_view extensionFolderMarker = "选择扩展程序目录";

// Virtual key codes, from Carbon's HIToolbox/Events.h.
inline constexpr std::uint16_t keyCodeA = 0;
inline constexpr std::uint16_t keyCodeG = 5;
inline constexpr std::uint16_t keyCodeReturn = 36;
inline constexpr std::uint16_t keyCodeDelete = 51;
inline constexpr std::uint16_t keyCodeEscape = 53;
inline constexpr std::uint16_t keyCodeArrowRight = 124;
inline constexpr std::uint16_t keyCodeArrowDown = 125;

// Modifier flags, from CoreGraphics/CGEventTypes.h.
inline constexpr std::uint64_t noModifiers = 0;
inline constexpr std::uint64_t commandFlag = 0x100000;
inline constexpr std::uint64_t commandShiftFlags = 0x120000;

}  // namespace tessarine
