// UTF-8 text: conversion, counting, trimming, splitting. Bytes that are not UTF-8 become U+FFFD
// wherever text is decoded here.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessarine {

bool isUtf8(std::string_view text);

// One entry for each Unicode scalar value.
std::u32string toScalars(std::string_view text);

std::u16string toUtf16(std::string_view text);
std::u16string toUtf16(char32_t scalar);
// Unpaired surrogates become U+FFFD.
std::string fromUtf16(std::u16string_view text);

// User-perceived characters: extended grapheme clusters.
std::size_t characterCount(std::string_view text);

// Without leading and trailing white space and newlines, in the Unicode sense.
std::string trimmed(std::string_view text);

// With the ASCII letters in lower case.
std::string lowercased(std::string text);

// With a blank for each tab, line break and other ASCII control character.
std::string onOneLine(std::string text);

// The pieces between separators, in order; empty pieces are dropped.
std::vector<std::string> splitDroppingEmpty(std::string_view text, char separator);

// The pieces in order, with the separator between them.
std::string joined(const std::vector<std::string>& pieces, std::string_view separator);

bool contains(std::string_view text, std::string_view piece);

}  // namespace tessarine
