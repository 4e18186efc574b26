# The desktop's core: the document, the build beside the window, the log. It knows no toolkit.
qx_room(qx_desktop_core
  SOURCES BuildThread.cpp DiffLines.cpp Document.cpp LogStore.cpp Severity.cpp
  LINKS qx_contract qxruntime)
# The runtime's headers show pugixml's types; its functions are the runtime's.
target_include_directories(qx_desktop_core SYSTEM PUBLIC $<TARGET_PROPERTY:qx_pugixml,INTERFACE_INCLUDE_DIRECTORIES>)

qx_tests(desktop_core_tests
  SOURCES BuildThread_test.cpp DiffLines_test.cpp Document_test.cpp LogStore_test.cpp
  LINKS qx_desktop_core qxruntime
  LABELS threads)
if(NOT WIN32)
  target_sources(desktop_core_tests PRIVATE LogStorePosix_test.cpp)
endif()
target_compile_definitions(desktop_core_tests PRIVATE QX_PROGRAM_ENDING="${CMAKE_EXECUTABLE_SUFFIX}"
                           QX_LIBRARY_ENDING="${CMAKE_SHARED_MODULE_SUFFIX}")
add_dependencies(desktop_core_tests qxhost tiny vsdotnet)
