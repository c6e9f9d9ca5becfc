// The style, the script and the controls of the replay's page, built into the program by
// embed.cmake.
#pragma once

#include <string_view>

namespace simulator {

extern const std::string_view controls_html;
extern const std::string_view drawing_css;
extern const std::string_view page_css;
extern const std::string_view page_js;

}  // namespace simulator
