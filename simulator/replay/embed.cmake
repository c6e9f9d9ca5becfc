# Writes REPLAY_FILES_SOURCE, a C++ file that holds the style, the script and the controls of the replay's page.
# Include it from the root and add that file to the library of the model.
set(replay_definitions "")
foreach(replay_file controls.html drawing.css page.css page.js)
  set(replay_path "${CMAKE_CURRENT_LIST_DIR}/${replay_file}")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${replay_path}")
  string(REPLACE "." "_" replay_name "${replay_file}")
  file(READ "${replay_path}" replay_text)
  string(APPEND replay_definitions
         "const std::string_view ${replay_name} = R\"file(${replay_text})file\";\n")
endforeach()

set(REPLAY_FILES_SOURCE "${CMAKE_CURRENT_BINARY_DIR}/replay_files.cpp")
file(CONFIGURE OUTPUT "${REPLAY_FILES_SOURCE}" @ONLY CONTENT [[
#include "simulator/replay/page_files.h"

namespace simulator {

@replay_definitions@
}  // namespace simulator
]])
