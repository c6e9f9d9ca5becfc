# What `cmake --install` lays out.
include(GNUInstallDirs)

install(TARGETS tessarine tessarine-desktop RUNTIME)
set(desktop_folder ${CMAKE_INSTALL_LIBEXECDIR}/tessarine-desktop)
install(DIRECTORY ${DESKTOP_PROGRAMS}/ DESTINATION ${desktop_folder} USE_SOURCE_PERMISSIONS)
if(APPLE)
  install(TARGETS background-window-capture RUNTIME)
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
