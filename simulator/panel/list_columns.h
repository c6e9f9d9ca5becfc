// What the columns of the list view say: their titles, and the texts of an entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>

#include "simulator/desktop/desktop.h"

namespace simulator {

inline constexpr std::size_t most_list_columns = 8;

// From column 0, the names of the entries.
std::string columnTitle(std::size_t column, Language language);

// An entry of the disk, read once. What cannot be read has no date and no size.
class EntryTexts {
 public:
  EntryTexts(const std::string& path, bool directory, bool package);
  // Of the columns 1 and up.
  std::string in(std::size_t column, Language language) const;

 private:
  std::string kind(Language language) const;

  std::string path_;
  bool directory_;
  bool package_;
  bool known_;  // the two that follow are
  std::time_t modified_ = 0;
  std::uintmax_t size_ = 0;
};

// "1/2/2024, 9:05 AM", in this machine's time zone.
std::string dateText(std::time_t time, Language language);

// "1 byte", "12 KB", "3.4 MB", "5.67 GB": a thousand of one are one of the next.
std::string sizeText(std::uintmax_t bytes, Language language);

}  // namespace simulator
