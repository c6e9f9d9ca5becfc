#include "simulator/import/placeholders.h"

#include <algorithm>
#include <array>

#include "simulator/desktop/text.h"
#include "simulator/import/panel_words.h"

namespace simulator::importing {
namespace {

// What stands between the parts of a path, here and on other systems, in signs that look like it
// and in the Finder.
constexpr std::array separators{"/", "\\", "~", "／", "∕", "⁄", "▸", "›", " > ", "»", "→"};

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}

// As in "Macintosh HD:Users", and not as in a time of the day.
bool hasColonWithinWord(const std::string& text) {
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    const bool time = isDigit(text[i - 1]) && isDigit(text[i + 1]);
    if (text[i] == ':' && !time && !isBlank(text[i - 1]) && !isBlank(text[i + 1])) return true;
  }
  return false;
}

bool isHexadecimal(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// As in "%2FUsers".
bool hasEncodedByte(const std::string& text) {
  for (std::size_t i = 0; i + 2 < text.size(); ++i) {
    if (text[i] == '%' && isHexadecimal(text[i + 1]) && isHexadecimal(text[i + 2])) return true;
  }
  return false;
}

bool mayHoldPath(const std::string& text) {
  return hasColonWithinWord(text) || hasEncodedByte(text) ||
         std::ranges::any_of(separators, [&](const char* separator) {
           return text.find(separator) != std::string::npos;
         });
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

std::string Placeholders::ofTerm(const std::string& term, const std::string& kind) {
  return term.starts_with("AX") && std::ranges::all_of(term, isLetter) ? term : of(term, kind);
}

std::string Placeholders::of(const std::string& text, const std::string& kind) {
  if (text.empty() || isThePanelsOwn(text) || (keep_ && !mayHoldPath(text))) return text;
  const auto [entry, isNew] = given_.try_emplace(text);
  const std::string root = text.starts_with("/") || text.starts_with("~") ? "/" : "";
  if (isNew) entry->second = root + kind + "-" + std::to_string(++counts_[kind]);
  return entry->second;
}

}  // namespace simulator::importing
