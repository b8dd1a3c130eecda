# What `cmake --install` puts where, and the Debian package CPack makes of
# it. The program finds its data folder from its own folder
# (VONNEL_DATA_FROM_PROGRAM, set in the top CMakeLists.txt), so the
# install can be moved to any prefix.

install(TARGETS vonnel RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The files a user's application folder is filled from at its first start.
set(VONNEL_DATA ${CMAKE_INSTALL_DATADIR}/vonnel)
file(GLOB VONNEL_INSTALL_SOUNDS ${CMAKE_SOURCE_DIR}/dist/*.wav)
install(FILES ${CMAKE_SOURCE_DIR}/dist/vonnel.ini.preset ${CMAKE_SOURCE_DIR}/dist/TIPS.TXT
  ${CMAKE_SOURCE_DIR}/dist/DrawTips.txt
  ${VONNEL_INSTALL_SOUNDS} DESTINATION ${VONNEL_DATA})
# Whatever pages dist/help holds when the install runs.
install(DIRECTORY ${CMAKE_SOURCE_DIR}/dist/help DESTINATION ${VONNEL_DATA} OPTIONAL)
# Made by the build (target lang_txt); an install without it still works.
install(FILES ${CMAKE_BINARY_DIR}/Lang.txt DESTINATION ${VONNEL_DATA} OPTIONAL)

install(FILES ${CMAKE_SOURCE_DIR}/dist/vonnel.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${CMAKE_SOURCE_DIR}/dist/icons/vonnel.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 24 32 48 64 128 256)
  install(FILES ${CMAKE_SOURCE_DIR}/dist/icons/${size}x${size}/vonnel.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

# cpack -G DEB (from the build folder) makes vonnel_<version>_<arch>.deb.
set(CPACK_PACKAGE_NAME vonnel)
set(CPACK_PACKAGE_VENDOR "Vonnel")
set(CPACK_PACKAGE_CONTACT "Vonnel <dev@vonnel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Direct two-party chat with live typing")
set(CPACK_PACKAGE_DESCRIPTION "Vonnel connects two computers directly (TCP port 2500): \
each side sees the other type letter by letter, and they can send files, \
draw on a shared board, ring and have received text spoken.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://vonnel.invalid/")
# The libraries come from the program's links; the plugins Qt loads at run
# time do not show there: the speech engine, the media backend and the
# GStreamer elements that play the rings (wavparse, the audio sinks).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "qt6-speech-flite-plugin, gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, qt6-qpa-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils")
set(CPACK_GENERATOR DEB)
include(CPack)
