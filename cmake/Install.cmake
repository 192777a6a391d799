# cmake --install: on Linux the program, the modules where the program looks for them, the manual page, and
# the entry and icon that a panel or a dock shows; on Windows the program alone, which needs nothing beside it.
include(GNUInstallDirs)
if(NOT TARGET orb-launcher)
  return()
endif()
install(TARGETS orb-launcher RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
if(WIN32)
  return()
endif()
install(TARGETS orb_cursors orb_desktop orb_input_method orb_keyboard LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/orb-launcher)
install(FILES ${CMAKE_SOURCE_DIR}/docs/orb-launcher.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_SOURCE_DIR}/resources/orb-launcher.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
foreach(size 48 128)
  install(FILES ${CMAKE_SOURCE_DIR}/resources/orb_${size}.png RENAME orb-launcher.png
          DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
