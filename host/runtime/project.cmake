# Build projects, the options store, the package loader, the runner and the dry run.
target_sources(qx_runtime PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/BuildProject.cpp
  ${CMAKE_CURRENT_LIST_DIR}/BuildProjectEdits.cpp
  ${CMAKE_CURRENT_LIST_DIR}/DryRun.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Host.cpp
  ${CMAKE_CURRENT_LIST_DIR}/HostProgram${system}.cpp
  ${CMAKE_CURRENT_LIST_DIR}/OpenProject.cpp
  ${CMAKE_CURRENT_LIST_DIR}/OptionsStore.cpp
  ${CMAKE_CURRENT_LIST_DIR}/PackageLoader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ProcessRehearsal.cpp
  ${CMAKE_CURRENT_LIST_DIR}/Runner.cpp
  ${CMAKE_CURRENT_LIST_DIR}/SharedLibrary${system}.cpp
  ${CMAKE_CURRENT_LIST_DIR}/StopRequests${system}.cpp
  ${CMAKE_CURRENT_LIST_DIR}/UnifiedDiff.cpp
  ${CMAKE_CURRENT_LIST_DIR}/XmlFile.cpp
  ${CMAKE_CURRENT_LIST_DIR}/XmlFileEdits.cpp)
if(WIN32)
  target_link_libraries(qx_runtime PRIVATE shell32)
else()
  target_link_libraries(qx_runtime PRIVATE ${CMAKE_DL_LIBS})
endif()

qx_tests(project_tests
  SOURCES
    BuildProject_test.cpp
    BuildProjectEdits_test.cpp
    OpenProject_test.cpp
    OptionsStore_test.cpp
    PackageLoader_test.cpp
    UnifiedDiff_test.cpp
    XmlFile_test.cpp
  LINKS qx_runtime)

qx_fuzzer(BuildProject_fuzz SOURCE BuildProject_fuzz.cpp LINKS qx_runtime)
