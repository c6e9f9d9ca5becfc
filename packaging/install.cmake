# What `cmake --install` lays out.
include(GNUInstallDirs)

install(TARGETS tessarine tessarine-desktop RUNTIME)
set(desktop_folder ${CMAKE_INSTALL_LIBEXECDIR}/tessarine-desktop)
install(DIRECTORY ${DESKTOP_PROGRAMS}/ DESTINATION ${desktop_folder} USE_SOURCE_PERMISSIONS)
if(APPLE)
  install(TARGETS background-window-capture RUNTIME)
endif()

install(FILES packaging/man/tessarine.1 packaging/man/tessarine-desktop.1
  packaging/man/background-window-capture.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/completions/tessarine.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME tessarine)
install(FILES packaging/completions/_tessarine
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
install(FILES packaging/completions/tessarine.fish
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
