# The program: everything around the pages.
add_executable(qxhost-desktop WIN32
  ActionsPanel.cpp
  App.cpp
  Art.cpp
  CataloguePanel.cpp
  DiffDialog.cpp
  HelpPanel.cpp
  LineList.cpp
  LogPanel.cpp
  MainWindow.cpp
  MainWindowBuild.cpp
  MainWindowEdit.cpp
  MainWindowFile.cpp
  Probe.cpp
  PropertiesPanel.cpp
  PropertyView.cpp
  VariablesDialog.cpp
  WindowSettings.cpp)
target_link_libraries(qxhost-desktop PRIVATE qx_desktop_core qx_desktop_views qx_json)
target_compile_definitions(qxhost-desktop PRIVATE QXHOST_VERSION="${PROJECT_VERSION}" QXHOST_DEFAULT_PACKAGE="vsdotnet")
qx_precompile(qxhost-desktop qx_wx_pch)
set_target_properties(qxhost-desktop PROPERTIES BUILD_RPATH "$ORIGIN" INSTALL_RPATH "${QX_PROGRAM_RPATH}")
install(TARGETS qxhost-desktop RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT DESKTOP)

qx_tests(desktop_window_tests SOURCES PropertyView.cpp PropertyView_test.cpp LINKS qx_runtime)
