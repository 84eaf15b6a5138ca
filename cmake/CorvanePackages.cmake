# Debian packages, made by `cpack -G DEB` (scripts/package-deb): the program, and the reference server apart from it,
# because a machine that serves needs no window and no engine.

# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR "Hollisward")
set(CPACK_PACKAGE_CONTACT "${CORVANE_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${CORVANE_HOMEPAGE_URL}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL corvane)
if(CORVANE_SERVER)
  list(APPEND CPACK_COMPONENTS_ALL server)
endif()
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

# The libraries' own dependencies bring the sandbox (bubblewrap, xdg-dbus-proxy), TLS and the icon themes. What draws
# SVG is only recommended by the toolkit, and every icon of the toolbar is one.
set(CPACK_DEBIAN_CORVANE_PACKAGE_NAME corvane)
set(CPACK_DEBIAN_CORVANE_PACKAGE_DEPENDS "librsvg2-common, ca-certificates")
set(CPACK_DEBIAN_CORVANE_PACKAGE_RECOMMENDS
  "default-dbus-session-bus | dbus-session-bus, gstreamer1.0-plugins-good, gstreamer1.0-libav, fonts-noto-color-emoji, fonts-noto-cjk, xdg-user-dirs, xdg-utils")
set(CPACK_DEBIAN_CORVANE_PACKAGE_SUGGESTS corvane-server)
set(CPACK_DEBIAN_CORVANE_DESCRIPTION "One calm window onto web-based AI chat services
Corvane gives the web-based AI chat services that you live in a window of
their own. Pick a service in the toolbar and its page fills the window;
sign-ins and conversations are kept between starts. It is made of GTK 4 and
WebKitGTK, starts fast, and is idle when you are.")

set(CPACK_DEBIAN_SERVER_PACKAGE_NAME corvane-server)
set(CPACK_DEBIAN_SERVER_DESCRIPTION "Reference server of Corvane
The other end of the addresses that a plain build of Corvane talks to: it
publishes documents, registers installations and profiles, answers store
look-ups and delivers notifications. One program with one database file, and
the starting point for running servers of one's own.")

include(CPack)
