# What a package is made with outside this tree (component DEV): the contract's headers, a CMake package and a pkg-config
# file. Both find the headers and the runtime library from where they stand themselves.
include(CMakePackageConfigHelpers)
set(kit_headers "${CMAKE_INSTALL_INCLUDEDIR}/qxhost")
set(kit_cmake "${CMAKE_INSTALL_LIBDIR}/cmake/qxhost")
install(DIRECTORY "${CMAKE_SOURCE_DIR}/plugin" DESTINATION "${kit_headers}" COMPONENT DEV FILES_MATCHING PATTERN "*.h")

# The file that a package links: Windows' import library stands apart from the library.
set(kit_library "${QX_LIBRARY_DESTINATION}/$<TARGET_FILE_NAME:qxruntime>")
set(kit_import_library "${CMAKE_INSTALL_LIBDIR}/$<TARGET_LINKER_FILE_NAME:qxruntime>")
if(WIN32)
  set(kit_links "-L\${libdir} -lqxruntime")
else()
  set(kit_links "-L\${libdir}/qxhost -lqxruntime")
endif()
set(place "${CMAKE_BINARY_DIR}/kit")
configure_package_config_file("${CMAKE_SOURCE_DIR}/packaging/kit/qxhostConfig.cmake.in" "${place}/qxhostConfig.in.cmake"
                              INSTALL_DESTINATION "${kit_cmake}" NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
file(GENERATE OUTPUT "${place}/qxhostConfig.cmake" INPUT "${place}/qxhostConfig.in.cmake")
write_basic_package_version_file("${place}/qxhostConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${place}/qxhostConfig.cmake" "${place}/qxhostConfigVersion.cmake" DESTINATION "${kit_cmake}" COMPONENT DEV)

file(RELATIVE_PATH kit_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH kit_libdir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH kit_includedir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
string(REGEX REPLACE "/$" "" kit_prefix "${kit_prefix}")
configure_file("${CMAKE_SOURCE_DIR}/packaging/kit/qxhost.pc.in" "${place}/qxhost.pc" @ONLY)
install(FILES "${place}/qxhost.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT DEV)
