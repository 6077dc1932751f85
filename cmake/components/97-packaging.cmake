# The installation (FHS: programs in bin/, the packed resources in share/tavorin/, the test bridge
# module in lib/tavorin/TestAutomation/), what a desktop needs around the program (menu entry,
# icons, AppStream metainfo, the silent check at login), manual pages, bash completions, and the
# Debian package built by CPack (scripts/package).
#
# Components: Runtime is the user's installation and the package; Development (tvresembed) and
# TestAutomation (the bridge module and its driver) are installed only when asked for by name:
#   cmake --install build --component TestAutomation
set(TV_PACKAGING_DIR ${PROJECT_SOURCE_DIR}/Updater/packaging)

install(TARGETS tavorin-updater tvcheck tvdefaults RUNTIME DESTINATION bin COMPONENT Runtime)
install(FILES ${TV_UPDATER_RESOURCE_FILE} DESTINATION share/tavorin COMPONENT Runtime)
install(TARGETS tvresembed RUNTIME DESTINATION bin COMPONENT Development EXCLUDE_FROM_ALL)
install(TARGETS TvTestAutomation LIBRARY DESTINATION lib/tavorin/TestAutomation
        COMPONENT TestAutomation EXCLUDE_FROM_ALL)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/tools/tvdriver.py DESTINATION lib/tavorin/TestAutomation
        COMPONENT TestAutomation EXCLUDE_FROM_ALL)

# Desktop integration.
install(FILES ${TV_PACKAGING_DIR}/com.tavorin.Updater.desktop DESTINATION share/applications
        COMPONENT Runtime)
install(FILES ${TV_PACKAGING_DIR}/icons/com.tavorin.Updater.svg
        DESTINATION share/icons/hicolor/scalable/apps COMPONENT Runtime)
foreach(size 16 32 48 64 128 256)
  install(FILES ${TV_PACKAGING_DIR}/icons/com.tavorin.Updater-${size}.png
          DESTINATION share/icons/hicolor/${size}x${size}/apps
          RENAME com.tavorin.Updater.png COMPONENT Runtime)
endforeach()
configure_file(${TV_PACKAGING_DIR}/com.tavorin.Updater.metainfo.xml
               ${CMAKE_BINARY_DIR}/packaging/com.tavorin.Updater.metainfo.xml @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/packaging/com.tavorin.Updater.metainfo.xml
        DESTINATION share/metainfo COMPONENT Runtime)
# The login check belongs in the system's autostart folder: /etc/xdg/autostart for a /usr
# installation (the package), <prefix>/etc/xdg/autostart otherwise, decided when installing
# because CPack installs with its own prefix.
install(CODE "
  if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
    set(tv_autostart_dir /etc/xdg/autostart)
  else()
    set(tv_autostart_dir \"\${CMAKE_INSTALL_PREFIX}/etc/xdg/autostart\")
  endif()
  file(INSTALL DESTINATION \"\${tv_autostart_dir}\" TYPE FILE
       RENAME com.tavorin.Updater.desktop
       FILES \"${TV_PACKAGING_DIR}/com.tavorin.Updater-autostart.desktop\")
  " COMPONENT Runtime)

# Manual pages and the changelog, compressed as Debian wants them.
set(tv_gzipped)
foreach(page tavorin-updater tvcheck tvdefaults)
  configure_file(${TV_PACKAGING_DIR}/man/${page}.1 ${CMAKE_BINARY_DIR}/packaging/man/${page}.1 @ONLY)
  list(APPEND tv_gzipped ${CMAKE_BINARY_DIR}/packaging/man/${page}.1)
endforeach()
configure_file(${TV_PACKAGING_DIR}/doc/changelog ${CMAKE_BINARY_DIR}/packaging/doc/changelog COPYONLY)
list(APPEND tv_gzipped ${CMAKE_BINARY_DIR}/packaging/doc/changelog)
set(tv_gzip_outputs)
foreach(file ${tv_gzipped})
  add_custom_command(OUTPUT ${file}.gz
    COMMAND gzip -9nkf ${file}
    DEPENDS ${file}
    VERBATIM)
  list(APPEND tv_gzip_outputs ${file}.gz)
endforeach()
add_custom_target(tv_packaging_docs ALL DEPENDS ${tv_gzip_outputs})
foreach(page tavorin-updater tvcheck tvdefaults)
  install(FILES ${CMAKE_BINARY_DIR}/packaging/man/${page}.1.gz DESTINATION share/man/man1
          COMPONENT Runtime)
endforeach()
install(FILES ${TV_PACKAGING_DIR}/completions/tvcheck ${TV_PACKAGING_DIR}/completions/tvdefaults
        DESTINATION share/bash-completion/completions COMPONENT Runtime)
install(FILES ${TV_PACKAGING_DIR}/doc/copyright ${CMAKE_BINARY_DIR}/packaging/doc/changelog.gz
        DESTINATION share/doc/tavorin-updater COMPONENT Runtime)

# The Debian package: one package of the Runtime component, its library dependencies found by
# dpkg-shlibdeps, stripped programs with the debug symbols in tavorin-updater-dbgsym.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavorin-updater)
set(CPACK_PACKAGE_VENDOR Tavorin)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Tavorin <support@tavorin.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "shows which installed Tavorin products have updates")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_PREFIX /usr)
# Installs into a staging DESTDIR under the real prefix, so that /etc/xdg/autostart lands in
# the package and not on the build machine.
set(CPACK_SET_DESTDIR ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Runtime)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME tavorin-updater)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://www.tavorin.invalid/)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Splits the debug symbols into the -dbgsym package and strips the programs; it needs them
# unstripped, so CPACK_STRIP_FILES stays off.
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
# What the programs use but do not link: the default faces, the browser launcher, the CA store.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-liberation2, xdg-utils, ca-certificates")
# The long description; CPack indents it and turns the empty line into the paragraph mark.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
  "Tavorin Updater compares the installed Tavorin audio products with the
current versions published by Tavorin and lists the products that have a
newer version, with a link to each update. At login it checks quietly and
shows its window only when updates exist.

The package also holds tvcheck, the same check without a window for scripts,
and tvdefaults, which registers products in the settings.")
file(WRITE ${CMAKE_BINARY_DIR}/packaging/conffiles "/etc/xdg/autostart/com.tavorin.Updater.desktop\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/packaging/conffiles)
include(CPack)
