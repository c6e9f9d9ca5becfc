#include "simulator/import/panel_words.h"

#include <algorithm>
#include <array>

namespace simulator::importing {
namespace {

constexpr std::array languages{Language::english, Language::simplifiedChinese, Language::german};

// These tell the languages apart.
constexpr std::array markers{
    &PanelTexts::cancel,     &PanelTexts::choose,      &PanelTexts::newFolder, &PanelTexts::sidebar,
    &PanelTexts::listView,   &PanelTexts::viewOptions, &PanelTexts::groupBy,   &PanelTexts::where,
    &PanelTexts::goToFolder, &PanelTexts::columnView,  &PanelTexts::iconView};
constexpr std::array others{&PanelTexts::open, &PanelTexts::description, &PanelTexts::search,
                            &PanelTexts::back, &PanelTexts::forward,     &PanelTexts::name,
                            &PanelTexts::go,   &PanelTexts::favourites};

}  // namespace

bool says(const std::string& text, Text which) {
  return std::ranges::any_of(languages,
                             [&](Language each) { return text == panelTexts(each).*which; });
}

bool mentions(const std::string& text, Text which) {
  return std::ranges::any_of(languages, [&](Language each) {
    return text.find(panelTexts(each).*which) != std::string::npos;
  });
}

bool isThePanelsOwn(const std::string& text) {
  const auto isIt = [&](Text which) { return says(text, which); };
  return std::ranges::any_of(markers, isIt) || std::ranges::any_of(others, isIt);
}

std::optional<Language> languageOf(const std::vector<Node>& nodes) {
  std::optional<Language> best;
  std::ptrdiff_t most = 0;
  for (const Language language : languages) {
    const PanelTexts& texts = panelTexts(language);
    const auto count = std::ranges::count_if(nodes, [&](const Node& node) {
      return std::ranges::any_of(markers, [&](Text which) {
        const std::string& text = texts.*which;
        return node.title == text || node.description == text || node.value == text;
      });
    });
    if (count > most) best = language;
    most = std::max(most, count);
  }
  return best;
}

}  // namespace simulator::importing
