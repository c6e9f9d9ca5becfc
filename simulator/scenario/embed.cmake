# Writes BUNDLED_SCENARIOS_SOURCE, a C++ file that holds the files of simulator/scenarios. Include
# it from the root and add that file to the library of the model.
file(GLOB bundled_scenario_files CONFIGURE_DEPENDS
     "${CMAKE_CURRENT_LIST_DIR}/../scenarios/*.json")
list(SORT bundled_scenario_files)

set(bundled_scenario_entries "")
foreach(scenario_file IN LISTS bundled_scenario_files)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${scenario_file}")
  get_filename_component(scenario_name "${scenario_file}" NAME_WE)
  file(READ "${scenario_file}" scenario_text)
  string(APPEND bundled_scenario_entries
         "      {\"${scenario_name}\", R\"scenario(${scenario_text})scenario\"},\n")
endforeach()

set(BUNDLED_SCENARIOS_SOURCE "${CMAKE_CURRENT_BINARY_DIR}/bundled_files.cpp")
file(CONFIGURE OUTPUT "${BUNDLED_SCENARIOS_SOURCE}" @ONLY CONTENT [[
#include "simulator/scenario/bundled_files.h"

namespace simulator {

const std::vector<BundledFile>& bundledFiles() {
  static const std::vector<BundledFile> files{
@bundled_scenario_entries@  };
  return files;
}

}  // namespace simulator
]])
