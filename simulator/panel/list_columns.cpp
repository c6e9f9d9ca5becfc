#include "simulator/panel/list_columns.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace simulator {
namespace {

struct Words {
  std::array<const char*, most_list_columns> titles;
  const char* folder;
  const char* application;
  const char* package;
  const char* document;
  const char* byte;
  const char* bytes;
};

// Assumed (no test can tell: which columns there are is as the user left them): the first four are
// those that others' scripts read, in English; the others follow in this order.
constexpr Words english_words{{"Name", "Date Modified", "Size", "Kind", "Date Last Opened",
                               "Date Added", "Date Created", "Tags"},
                              "Folder",
                              "Application",
                              "Package",
                              "Document",
                              " byte",
                              " bytes"};
constexpr Words chinese_words{
    {"名称", "修改日期", "大小", "种类", "上次打开日期", "添加日期", "创建日期", "标签"},
    "文件夹",
    "应用程序",
    "包",
    "文稿",
    "字节",
    "字节"};
constexpr Words german_words{{"Name", "Änderungsdatum", "Größe", "Art", "Zuletzt geöffnet",
                              "Hinzugefügt am", "Erstellungsdatum", "Tags"},
                             "Ordner",
                             "Programm",
                             "Paket",
                             "Dokument",
                             " Byte",
                             " Byte"};

const Words& words(Language language) {
  switch (language) {
    case Language::simplifiedChinese:
      return chinese_words;
    case Language::german:
      return german_words;
    case Language::english:
      break;
  }
  return english_words;
}

template <typename... Values>
std::string formatted(const char* format, Values... values) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

constexpr const char* unknown = "--";

}  // namespace

std::string columnTitle(std::size_t column, Language language) {
  return words(language).titles.at(column);
}

EntryTexts::EntryTexts(const std::string& path, bool directory, bool package)
    : path_(path), directory_(directory), package_(package) {
  struct stat status {};
  known_ = stat(path.c_str(), &status) == 0;
  if (!known_) return;
  modified_ = status.st_mtime;
  size_ = static_cast<std::uintmax_t>(status.st_size);
}

// Assumed (no test can tell: the machine's region decides how dates and sizes are written): that
// they are written so, also below, that directories have no size, that kinds are no finer than
// these, and that all further columns are empty.
std::string EntryTexts::in(std::size_t column, Language language) const {
  constexpr std::size_t date = 1;
  constexpr std::size_t size = 2;
  constexpr std::size_t kind_column = 3;
  if (column == date && known_) return dateText(modified_, language);
  if (column == size && known_ && !directory_ && !package_) return sizeText(size_, language);
  if (column == kind_column) return kind(language);
  return unknown;
}

std::string EntryTexts::kind(Language language) const {
  const Words& all = words(language);
  if (directory_) return all.folder;
  if (!package_) return all.document;
  return path_.ends_with(".app") ? all.application : all.package;
}

std::string dateText(std::time_t time, Language language) {
  std::tm date{};
  localtime_r(&time, &date);
  const int year = date.tm_year + 1900;
  const int month = date.tm_mon + 1;
  switch (language) {
    case Language::simplifiedChinese:
      return formatted("%d/%d/%d %d:%02d", year, month, date.tm_mday, date.tm_hour, date.tm_min);
    case Language::german:
      return formatted("%02d.%02d.%d, %02d:%02d", date.tm_mday, month, year, date.tm_hour,
                       date.tm_min);
    case Language::english:
      break;
  }
  return formatted("%d/%d/%d, %d:%02d %s", month, date.tm_mday, year, (date.tm_hour + 11) % 12 + 1,
                   date.tm_min, date.tm_hour < 12 ? "AM" : "PM");
}

std::string sizeText(std::uintmax_t bytes, Language language) {
  constexpr double step = 1000;
  constexpr std::array units{" KB", " MB", " GB", " TB"};
  const Words& all = words(language);
  if (bytes < 1000) return std::to_string(bytes) + (bytes == 1 ? all.byte : all.bytes);
  double amount = static_cast<double>(bytes) / step;
  std::size_t unit = 0;
  while (amount >= step && unit + 1 < units.size()) {
    amount /= step;
    ++unit;
  }
  std::string text = formatted("%.*f", static_cast<int>(std::min<std::size_t>(unit, 2)), amount);
  if (language == Language::german) std::replace(text.begin(), text.end(), '.', ',');
  return text + units.at(unit);
}

}  // namespace simulator
