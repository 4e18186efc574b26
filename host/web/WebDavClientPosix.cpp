// The WebDAV connection on libcurl. The library is loaded when the first connection is made: it brings thirty
// others with it, and most runs of the host speak to no server.
#include <curl/curl.h>
#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "host/system/Stopping.h"
#include "host/web/WebDavClient.h"

// The header's macros check the types of calls to the functions themselves; here they are called through pointers.
#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace qx {
namespace {

// What is used of the library, by the names it exports.
struct Curl {
  decltype(&curl_global_init_mem) globalInit = nullptr;
  decltype(&curl_easy_init) init = nullptr;
  decltype(&curl_easy_cleanup) cleanup = nullptr;
  decltype(&curl_easy_reset) reset = nullptr;
  decltype(&curl_easy_setopt) set = nullptr;
  decltype(&curl_multi_init) multiInit = nullptr;
  decltype(&curl_multi_cleanup) multiCleanup = nullptr;
  decltype(&curl_multi_add_handle) add = nullptr;
  decltype(&curl_multi_remove_handle) remove = nullptr;
  decltype(&curl_multi_perform) perform = nullptr;
  decltype(&curl_multi_wait) wait = nullptr;
  decltype(&curl_multi_info_read) readInfo = nullptr;
  decltype(&curl_easy_getinfo) getInfo = nullptr;
  decltype(&curl_easy_strerror) errorText = nullptr;
};

template <class Function>
void Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  if (function == nullptr) throw Exception(std::string("libcurl has no function ") + name);
}

// The library copies passwords and what is made of them, and leaves them where they were.
void FreeWiped(void* memory) {
  if (memory != nullptr) explicit_bzero(memory, malloc_usable_size(memory));
  std::free(memory);
}

void* ReallocateWiped(void* memory, std::size_t size) {
  if (memory == nullptr) return std::malloc(size);
  const std::size_t old = malloc_usable_size(memory);
  if (size <= old && size > 0) return memory;
  void* const larger = std::malloc(size);
  if (larger == nullptr) return nullptr;
  std::memcpy(larger, memory, std::min(old, size));
  FreeWiped(memory);
  return larger;
}

Curl LoadCurl() {
  void* library = nullptr;
  for (const char* name : {"libcurl.so.4", "libcurl-gnutls.so.4"}) {
    library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    if (library != nullptr) break;
  }
  if (library == nullptr) throw Exception("libcurl.so.4 cannot be loaded: install libcurl4");
  Curl curl;
  Find(library, "curl_global_init_mem", curl.globalInit);
  Find(library, "curl_easy_init", curl.init);
  Find(library, "curl_easy_cleanup", curl.cleanup);
  Find(library, "curl_easy_reset", curl.reset);
  Find(library, "curl_easy_setopt", curl.set);
  Find(library, "curl_multi_init", curl.multiInit);
  Find(library, "curl_multi_cleanup", curl.multiCleanup);
  Find(library, "curl_multi_add_handle", curl.add);
  Find(library, "curl_multi_remove_handle", curl.remove);
  Find(library, "curl_multi_perform", curl.perform);
  Find(library, "curl_multi_wait", curl.wait);
  Find(library, "curl_multi_info_read", curl.readInfo);
  Find(library, "curl_easy_getinfo", curl.getInfo);
  Find(library, "curl_easy_strerror", curl.errorText);
  if (curl.globalInit(CURL_GLOBAL_DEFAULT, std::malloc, FreeWiped, ReallocateWiped, strdup, std::calloc) !=
      CURLE_OK)
    throw Exception("libcurl cannot be started");
  return curl;
}

const Curl& TheCurl() {
  static const Curl curl = LoadCurl();
  return curl;
}

// One reply while it comes in. With authentication several come, one after the other; the last one counts.
struct Incoming {
  WebDavReply reply;
  bool isTooLong = false;
};

// How often what a library waits for in a thread of its own (a name) is looked at.
constexpr int kLookAgain = 100;

std::string_view WithoutLineEnd(std::string_view line) {
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
  return line;
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::size_t TakeHeader(char* data, std::size_t size, std::size_t count, void* target) {
  WebDavReply& reply = static_cast<Incoming*>(target)->reply;
  const std::string_view line = WithoutLineEnd({data, size * count});
  if (line.starts_with("HTTP/")) {  // "HTTP/1.1 404 Not Found"
    reply = {};
    const std::string_view words = Trimmed(line.substr(std::min(line.find(' '), line.size())));
    reply.reason = Trimmed(words.substr(std::min<std::size_t>(3, words.size())));
  } else if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
    TakeReplyHeader(reply, line.substr(0, colon), Trimmed(line.substr(colon + 1)));
  }
  return size * count;
}

std::size_t TakeBody(char* data, std::size_t size, std::size_t count, void* target) {
  Incoming& incoming = *static_cast<Incoming*>(target);
  incoming.isTooLong = incoming.reply.body.size() + size * count > kLongestReply;
  if (incoming.isTooLong) return 0;
  incoming.reply.body.append(data, size * count);
  return size * count;
}

// The part of a request's body that is still to be sent.
struct Outgoing {
  std::string_view body;
  std::size_t sent = 0;
};

std::size_t GiveBody(char* buffer, std::size_t size, std::size_t count, void* source) {
  Outgoing& outgoing = *static_cast<Outgoing*>(source);
  const std::size_t part = std::min(size * count, outgoing.body.size() - outgoing.sent);
  std::memcpy(buffer, outgoing.body.data() + outgoing.sent, part);
  outgoing.sent += part;
  return part;
}

// The server wants to know who asks after the body went out: it is sent again from its begin.
int Rewind(void* source, curl_off_t offset, int origin) {
  Outgoing& outgoing = *static_cast<Outgoing*>(source);
  if (origin != SEEK_SET || offset < 0 || static_cast<std::size_t>(offset) > outgoing.body.size()) {
    return CURL_SEEKFUNC_FAIL;
  }
  outgoing.sent = static_cast<std::size_t>(offset);
  return CURL_SEEKFUNC_OK;
}

class CurlConnection final : public WebDavConnection {
 public:
  explicit CurlConnection(const WebDavServer& server)
      : server_(server),
        root_((server.port == 443 ? "https://" : "http://") + HostForUrl(server.host) + ":" +
              std::to_string(server.port)),
        curl_(TheCurl()),
        multi_(curl_.multiInit()),
        handle_(curl_.init()) {
    if (multi_ == nullptr || handle_ == nullptr) throw Exception("libcurl gives no connection");
  }
  ~CurlConnection() override {
    curl_.cleanup(handle_);
    curl_.multiCleanup(multi_);
  }
  CurlConnection(const CurlConnection&) = delete;
  CurlConnection& operator=(const CurlConnection&) = delete;

  WebDavReply Send(const std::string& method, const std::string& target, std::optional<std::string_view> body,
                   const std::string& ifMatch) override {
    Incoming incoming;
    Outgoing outgoing{body.value_or(std::string_view()), 0};
    error_[0] = '\0';
    curl_.reset(handle_);  // open connections and what is known of the server's authentication stay
    SetCommon();
    curl_.set(handle_, CURLOPT_URL, (root_ + target).c_str());
    curl_.set(handle_, CURLOPT_HEADERDATA, &incoming);
    curl_.set(handle_, CURLOPT_WRITEDATA, &incoming);
    if (body) {
      curl_.set(handle_, CURLOPT_UPLOAD, 1L);
      curl_.set(handle_, CURLOPT_READDATA, &outgoing);
      curl_.set(handle_, CURLOPT_SEEKDATA, &outgoing);
      curl_.set(handle_, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(body->size()));
    }
    curl_.set(handle_, CURLOPT_CUSTOMREQUEST, method.c_str());
    std::string line = "If-Match: " + ifMatch;
    curl_slist condition{line.data(), nullptr};
    if (!ifMatch.empty()) curl_.set(handle_, CURLOPT_HTTPHEADER, &condition);
    const CURLcode result = Perform();
    if (incoming.isTooLong) throw Exception("The server's file is too long");
    if (result != CURLE_OK) throw Exception(Describe(result));
    long status = 0;
    curl_.getInfo(handle_, CURLINFO_RESPONSE_CODE, &status);
    incoming.reply.status = static_cast<int>(status);
    return std::move(incoming.reply);
  }

 private:
  void SetCommon() {
    curl_.set(handle_, CURLOPT_ERRORBUFFER, error_);
    curl_.set(handle_, CURLOPT_NOSIGNAL, 1L);
    curl_.set(handle_, CURLOPT_FOLLOWLOCATION, 0L);
    curl_.set(handle_, CURLOPT_PROXY, "");
    curl_.set(handle_, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    curl_.set(handle_, CURLOPT_PATH_AS_IS, 1L);
    curl_.set(handle_, CURLOPT_HEADERFUNCTION, TakeHeader);
    curl_.set(handle_, CURLOPT_WRITEFUNCTION, TakeBody);
    curl_.set(handle_, CURLOPT_READFUNCTION, GiveBody);
    curl_.set(handle_, CURLOPT_SEEKFUNCTION, Rewind);
    curl_.set(handle_, CURLOPT_CONNECTTIMEOUT, static_cast<long>(server_.timeoutSeconds));
    curl_.set(handle_, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_.set(handle_, CURLOPT_LOW_SPEED_TIME, static_cast<long>(server_.timeoutSeconds));
    if (server_.userName.empty() && server_.password.IsEmpty()) return;
    curl_.set(handle_, CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_ANY));
    curl_.set(handle_, CURLOPT_USERNAME, server_.userName.c_str());
    curl_.set(handle_, CURLOPT_PASSWORD, server_.password.Text());
  }

  // Until the transfer is over; a stop and the end of its time break it off at once.
  CURLcode Perform() {
    curl_.add(multi_, handle_);
    const auto remove = [this](CURL* handle) { curl_.remove(multi_, handle); };
    const std::unique_ptr<CURL, decltype(remove)> added(handle_, remove);
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(server_.limitSeconds);
    for (int running = 1; running > 0;) {
      if (curl_.perform(multi_, &running) != CURLM_OK) throw Exception("libcurl gives up");
      if (running == 0) break;
      curl_waitfd stop{static_cast<int>(StopHandle()), CURL_WAIT_POLLIN, 0};
      curl_.wait(multi_, &stop, stop.fd < 0 ? 0 : 1, kLookAgain, nullptr);
      if (StopIsAsked()) throw Exception(kTransferStopped);
      if (std::chrono::steady_clock::now() >= end) throw Exception(DescribeLimit(server_.limitSeconds));
    }
    int left = 0;
    const CURLMsg* message = curl_.readInfo(multi_, &left);
    return message == nullptr ? CURLE_OK : message->data.result;
  }

  std::string Describe(CURLcode result) const {
    if (result == CURLE_OPERATION_TIMEDOUT) return DescribeTimeout(server_.timeoutSeconds);
    return error_[0] != '\0' ? error_ : curl_.errorText(result);
  }

  WebDavServer server_;
  std::string root_;
  const Curl& curl_;
  CURLM* multi_;
  CURL* handle_;
  char error_[CURL_ERROR_SIZE] = {};
};

}  // namespace

std::unique_ptr<WebDavConnection> OpenWebDavConnection(const WebDavServer& server) {
  RequirePort(server.port);
  return std::make_unique<CurlConnection>(server);
}

}  // namespace qx
