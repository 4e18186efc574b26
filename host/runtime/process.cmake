# The process service: children, their output, their end. Included by CMakeLists.txt, which names the system.
set(QX_PROCESS_SOURCES
  ChildProcess.cpp
  ChildProcess${system}.cpp
  CommandLine.cpp
  Event${system}.cpp
  LineSplitter.cpp
  ProcessService.cpp)
if(NOT WIN32)
  list(APPEND QX_PROCESS_SOURCES ProcessTreePosix.cpp)
endif()
target_sources(qx_runtime PRIVATE ${QX_PROCESS_SOURCES})

add_executable(qx_test_child TestChild.cpp TestChild${system}.cpp)
target_link_libraries(qx_test_child PRIVATE qx_options $<$<BOOL:${WIN32}>:shell32>)

qx_tests(process_tests
  SOURCES
    ChildProcess_test.cpp
    ChildProcess${system}_test.cpp
    CommandLine_test.cpp
    Event_test.cpp
    LineSplitter_test.cpp
    ProcessService_test.cpp
  LINKS qx_runtime
  LABELS threads)
add_dependencies(process_tests qx_test_child)
# Wine's drive Z is the root of this file system.
target_compile_definitions(process_tests PRIVATE
  QX_TEST_CHILD="$<$<BOOL:${WIN32}>:Z:>$<TARGET_FILE:qx_test_child>")

qx_fuzzer(CommandLine_fuzz SOURCE CommandLine_fuzz.cpp LINKS qx_runtime)

qx_bench(Forward_bench SOURCE ${CMAKE_SOURCE_DIR}/bench/Forward_bench.cpp LINKS qx_runtime)
if(TARGET Forward_bench)
  add_dependencies(Forward_bench qx_test_child)
  target_compile_definitions(Forward_bench PRIVATE QX_TEST_CHILD="$<TARGET_FILE:qx_test_child>")
endif()
