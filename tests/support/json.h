// JSON for tests: instantiated once, in json.cpp, instead of in every file.
#pragma once

#include <nlohmann/json.hpp>

extern template class nlohmann::basic_json<nlohmann::ordered_map>;
