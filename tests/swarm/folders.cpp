#include "swarm/folders.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <fstream>

namespace tessarine::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostEntries = 40;
constexpr int largeFolderEntries = 400;

// Names that somebody or something may take for something else.
const std::vector<std::string> allNames{"target",
                                        "Target",
                                        "TARGET",
                                        "report",
                                        "report.txt",
                                        "Documents",
                                        "Desktop",
                                        "inner",
                                        "caf\u00e9",
                                        "cafe\u0301",
                                        "\u00dcbung",
                                        "U\u0308bung",
                                        "stra\u00dfe",
                                        "STRASSE",
                                        "\u0130stanbul",
                                        "istanbul",
                                        "\u212bngstr\u00f6m",
                                        "\u00c5ngstr\u00f6m",
                                        "\ufb01le",
                                        "file",
                                        "\u65e5\u672c\u8a9e",
                                        "\u4e0b\u8f7d",
                                        "\u6253\u5f00",
                                        "\u9009\u62e9",
                                        "\uac00",
                                        "\u1100\u1161",
                                        "\u0645\u0631\u062d\u0628\u0627",
                                        "\u05e9\u05dc\u05d5\u05dd",
                                        "\U0001F4C1",
                                        "\U0001F469\u200d\U0001F4BB",
                                        "a b",
                                        "a  b",
                                        " a",
                                        "a ",
                                        "a\tb",
                                        "line\nbreak",
                                        "quote\"d",
                                        "it's",
                                        "back\\slash",
                                        "100%",
                                        "%41",
                                        "a#b",
                                        "a?b",
                                        "a;b",
                                        "a:b",
                                        "a,b",
                                        "(a)",
                                        "[a]",
                                        "*",
                                        "-a",
                                        "--help",
                                        "~",
                                        "~a",
                                        "$HOME",
                                        "`a`",
                                        "a&b",
                                        "a=b",
                                        "file2",
                                        "file10",
                                        "file 02",
                                        "1",
                                        "01",
                                        "Open",
                                        "Select",
                                        "Cancel",
                                        "list view",
                                        "sidebar",
                                        "Macintosh HD",
                                        "Volumes",
                                        "tmp",
                                        "e\u0301\u0323",
                                        "\u1eb9\u0301",
                                        "\u200bzero",
                                        "zero",
                                        std::string(180, 'x'),
                                        "a.b",
                                        "a..b",
                                        "..a",
                                        "a."};

const std::vector<std::string>& packageEndings() {
  static const std::vector<std::string> endings{".app", ".bundle", ".framework", ".APP"};
  return endings;
}

std::vector<std::string> drawNames(Draw draw) {
  std::vector<std::string> names;
  const int count = draw.integer(3, 10);
  for (int i = 0; i < count; ++i) {
    const std::string& name = draw.one(allNames);
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

// A day that is past, and a minute of its own for each entry: lists are ordered by times, too.
void setTime(const std::string& path, int index) {
  constexpr time_t day = 1714867200;  // 5 May 2024
  const timespec time{day + 60 * static_cast<time_t>(index), 0};
  const std::array<timespec, 2> accessedAndModified{time, time};
  utimensat(AT_FDCWD, path.c_str(), accessedAndModified.data(), 0);
}

}  // namespace

FolderTree::FolderTree(std::uint64_t seed, Draw draw)
    : root_("/tmp/tessarine-swarm-" + std::to_string(seed)),
      draw_(draw),
      names_(drawNames(draw.of("names"))) {
  deepest_ = draw_.integer(1, 4);
  entries_.push_back({root_, EntryKind::folder, false, {}});
  fill(root_, false, 1);
  if (draw_.of("links").chance(0.4)) addLinks();
  if (draw_.of("large").chance(0.04)) addLargeFolder();
  write();
}

FolderTree::~FolderTree() {
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

std::vector<std::string> FolderTree::paths(EntryKind kind) const {
  std::vector<std::string> paths;
  for (const DrawnEntry& entry : entries_) {
    if (entry.kind == kind) paths.push_back(entry.path);
  }
  return paths;
}

std::string FolderTree::anyName(Draw& draw) const {
  return draw.one(names_);
}

void FolderTree::fill(const std::string& folder, bool hidden, int depth) {
  // An empty folder has no entry that tells where it is.
  const int least = depth == 1 ? 1 : 0;
  const int count = draw_.integer(least, 6);
  for (int i = 0; i < count && entries_.size() < mostEntries; ++i) {
    addEntry(folder, hidden, depth);
  }
}

void FolderTree::addEntry(const std::string& folder, bool hidden, int depth) {
  DrawnEntry entry;
  entry.kind = draw_.weighted<EntryKind>(
      {{11, EntryKind::folder}, {8, EntryKind::file}, {1, EntryKind::package}});
  std::string name = draw_.one(names_);
  if (entry.kind == EntryKind::package) name += draw_.one(packageEndings());
  if (draw_.chance(0.05)) name = "." + name;
  entry.path = folder + "/" + name;
  entry.hidden = hidden || name.starts_with(".");
  const bool taken = std::any_of(entries_.begin(), entries_.end(),
                                 [&](const DrawnEntry& other) { return other.path == entry.path; });
  if (taken) return;
  entries_.push_back(entry);
  if (entry.kind == EntryKind::folder && depth < deepest_)
    fill(entry.path, entry.hidden, depth + 1);
}

// To what exists, in one folder or another, and sometimes to nothing.
void FolderTree::addLinks() {
  Draw draw = draw_.of("each link");
  const auto folders = paths(EntryKind::folder);
  const int count = draw.integer(1, 3);
  for (int i = 0; i < count; ++i) {
    DrawnEntry link;
    link.kind = EntryKind::link;
    link.path = draw.one(folders);
    link.path += draw.chance(0.5) ? "/link" : "/alias of " + anyName(draw);
    link.hidden = link.path.find("/.") != std::string::npos;
    link.leadsTo = draw.chance(0.9) ? draw.one(entries_).path : root_ + "/nothing";
    const bool taken = std::any_of(entries_.begin(), entries_.end(), [&](const DrawnEntry& other) {
      return other.path == link.path;
    });
    if (!taken) entries_.push_back(link);
  }
}

void FolderTree::addLargeFolder() {
  const std::string folder = draw_.of("large folder").one(paths(EntryKind::folder));
  const bool hidden = folder.find("/.") != std::string::npos;
  for (int i = 0; i < largeFolderEntries; ++i) {
    entries_.push_back({folder + "/entry " + std::to_string(i), EntryKind::file, hidden, {}});
  }
}

void FolderTree::write() const {
  fs::remove_all(root_);
  for (const DrawnEntry& entry : entries_) {
    if (entry.kind == EntryKind::file) std::ofstream(entry.path) << "x";
    if (entry.kind == EntryKind::link) fs::create_symlink(entry.leadsTo, entry.path);
    if (entry.kind == EntryKind::folder) fs::create_directory(entry.path);
    if (entry.kind == EntryKind::package) fs::create_directories(entry.path + "/Contents");
  }
  // What is made in a folder changes its time.
  for (std::size_t i = entries_.size(); i-- > 0;) {
    if (entries_[i].kind != EntryKind::link) setTime(entries_[i].path, static_cast<int>(i));
  }
}

}  // namespace tessarine::test
