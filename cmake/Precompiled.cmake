# What many sources read is read once a build: by the rooms the standard library (qx_room_pch), by the test programs GoogleTest
# and the JSON library besides (qx_test_pch), by the desktop wxWidgets besides (qx_wx_pch). Fully optimised the rooms are
# warned of what cannot be: they do without. Every source still includes what it uses; scripts/lint and the release preset
# compile without.
# Named in angle brackets, so that what is precompiled is the same whatever the tree's folder is.
set(qx_std_headers <algorithm> <array> <atomic> <cstdint> <cstdio> <cstdlib> <cstring> <fstream> <functional> <iterator>
    <limits> <map> <memory> <mutex> <optional> <set> <span> <sstream> <stdexcept> <string> <string_view> <thread>
    <tuple> <unordered_map> <utility> <variant> <vector>)

# Test programs are compiled often and run for moments, so what is not the debug build compiles them without optimising.
set(QX_TEST_OPTIONS $<$<NOT:$<CONFIG:Debug>>:-O0>)

# qx_precompiled(name LINKS ... OPTIONS ... HEADERS ...): a target for others to take their precompiled headers from.
function(qx_precompiled name)
  cmake_parse_arguments(ARG "" "" "LINKS;OPTIONS;HEADERS" ${ARGN})
  set(source "${CMAKE_BINARY_DIR}/precompiled/${name}.cpp")
  if(NOT EXISTS "${source}")
    file(WRITE "${source}" "")
  endif()
  add_library(${name} OBJECT EXCLUDE_FROM_ALL "${source}")
  target_link_libraries(${name} PRIVATE qx_options ${ARG_LINKS})
  target_compile_options(${name} PRIVATE ${ARG_OPTIONS})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
  qx_precompiled(qx_room_pch HEADERS ${qx_std_headers})
endif()
if(QX_TESTS)
  qx_precompiled(qx_test_pch LINKS gtest qx_json OPTIONS ${QX_TEST_OPTIONS}
                 HEADERS ${qx_std_headers} <filesystem> <gtest/gtest.h> <nlohmann/json.hpp>)
endif()
if(TARGET qx_wx)
  qx_precompiled(qx_wx_pch LINKS qx_wx HEADERS ${qx_std_headers} <wx/wx.h> <wx/dataview.h> <wx/gbsizer.h> <wx/grid.h>
                 <wx/html/htmlwin.h> <wx/listctrl.h> <wx/propgrid/propgrid.h> <wx/scrolwin.h> <wx/spinctrl.h>)
endif()

# qx_precompile(target from): the target takes its precompiled headers from that one, where there is such a target. Where
# position matters to the compiler, programs and libraries must agree about it.
function(qx_precompile target from)
  if(NOT TARGET ${from})
    return()
  endif()
  target_precompile_headers(${target} REUSE_FROM ${from})
  if(NOT WIN32)
    target_compile_options(${target} PRIVATE -fPIC)
  endif()
endfunction()
