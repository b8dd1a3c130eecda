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
# Software centres read the metainfo by the component's id.
install(FILES ${CMAKE_SOURCE_DIR}/dist/vonnel.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo RENAME invalid.vonnel.vonnel.metainfo.xml)
install(FILES ${CMAKE_SOURCE_DIR}/dist/icons/vonnel.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
foreach(size 16 24 32 48 64 128 256)
  install(FILES ${CMAKE_SOURCE_DIR}/dist/icons/${size}x${size}/vonnel.png
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()

# The manual page and the package's changelog go in compressed, the
# copyright beside the changelog, where Debian looks for them.
set(VONNEL_GZIPPED)
foreach(pair "vonnel.1;vonnel.1.gz" "debian/changelog;changelog.gz")
  list(GET pair 0 from)
  list(GET pair 1 to)
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/${to}
    COMMAND ${CMAKE_COMMAND} -DFROM=${CMAKE_SOURCE_DIR}/dist/${from}
      -DTO=${CMAKE_BINARY_DIR}/${to} -P ${CMAKE_SOURCE_DIR}/cmake/GzipFile.cmake
    DEPENDS ${CMAKE_SOURCE_DIR}/dist/${from} ${CMAKE_SOURCE_DIR}/cmake/GzipFile.cmake
    VERBATIM)
  list(APPEND VONNEL_GZIPPED ${CMAKE_BINARY_DIR}/${to})
endforeach()
add_custom_target(vonnel_docs ALL DEPENDS ${VONNEL_GZIPPED})
add_dependencies(vonnel vonnel_docs)  # an install after building the program alone
install(FILES ${CMAKE_BINARY_DIR}/vonnel.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${CMAKE_BINARY_DIR}/changelog.gz ${CMAKE_SOURCE_DIR}/dist/debian/copyright
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

# cpack -G DEB (from the build folder) makes vonnel_<version>_<arch>.deb.
set(CPACK_PACKAGE_NAME vonnel)
set(CPACK_PACKAGE_VENDOR "Vonnel")
set(CPACK_PACKAGE_CONTACT "Vonnel <dev@vonnel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Direct two-party chat with live typing")
# Lines of the package's description stay within 80 columns.
set(CPACK_PACKAGE_DESCRIPTION "Vonnel connects two computers directly (TCP port 2500):
each side sees the other type letter by letter, and they can send files,
draw on a shared board, ring and have received text spoken.")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
  GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://vonnel.invalid/")
# The libraries come from the program's links; the plugins Qt loads at run
# time do not show there: the speech engine, the media backend and the
# GStreamer elements that play the rings (wavparse, the audio sinks).
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS
  "qt6-speech-flite-plugin, gstreamer1.0-plugins-base, gstreamer1.0-plugins-good, qt6-qpa-plugins")
# Under Wayland Qt opens its windows through the qt6-wayland plugin.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xdg-utils, qt6-wayland")
set(CPACK_GENERATOR DEB)
include(CPack)
