// The folders of one run: drawn from its seed, made on the disk, removed at its end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "swarm/draw.h"

namespace tessarine::test {

enum class EntryKind { folder, file, package, link };

struct DrawnEntry {
  std::string path;  // absolute
  EntryKind kind = EntryKind::folder;
  bool hidden = false;  // it, or a folder around it, begins with a dot
  std::string leadsTo;  // of a link
};

class FolderTree {
 public:
  // Below /tmp, in a folder that only this seed has.
  FolderTree(std::uint64_t seed, Draw draw);
  ~FolderTree();
  FolderTree(const FolderTree&) = delete;
  FolderTree& operator=(const FolderTree&) = delete;

  const std::string& root() const { return root_; }
  const std::vector<DrawnEntry>& entries() const { return entries_; }
  // The paths of a kind; the root is a folder.
  std::vector<std::string> paths(EntryKind kind) const;
  // One of the names that the entries have, also for something that shall not exist.
  std::string anyName(Draw& draw) const;

 private:
  void fill(const std::string& folder, bool hidden, int depth);
  void addEntry(const std::string& folder, bool hidden, int depth);
  void addLinks();
  void addLargeFolder();
  void write() const;

  std::string root_;
  Draw draw_;
  std::vector<std::string> names_;  // few, so that they come again in other folders
  int deepest_ = 1;
  std::vector<DrawnEntry> entries_;
};

}  // namespace tessarine::test
