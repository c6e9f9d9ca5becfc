# embed_info_plist(PROGRAM [PROPERTIES]): macOS knows a program by the identifier in its property
# list, and keeps the permissions of one whose identifier stays the same. PROPERTIES are further
# lines of the list.
function(embed_info_plist PROGRAM)
  set(PROPERTIES ${ARGN})
  configure_file(${PROJECT_SOURCE_DIR}/packaging/Info.plist.in Info-${PROGRAM}.plist @ONLY)
  file(READ ${CMAKE_CURRENT_BINARY_DIR}/Info-${PROGRAM}.plist PROPERTY_LIST)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/info_plist.cpp.in info_plist_${PROGRAM}.cpp @ONLY)
  target_sources(${PROGRAM} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/info_plist_${PROGRAM}.cpp)
endfunction()
