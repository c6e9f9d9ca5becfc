// The words that the panel itself has, in the languages that the simulated one speaks.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/import/printout.h"
#include "simulator/panel/panel_texts.h"

namespace simulator::importing {

using Text = std::string PanelTexts::*;

// Whether it is that text in one of the languages, or holds it.
bool says(const std::string& text, Text which);
bool mentions(const std::string& text, Text which);

bool isThePanelsOwn(const std::string& text);

// The language of most of the texts that tell languages apart; nothing without any.
std::optional<Language> languageOf(const std::vector<Node>& nodes);

}  // namespace simulator::importing
