# What cpack needs to know for the three Debian packages. Needs window_package, tools_package and
# development_package.
file(STRINGS debian/changelog newest_entry LIMIT_COUNT 1)
# Below any that Debian itself would give.
set(package_release 0tarvio1)
if(NOT newest_entry MATCHES "\\(${PROJECT_VERSION}-${package_release}\\)")
  message(FATAL_ERROR "packaging/debian/changelog does not begin with ${PROJECT_VERSION}-${package_release}: ${newest_entry}")
endif()
file(STRINGS desktop/org.tarvio.tarvio.metainfo.xml released REGEX "<release version=\"${PROJECT_VERSION}\"")
if(NOT released)
  message(FATAL_ERROR "org.tarvio.tarvio.metainfo.xml knows no release ${PROJECT_VERSION}")
endif()
file(STRINGS "${PROJECT_SOURCE_DIR}/CHANGELOG.md" told REGEX "^## \\[${PROJECT_VERSION}\\]")
if(NOT told)
  message(FATAL_ERROR "CHANGELOG.md tells nothing of ${PROJECT_VERSION}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvio)
set(CPACK_PACKAGE_CONTACT "Tarvio developers <tarvio@example.org>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_COMPONENTS_ALL window tools development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${package_release})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_WINDOW_PACKAGE_NAME ${window_package})
set(CPACK_DEBIAN_WINDOW_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_WINDOW_PACKAGE_RECOMMENDS ${tools_package})
set(CPACK_COMPONENT_WINDOW_DESCRIPTION
"watch and calibrate an ultrasonic park-assist ECU
Tarvio draws the live echoes and freespaces of an automotive park-assist ECU
with twelve ultrasonic sensors as they arrive over UDP, and reads, edits and
writes the ECU's configuration: measurement sequence, echo thresholds, mount
positions and network settings.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME ${tools_package})
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SUGGESTS "${window_package}, wireshark")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
"work with a park-assist ECU without a window, or without an ECU
tarvioctl reads, writes, watches and records a park-assist ECU from scripts and
test benches; tarvio-ecu-simulator is such an ECU in software alone. Wireshark
finds a dissector of the ECU's datagrams here, too.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${development_package})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# A static library has no shared ones that could be computed: its headers need the compiler's.
string(REGEX MATCH "^[0-9]+" compiler_major "${CMAKE_CXX_COMPILER_VERSION}")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libstdc++-${compiler_major}-dev | libstdc++-dev, libc6-dev | libc-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "${tools_package}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"records, sockets and control client of a park-assist ECU
orv_decoder is the library below Tarvio: it receives and decodes the live
measurement results and freespaces of a park-assist ECU and reads and writes
its configuration. It needs the standard library of C++20 and nothing else.
.
This package holds the static library, its headers, a CMake package, a
pkg-config file and an example program.")

include(CPack)
