# The libraries from outside, under the same names on both systems: qx_pugixml, qx_json, qx_lua, qx_sodium, qx_zstd, qx_crypto, qx_wx.
# Linux takes Debian's packages. The Windows build takes the header-only ones from the same packages and
# compiles pugixml and Lua from Debian's source packages, which scripts/setup leaves in the cache folder below.
if(DEFINED ENV{XDG_CACHE_HOME})
  set(qx_cache_default "$ENV{XDG_CACHE_HOME}/vsdotnet-package")
else()
  set(qx_cache_default "$ENV{HOME}/.cache/vsdotnet-package")
endif()
set(QX_CACHE_FOLDER "${qx_cache_default}" CACHE PATH "Where scripts/setup keeps sources for the Windows build")

# qx_need(variable what): stops with advice when a library was not found.
function(qx_need variable what)
  if(NOT ${variable})
    message(FATAL_ERROR "${what} was not found: run scripts/setup")
  endif()
endfunction()

# qx_header_only(target header folder): a library of headers only. Cross builds see its folder through a link of
# its own in the build folder: /usr/include as a whole would shadow the headers of the other system.
function(qx_header_only target header folder)
  find_path(${target}_HEADERS ${header} NO_CMAKE_FIND_ROOT_PATH)
  qx_need(${target}_HEADERS ${header})
  add_library(${target} INTERFACE)
  if(CMAKE_CROSSCOMPILING)
    set(links "${CMAKE_BINARY_DIR}/headers/${target}")
    file(MAKE_DIRECTORY "${links}")
    file(CREATE_LINK "${${target}_HEADERS}/${folder}" "${links}/${folder}" SYMBOLIC)
    target_include_directories(${target} SYSTEM INTERFACE "${links}")
  else()
    target_include_directories(${target} SYSTEM INTERFACE "${${target}_HEADERS}")
  endif()
endfunction()

qx_header_only(qx_json nlohmann/json.hpp nlohmann)

if(WIN32)
  set(qx_pugixml_source "${QX_CACHE_FOLDER}/pugixml/src/pugixml.cpp")
  if(NOT EXISTS "${qx_pugixml_source}")
    message(FATAL_ERROR "${qx_pugixml_source} was not found: run scripts/setup")
  endif()
  add_library(qx_pugixml STATIC "${qx_pugixml_source}")
  target_include_directories(qx_pugixml SYSTEM PUBLIC "${QX_CACHE_FOLDER}/pugixml/src")

  file(GLOB qx_lua_sources CONFIGURE_DEPENDS "${QX_CACHE_FOLDER}/lua5.4/src/l*.c")
  list(FILTER qx_lua_sources EXCLUDE REGEX "/(lua|luac)\\.c$")  # the programs
  if(NOT qx_lua_sources)
    message(FATAL_ERROR "${QX_CACHE_FOLDER}/lua5.4/src was not found: run scripts/setup")
  endif()
  add_library(qx_lua STATIC ${qx_lua_sources})
  target_include_directories(qx_lua SYSTEM PUBLIC "${QX_CACHE_FOLDER}/lua5.4/src")

  set(qx_zstd_place "${QX_CACHE_FOLDER}/libzstd/lib")
  file(GLOB qx_zstd_sources CONFIGURE_DEPENDS "${qx_zstd_place}/common/*.c" "${qx_zstd_place}/compress/*.c"
       "${qx_zstd_place}/decompress/*.c")
  if(NOT qx_zstd_sources)
    message(FATAL_ERROR "${qx_zstd_place} was not found: run scripts/setup")
  endif()
  add_library(qx_zstd STATIC ${qx_zstd_sources})
  target_compile_definitions(qx_zstd PRIVATE ZSTD_DISABLE_ASM)
  target_include_directories(qx_zstd SYSTEM PUBLIC "${qx_zstd_place}")
else()
  # The archive rather than the shared library: installed programs then need nothing beside the C++ runtime for it.
  find_library(QX_PUGIXML_ARCHIVE NAMES libpugixml.a)
  find_path(QX_PUGIXML_HEADERS pugixml.hpp)
  qx_need(QX_PUGIXML_ARCHIVE libpugixml.a)
  qx_need(QX_PUGIXML_HEADERS pugixml.hpp)
  add_library(qx_pugixml STATIC IMPORTED GLOBAL)
  set_target_properties(qx_pugixml PROPERTIES IMPORTED_LOCATION "${QX_PUGIXML_ARCHIVE}"
                        INTERFACE_INCLUDE_DIRECTORIES "${QX_PUGIXML_HEADERS}")

  # Archives: a few functions of each, and nothing that every start would have to load.
  foreach(library zstd crypto)
    string(TOUPPER ${library} upper)
    find_library(QX_${upper}_ARCHIVE NAMES lib${library}.a)
    qx_need(QX_${upper}_ARCHIVE lib${library}.a)
    add_library(qx_${library} STATIC IMPORTED GLOBAL)
    set_target_properties(qx_${library} PROPERTIES IMPORTED_LOCATION "${QX_${upper}_ARCHIVE}")
  endforeach()

  # Shared, so that the system's security updates reach it.
  find_library(QX_SODIUM_LIBRARY NAMES sodium)
  find_path(QX_SODIUM_HEADERS sodium.h)
  qx_need(QX_SODIUM_LIBRARY libsodium)
  qx_need(QX_SODIUM_HEADERS sodium.h)
  add_library(qx_sodium SHARED IMPORTED GLOBAL)
  set_target_properties(qx_sodium PROPERTIES IMPORTED_LOCATION "${QX_SODIUM_LIBRARY}"
                        INTERFACE_INCLUDE_DIRECTORIES "${QX_SODIUM_HEADERS}")

  find_library(QX_LUA_LIBRARY NAMES lua5.4)
  find_path(QX_LUA_HEADERS lua.hpp PATH_SUFFIXES lua5.4)
  qx_need(QX_LUA_LIBRARY liblua5.4)
  qx_need(QX_LUA_HEADERS lua.hpp)
  add_library(qx_lua SHARED IMPORTED GLOBAL)
  set_target_properties(qx_lua PROPERTIES IMPORTED_LOCATION "${QX_LUA_LIBRARY}"
                        INTERFACE_INCLUDE_DIRECTORIES "${QX_LUA_HEADERS}")
endif()

# qx_wx: wxWidgets with its parts core, html and propgrid. Linux takes Debian's libraries, Windows the archive that
# scripts/setup has built.
option(QX_DESKTOP "Build the desktop" ON)
if(QX_DESKTOP)
  add_library(qx_wx INTERFACE)
  # As the Windows archive is built: a wxString does not become a char pointer by itself.
  target_compile_definitions(qx_wx INTERFACE wxNO_UNSAFE_WXSTRING_CONV)
endif()
if(QX_DESKTOP AND WIN32)
  execute_process(COMMAND "${CMAKE_SOURCE_DIR}/scripts/build-wx" --place
                  OUTPUT_VARIABLE qx_wx_place OUTPUT_STRIP_TRAILING_WHITESPACE)
  unset(wxWidgets_DIR CACHE)  # the place of an earlier one
  find_package(wxWidgets CONFIG QUIET PATHS "${qx_wx_place}" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
  qx_need(wxWidgets_FOUND "wxWidgets for Windows (${qx_wx_place})")
  target_link_libraries(qx_wx INTERFACE wx::wxmono)
elseif(QX_DESKTOP)
  find_program(QX_WX_CONFIG NAMES wx-config-3.2 wx-config)
  qx_need(QX_WX_CONFIG wx-config)
  foreach(kind cxxflags libs)
    execute_process(COMMAND "${QX_WX_CONFIG}" --version=3.2 --toolkit=gtk3 --unicode=yes --${kind} html,propgrid,core,base
                    OUTPUT_VARIABLE qx_wx_${kind} OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(qx_wx_${kind} UNIX_COMMAND "${qx_wx_${kind}}")
  endforeach()
  set(qx_wx_headers ${qx_wx_cxxflags})
  list(FILTER qx_wx_headers INCLUDE REGEX "^-I")
  list(TRANSFORM qx_wx_headers REPLACE "^-I" "")
  # The others say what a 64-bit system does anyway, and would keep tests from sharing precompiled headers.
  list(FILTER qx_wx_cxxflags EXCLUDE REGEX "^(-I.*|-D_FILE_OFFSET_BITS=64|-pthread)$")
  target_include_directories(qx_wx SYSTEM INTERFACE ${qx_wx_headers})
  target_compile_options(qx_wx INTERFACE ${qx_wx_cxxflags})
  target_link_libraries(qx_wx INTERFACE ${qx_wx_libs})
endif()

# Windows programs share one C++ runtime, or an exception would not pass from one module to another. Its
# libraries, stripped, stand beside the programs.
if(MINGW)
  file(MAKE_DIRECTORY "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  foreach(library libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" -print-file-name=${library}
                    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    set(copy "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${library}")
    if(NOT EXISTS "${copy}")
      execute_process(COMMAND "${CMAKE_STRIP}" -o "${copy}" "${path}" COMMAND_ERROR_IS_FATAL ANY)
    endif()
    install(FILES "${copy}" DESTINATION "${CMAKE_INSTALL_BINDIR}")
  endforeach()
endif()
