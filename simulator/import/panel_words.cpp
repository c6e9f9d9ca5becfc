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
constexpr std::array browsers{&BrowserTexts::message, &BrowserTexts::select, &BrowserTexts::upload};

}  // namespace

bool says(const std::string& text, Text which) {
  return std::ranges::any_of(languages,
                             [&](Language each) { return text == panelTexts(each).*which; });
}

bool isThePanelsOwn(const std::string& text) {
  const auto isIt = [&](Text which) { return says(text, which); };
  const auto isBrowsers = [&](std::string BrowserTexts::*which) {
    return std::ranges::any_of(languages,
                               [&](Language each) { return text == browserTexts(each).*which; });
  };
  return std::ranges::any_of(markers, isIt) || std::ranges::any_of(others, isIt) ||
         std::ranges::any_of(browsers, isBrowsers);
}

std::optional<Language> languageOf(const PrintedTree& tree) {
  std::optional<Language> best;
  std::ptrdiff_t most = 0;
  for (const Language language : languages) {
    const PanelTexts& texts = panelTexts(language);
    const auto count = std::ranges::count_if(tree, [&](const PrintedElement& element) {
      return std::ranges::any_of(markers, [&](Text which) {
        const std::string& text = texts.*which;
        return element.title == text || element.description == text || element.value == text;
      });
    });
    if (count > most) best = language;
    most = std::max(most, count);
  }
  return best;
}

}  // namespace simulator::importing
