# What every room's CMakeLists.txt uses: qx_room, qx_tests, qx_fuzzer, qx_bench, and the switches behind the presets.
include(GNUInstallDirs)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME CLI)  # see Packages.cmake
# Where the runtime library and the packages are installed: beside the programs on Windows, whose loader looks there, else
# in a folder of the host's own. Programs find them from where they stand themselves, so
# that an installation may be moved as a whole.
if(WIN32)
  set(QX_LIBRARY_DESTINATION "${CMAKE_INSTALL_BINDIR}")
else()
  set(QX_LIBRARY_DESTINATION "${CMAKE_INSTALL_LIBDIR}/qxhost")
endif()
file(RELATIVE_PATH QX_LIBRARIES_FROM_PROGRAMS "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}/qxhost")
set(QX_PROGRAM_RPATH "$ORIGIN/${QX_LIBRARIES_FROM_PROGRAMS}")

# Which of a unit's two sources is built: NAMEWindows.cpp or NAMEPosix.cpp.
if(WIN32)
  set(QX_SYSTEM Windows)
else()
  set(QX_SYSTEM Posix)
endif()
find_package(Threads REQUIRED)

set(QX_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize takes them: address,undefined or thread")
option(QX_FUZZ "Build the fuzzers (clang only)" OFF)
option(QX_BENCH "Build the bench programs" OFF)
option(QX_WERROR "Treat warnings as errors" OFF)
option(QX_TESTS "Build the test programs" ON)

add_library(qx_options INTERFACE)
target_include_directories(qx_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(qx_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${QX_WERROR}>:-Werror>)
# g++ 12 sees overlaps in `"text" + std::string` at -O2 that cannot be (GCC bug 105651). Not in debug builds: their
# options are clang-tidy's too, which does not know this one.
target_compile_options(qx_options INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<NOT:$<CONFIG:Debug>>>:-Wno-restrict>)
if(QX_SANITIZE)
  target_compile_options(qx_options INTERFACE -fsanitize=${QX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qx_options INTERFACE -fsanitize=${QX_SANITIZE})
  # Together with sanitizers g++ 12 warns of what cannot be, as its manual says. The other builds keep the warnings.
  target_compile_options(qx_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-w>)
endif()
if(QX_FUZZ)
  target_compile_options(qx_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(WIN32)
  target_compile_definitions(qx_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
endif()

find_program(QX_CCACHE ccache)
if(QX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Without this it keeps nothing that was compiled with precompiled headers.
  set(launcher ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${QX_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

# qx_for_tests(targets...): what a build without tests makes only where something that is installed needs it.
function(qx_for_tests)
  if(NOT QX_TESTS)
    set_target_properties(${ARGV} PROPERTIES EXCLUDE_FROM_ALL TRUE)
  endif()
endfunction()

# qx_room(name SOURCES ... LINKS ...): a room as a static library; what it links, it may include.
function(qx_room name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC qx_options ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
  set_property(GLOBAL APPEND PROPERTY QX_ROOMS ${name})
  qx_for_tests(${name})
  qx_precompile(${name} qx_room_pch)
endfunction()

# GoogleTest from Debian's source package serves both systems alike.
if(QX_TESTS AND NOT EXISTS /usr/src/googletest/CMakeLists.txt)
  message(FATAL_ERROR "/usr/src/googletest was not found: run scripts/setup, or build without tests (-DQX_TESTS=OFF)")
endif()
if(QX_TESTS)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL)
  if(QX_SANITIZE)
    # What tests do themselves is not looked through for undefined behaviour: that is a fifth of their compiling.
    target_compile_options(gtest PRIVATE -fsanitize=${QX_SANITIZE} PUBLIC -fno-sanitize=undefined)
  endif()
endif()

# Builds the test programs that the thread sanitizer's run takes.
add_custom_target(thread_tests)

# qx_tests(name SOURCES ... LINKS ...): one test program a room, each test known to ctest by its own name.
# LABELS threads marks the programs for thread_tests.
function(qx_tests name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;ENVIRONMENT;LABELS" ${ARGN})
  set(drive "$<$<BOOL:${WIN32}>:Z:>")  # Wine's drive Z is the root of this file system
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} gtest gtest_main)
  qx_for_tests(${name})
  if(NOT QX_TESTS)
    return()
  endif()
  target_compile_options(${name} PRIVATE ${QX_TEST_OPTIONS})
  qx_precompile(${name} qx_test_pch)
  target_compile_definitions(${name} PRIVATE QX_SOURCE_DIR="${drive}${CMAKE_SOURCE_DIR}"
                             QX_BINARY_DIR="${drive}${CMAKE_BINARY_DIR}/bin")
  if("threads" IN_LIST ARG_LABELS)
    add_dependencies(thread_tests ${name})
  endif()
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 240)

  # What tests have the host keep lies in the build folder, never in the user's.
  list(APPEND ARG_ENVIRONMENT "XDG_STATE_HOME=${CMAKE_BINARY_DIR}/state" "LOCALAPPDATA=${drive}${CMAKE_BINARY_DIR}/state")
  # Discovery flattens lists, so the properties that are lists are set in a file of their own, read after it.
  set(lists "${CMAKE_CURRENT_BINARY_DIR}/${name}_lists.cmake")
  file(WRITE "${lists}" "if(${name}_TESTS)
  set_tests_properties(\${${name}_TESTS} PROPERTIES LABELS [==[${ARG_LABELS}]==] ENVIRONMENT [==[${ARG_ENVIRONMENT}]==])
endif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${lists}")
endfunction()

# qx_uses_test_child(target): a program that starts the tests' child program.
function(qx_uses_test_child target)
  target_compile_definitions(${target} PRIVATE QX_TEST_CHILD="$<$<BOOL:${WIN32}>:Z:>$<TARGET_FILE:qx_test_child>")
  add_dependencies(${target} qx_test_child)
endfunction()

# qx_fuzzer(name SOURCE file LINKS ...): a libFuzzer program, built by the fuzz preset only.
function(qx_fuzzer name)
  cmake_parse_arguments(ARG "" "SOURCE" "LINKS" ${ARGN})
  if(NOT QX_FUZZ)
    return()
  endif()
  add_executable(${name} ${ARG_SOURCE})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS})
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  set_property(GLOBAL APPEND PROPERTY QX_FUZZERS ${name})
  set_property(GLOBAL APPEND PROPERTY QX_FUZZER_LINES "${name} ${CMAKE_CURRENT_SOURCE_DIR}/testdata")
endfunction()

# qx_bench(name SOURCE file LINKS ...): a Google Benchmark program, run by hand or by the performance table.
function(qx_bench name)
  cmake_parse_arguments(ARG "" "SOURCE" "LINKS" ${ARGN})
  if(NOT QX_BENCH)
    return()
  endif()
  find_package(benchmark REQUIRED)
  add_executable(${name} ${ARG_SOURCE})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} benchmark::benchmark benchmark::benchmark_main)
endfunction()

# The contract is headers only; who links it may include plugin/.
add_library(qx_contract INTERFACE)
target_link_libraries(qx_contract INTERFACE qx_options)
