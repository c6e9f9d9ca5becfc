# What `cmake --install` lays out.
include(GNUInstallDirs)

# The tool with its capture helper, and a launcher that calls it by its path.
set(tool_folder ${CMAKE_INSTALL_LIBEXECDIR}/tessarine)
install(TARGETS tessarine RUNTIME DESTINATION ${tool_folder})
if(APPLE)
  install(TARGETS background-window-capture RUNTIME DESTINATION ${tool_folder})
  install(TARGETS background-window-capture RUNTIME)
endif()
string(CONFIGURE [[
  get_filename_component(INSTALLED_PROGRAM
    "${CMAKE_INSTALL_PREFIX}/@tool_folder@/tessarine" ABSOLUTE)
  set(launcher "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/@CMAKE_INSTALL_BINDIR@/tessarine")
  configure_file("@PROJECT_SOURCE_DIR@/packaging/launcher.in" "${launcher}" @ONLY)
  file(CHMOD "${launcher}" PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
]] write_launcher @ONLY)
install(CODE "${write_launcher}")

# The simulated desktop and its programs, without which it is of no use.
if(TESSARINE_SIMULATED)
  install(TARGETS tessarine-desktop RUNTIME)
  install(DIRECTORY ${DESKTOP_PROGRAMS}/
    DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/tessarine-desktop USE_SOURCE_PERMISSIONS)
endif()

# bash and fish look for a file with the name of the program whose words they complete.
foreach(program tessarine tessarine-desktop background-window-capture)
  install(FILES packaging/man/${program}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES packaging/completions/tessarine.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${program})
  install(FILES packaging/completions/tessarine.fish
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d RENAME ${program}.fish)
endforeach()
install(FILES packaging/completions/_tessarine
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)

# What a caller can hold the results against.
install(FILES docs/results.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/tessarine)
