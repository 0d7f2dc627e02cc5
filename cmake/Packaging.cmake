# The Debian package: cpack -G DEB. scripts/package does all of it.

# Its version is the one on top of its own changelog, which must be the program's.
file(STRINGS ${PROJECT_SOURCE_DIR}/packaging/debian/changelog top LIMIT_COUNT 1)
if(NOT top MATCHES "^noctra \\(${PROJECT_VERSION}-([0-9]+)\\)")
    message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${PROJECT_VERSION}: ${top}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_1})

set(CPACK_PACKAGE_NAME noctra)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The Noctra developers <noctra@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "dims and warms displays without backlight flicker")
set(CPACK_PACKAGE_DESCRIPTION
"Many backlights are dimmed by switching them on and off quickly, and there
are eyes that suffer from it. With Noctra the backlight stays at full
brightness; the picture is dimmed and warmed instead, by scaling the gamma
tables of every display, which get their own tables back in the end.

It sits in the tray of an X11 desktop and has a control panel, presets, a
mode that holds backlights and monitors at full brightness, and commands as
links (noctra://toggle).")

set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Opened by name at run time, where dpkg-shlibdeps cannot see it: what the panel's QML files import,
# and what that imports.
string(JOIN ", " CPACK_DEBIAN_PACKAGE_DEPENDS
    qml6-module-qtquick qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript)
string(JOIN ", " CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "default-dbus-session-bus | dbus-session-bus" desktop-file-utils libddcutil4 xdg-utils)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS colord)
set(CPACK_STRIP_FILES ON)

# As for a person who installs: under the final prefix, through DESTDIR.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_INSTALL_CMAKE_PROJECTS
    "${PROJECT_BINARY_DIR};Noctra;ALL;/" "${PROJECT_BINARY_DIR};Noctra;debian;/")
include(CPack)
