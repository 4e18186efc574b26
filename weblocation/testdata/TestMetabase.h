// A small metabase behind a COM server of the tests' own, found under the moniker "IIS:". In a test's process
// through LocalServer; for programs as a library that registers itself (TestMetabaseWindows.cpp).
//
//   IIS://HOST/w3svc/1/ROOT/Site       IIsWebVirtualDir; its Path from QX_TEST_METABASE_SITE, else D:\Web\Site
//   IIS://HOST/w3svc/1/ROOT/Site/Sub   IIsWebDirectory
//   IIS://HOST/w3svc/1/ROOT/Wrong      IIsWebServer, which is no directory
//   IIS://HOST/w3svc/1/ROOT            the same
//   IIS://HOST/w3svc/2/ROOT/Site       IIsWebVirtualDir; its Path is E:\Second
#pragma once

namespace qx::test_metabase {

// While one is alive, this process serves the moniker.
class LocalServer {
 public:
  LocalServer();
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;
  bool IsRegistered() const { return cookie_ != 0; }

 private:
  unsigned long cookie_ = 0;
};

}  // namespace qx::test_metabase
