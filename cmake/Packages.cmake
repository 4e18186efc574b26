# What scripts/package packs: for Debian the packages qxhost (component CLI), qxhost-desktop (DESKTOP), qxhost-dev (DEV)
# and qxhost-buildbot (FARM), for Windows one archive with the first three. What is installed without a component's name belongs to CLI, see House.cmake.
if(WIN32)
  install(FILES "${CMAKE_SOURCE_DIR}/LICENSE" DESTINATION . RENAME LICENSE.txt)
  install(FILES "${CMAKE_SOURCE_DIR}/packaging/third-party.txt" DESTINATION .)
  if(TARGET qxhost-desktop)
    set(resources "${CMAKE_SOURCE_DIR}/packaging/windows/qxhost-desktop.rc")
    target_sources(qxhost-desktop PRIVATE "${resources}")
    string(REPLACE "." "," numbers "${PROJECT_VERSION}.0")
    set_property(SOURCE "${resources}" TARGET_DIRECTORY qxhost-desktop PROPERTY COMPILE_DEFINITIONS
                 "QX_VERSION=${PROJECT_VERSION}" "QX_VERSION_NUMBERS=${numbers}")
  endif()
else()
  install(FILES "${CMAKE_SOURCE_DIR}/packaging/debian/copyright" DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qxhost)
  install(FILES "${CMAKE_SOURCE_DIR}/packaging/debian/copyright" COMPONENT DEV
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qxhost-dev)
  install(FILES "${CMAKE_SOURCE_DIR}/packaging/vsinspect.1" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES "${CMAKE_SOURCE_DIR}/packaging/debian/copyright" COMPONENT FARM
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qxhost-buildbot)
  install(DIRECTORY "${CMAKE_SOURCE_DIR}/examples/farm" COMPONENT FARM
          DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qxhost-buildbot/examples PATTERN __pycache__ EXCLUDE)
  # Debian's Python looks here whatever its version; elsewhere PYTHONPATH has to name the folder.
  install(DIRECTORY "${CMAKE_SOURCE_DIR}/packaging/buildbot/qxhost_buildbot" COMPONENT FARM
          DESTINATION lib/python3/dist-packages PATTERN __pycache__ EXCLUDE PATTERN .mypy_cache EXCLUDE)
  if(TARGET qxhost-desktop)
    set(desktop "${CMAKE_SOURCE_DIR}/packaging/desktop/qxhost-desktop")
    install(FILES "${CMAKE_SOURCE_DIR}/packaging/debian/copyright" COMPONENT DESKTOP
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/qxhost-desktop)
    install(FILES "${desktop}.desktop" COMPONENT DESKTOP DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    install(FILES "${desktop}.svg" COMPONENT DESKTOP DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
    install(FILES "${desktop}.xml" COMPONENT DESKTOP DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
    install(FILES "${desktop}.1" COMPONENT DESKTOP DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  endif()
endif()

set(CPACK_PACKAGE_NAME qxhost)
set(CPACK_PACKAGE_VENDOR "the authors of this package")
# Who packs says who he is the way Debian's tools ask for.
set(maintainer "The authors of this package <maintainers@vsdotnet-package.example>")
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
  set(maintainer "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()
set(CPACK_PACKAGE_CONTACT "${maintainer}")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_SOURCE_DIR}/build/packages")
set(CPACK_RESOURCE_FILE_LICENSE "${CMAKE_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "qxhost-${PROJECT_VERSION}-windows-x64")
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_COMPONENTS_ALL CLI DEV FARM)
  if(TARGET qxhost-desktop)
    list(APPEND CPACK_COMPONENTS_ALL DESKTOP)
  endif()
  set(CPACK_COMPONENTS_GROUPING IGNORE)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
  set(CPACK_DEBIAN_PACKAGE_SECTION devel)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
  set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
  set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/packaging/debian/finish.cmake")
  set(CPACK_QX_PACKAGING_FOLDER "${CMAKE_SOURCE_DIR}/packaging/debian")

  set(CPACK_DEBIAN_CLI_PACKAGE_NAME qxhost)
  # Looked for when a web project is stamped, and not linked, so that what is linked does not tell of it.
  set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS "libcurl4 | libcurl3-gnutls")
  set(CPACK_DEBIAN_CLI_PACKAGE_SUGGESTS "mono-devel, mono-xbuild, ninja-build, g++-mingw-w64-i686-posix, g++-mingw-w64-x86-64-posix, qxhost-desktop")
  set(CPACK_COMPONENT_CLI_DESCRIPTION
"host for build automation, with actions for old Visual Studio solutions
qxhost runs build projects: lists of actions with their settings. Its package
raises version numbers, stamps them into AssemblyInfo files and resource
scripts, and builds solutions of Visual Studio .NET 2002, 2003 and 2005 with
the engine of this system. vsinspect shows what it sees in such a file.")

  set(CPACK_DEBIAN_DEV_PACKAGE_NAME qxhost-dev)
  set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEV_PACKAGE_SHLIBDEPS OFF)
  set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "qxhost (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
  set(CPACK_COMPONENT_DEV_DESCRIPTION
"host for build automation, for developers of packages
The headers that a package with actions of its own is made from, and what tells
CMake and pkg-config where they and the runtime library are.")

  set(CPACK_DEBIAN_FARM_PACKAGE_NAME qxhost-buildbot)
  set(CPACK_DEBIAN_FARM_PACKAGE_ARCHITECTURE all)
  set(CPACK_DEBIAN_FARM_PACKAGE_SHLIBDEPS OFF)
  # The worker's part is needed on the master too: the night is coordinated by a worker inside the master.
  set(CPACK_DEBIAN_FARM_PACKAGE_DEPENDS "python3 (>= 3.11), buildbot (>= 3.7), buildbot-worker")
  set(CPACK_DEBIAN_FARM_PACKAGE_SUGGESTS "qxhost, git")
  set(CPACK_DEBIAN_FARM_PACKAGE_CONTROL_EXTRA "${CMAKE_SOURCE_DIR}/packaging/buildbot/debian/postinst"
      "${CMAKE_SOURCE_DIR}/packaging/buildbot/debian/prerm")
  set(CPACK_COMPONENT_FARM_DESCRIPTION
"host for build automation, on a farm of machines
A Python package for Buildbot's master: it makes a builder of every build
project in a folder, gives each build of a product a number of its own, and
follows qxhost's log on the workers. Workers need qxhost and no more of this.")

  set(CPACK_DEBIAN_DESKTOP_PACKAGE_NAME qxhost-desktop)
  # The last draws the marks in check boxes, which the toolkit only recommends.
  set(CPACK_DEBIAN_DESKTOP_PACKAGE_DEPENDS
      "qxhost (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), librsvg2-common")
  set(CPACK_COMPONENT_DESKTOP_DESCRIPTION
"host for build automation, in a window
qxhost-desktop edits build projects on the property pages of their actions, and
runs them. It shares packages, options and build projects with qxhost.")
endif()
include(CPack)
