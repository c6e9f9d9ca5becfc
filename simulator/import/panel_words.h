// The words that the panel itself has, in the languages that the simulated one speaks.
#pragma once

#include <optional>
#include <string>

#include "simulator/panel/panel_texts.h"
#include "simulator/panel/printed_tree.h"

namespace simulator::importing {

using Text = std::string PanelTexts::*;

// Whether it is that text in one of the languages.
bool says(const std::string& text, Text which);

// Whether it is a text of the panel or one that a Chromium browser puts on it.
bool isThePanelsOwn(const std::string& text);

// The language of most of the texts that tell languages apart; nothing without any.
std::optional<Language> languageOf(const PrintedTree& tree);

}  // namespace simulator::importing
