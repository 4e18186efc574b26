# The WebDAV client, its temporary folder, and the reader of test results. Included by CMakeLists.txt, which names the system.
set(QX_WEBDAV_SOURCES
  HttpAuthentication.cpp
  TemporaryFolder.cpp
  TestResults.cpp
  WebDavClient.cpp
  WebDavClient${system}.cpp)
target_sources(qx_runtime PRIVATE ${QX_WEBDAV_SOURCES})
if(WIN32)
  target_link_libraries(qx_runtime PRIVATE winhttp bcrypt)
else()
  # Its headers only: the library itself is loaded at run time.
  find_path(QX_CURL_HEADERS curl/curl.h)
  qx_need(QX_CURL_HEADERS curl/curl.h)
endif()

# A web server of the tests' own, which does what no real one would.
add_library(qx_web_test STATIC HttpTestServer.cpp TestSockets${system}.cpp)
target_link_libraries(qx_web_test PUBLIC qx_options Threads::Threads PRIVATE $<$<BOOL:${WIN32}>:ws2_32>)

if(NOT WIN32)
  set(system_tests TemporaryFolderPosix_test.cpp WebDavClientPosix_test.cpp)
endif()
qx_tests(webdav_tests
  SOURCES
    HttpAuthentication_test.cpp
    TemporaryFolder_test.cpp
    TestResults_test.cpp
    WebDavClient_test.cpp
    ${system_tests}
  LINKS qx_runtime qx_web_test
  LABELS threads)

qx_fuzzer(HttpAuthentication_fuzz SOURCE HttpAuthentication_fuzz.cpp LINKS qx_runtime)
qx_fuzzer(TestResults_fuzz SOURCE TestResults_fuzz.cpp LINKS qx_runtime)
