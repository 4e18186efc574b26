# The views: property pages as widgets, and the driver that uses them like a user.
if(NOT TARGET qx_wx)
  return()
endif()
if(WIN32)
  set(qx_view_system Windows)
else()
  set(qx_view_system Posix)
endif()
add_library(qx_desktop_views STATIC
  Accessible${qx_view_system}.cpp
  Binding.cpp
  ButtonEdit.cpp
  ControlViews.cpp
  DriveMode.cpp
  GridView.cpp
  PageLayout.cpp
  PagePictures.cpp
  PagePictures${qx_view_system}.cpp
  PageRows.cpp
  PagesDialog.cpp
  PageView.cpp
  Pictures.cpp
  NativeText${qx_view_system}.cpp
  TextField.cpp
  ViewDriver.cpp
  WidgetState.cpp
  WxUser.cpp)
target_link_libraries(qx_desktop_views PUBLIC qx_contract qxruntime qx_json qx_wx)
# The runtime's headers show pugixml's types; its functions are the runtime's.
target_include_directories(qx_desktop_views SYSTEM PUBLIC $<TARGET_PROPERTY:qx_pugixml,INTERFACE_INCLUDE_DIRECTORIES>)
qx_precompile(qx_desktop_views qx_wx_pch)
if(NOT WIN32)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(QX_GTK REQUIRED IMPORTED_TARGET gtk+-3.0)
  add_library(qx_gtk INTERFACE)
  target_include_directories(qx_gtk SYSTEM INTERFACE ${QX_GTK_INCLUDE_DIRS})
  target_link_libraries(qx_gtk INTERFACE ${QX_GTK_LIBRARIES})
  target_link_libraries(qx_desktop_views PRIVATE qx_gtk)
endif()

# For tests: the pages' widgets driven by commands.
add_executable(qx_view_driver ViewDriver_main.cpp)
target_link_libraries(qx_view_driver PRIVATE qx_desktop_views)
set_target_properties(qx_view_driver PROPERTIES BUILD_RPATH "$ORIGIN")

qx_tests(desktop_views_tests SOURCES PageRows_test.cpp Views_test.cpp WxUser_test.cpp
         LINKS qx_desktop_views
         ENVIRONMENT LSAN_OPTIONS=suppressions=${CMAKE_CURRENT_SOURCE_DIR}/testdata/leaks.supp:print_suppressions=0)
if(NOT WIN32)
  target_compile_definitions(desktop_views_tests PRIVATE QX_NEEDS_DISPLAY)
endif()
