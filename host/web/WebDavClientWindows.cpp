// The WebDAV connection on WinHTTP. Digest is answered here, for WinHTTP's own answer is not to be had on
// every system that this runs on; the schemes of Windows itself are left to WinHTTP.
#include <windows.h>

#include <bcrypt.h>
#include <winhttp.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <thread>
#include <vector>

#include "host/system/Stopping.h"
#include "host/web/HttpAuthentication.h"
#include "host/web/WebDavClient.h"
#include "platform/Texts.h"
#include "platform/WindowsText.h"

namespace qx {
namespace {

struct CloseInternetHandle {
  void operator()(HINTERNET handle) const { WinHttpCloseHandle(handle); }
};
using InternetHandle = std::unique_ptr<void, CloseInternetHandle>;

struct ErrorRow {
  DWORD error;
  const char* text;
};
// The socket's own errors come through on some systems.
constexpr ErrorRow kErrors[] = {
    {WSAECONNREFUSED, "The server cannot be reached"},
    {WSAECONNRESET, "The server broke the connection"},
    {ERROR_WINHTTP_CANNOT_CONNECT, "The server cannot be reached"},
    {ERROR_WINHTTP_NAME_NOT_RESOLVED, "The server's name is not known"},
    {ERROR_WINHTTP_CONNECTION_ERROR, "The server broke the connection"},
    {ERROR_WINHTTP_INVALID_SERVER_RESPONSE, "The server's reply is not HTTP"},
    {ERROR_WINHTTP_SECURE_FAILURE, "The server's certificate is not valid"},
};

[[noreturn]] void RaiseLastError(int timeoutSeconds) {
  const DWORD error = GetLastError();
  if (error == ERROR_WINHTTP_TIMEOUT || error == WSAETIMEDOUT)
    throw Exception(DescribeTimeout(timeoutSeconds));
  for (const ErrorRow& row : kErrors) {
    if (row.error == error) throw Exception(row.text);
  }
  throw Exception(system::ErrorText(error));
}

std::string HashOf(HttpHash kind, std::string_view text) {
  BCRYPT_ALG_HANDLE algorithm = nullptr;
  const wchar_t* name = kind == HttpHash::Md5 ? BCRYPT_MD5_ALGORITHM : BCRYPT_SHA256_ALGORITHM;
  std::array<UCHAR, 32> bytes{};
  const ULONG size = kind == HttpHash::Md5 ? 16 : 32;
  bool isDone = BCryptOpenAlgorithmProvider(&algorithm, name, nullptr, 0) == 0;
  if (isDone) {
    BCRYPT_HASH_HANDLE hash = nullptr;
    auto* data = reinterpret_cast<PUCHAR>(const_cast<char*>(text.data()));
    isDone = BCryptCreateHash(algorithm, &hash, nullptr, 0, nullptr, 0, 0) == 0 &&
             BCryptHashData(hash, data, static_cast<ULONG>(text.size()), 0) == 0 &&
             BCryptFinishHash(hash, bytes.data(), size, 0) == 0;
    if (hash != nullptr) BCryptDestroyHash(hash);
    BCryptCloseAlgorithmProvider(algorithm, 0);
  }
  if (!isDone) throw Exception("The system computes no hash for the server's authentication");
  std::string hex;
  for (ULONG i = 0; i < size; ++i) hex += LowerHex(bytes[i], 2);
  return hex;
}

std::string FreshNonce() {
  std::array<UCHAR, 16> bytes{};
  if (BCryptGenRandom(nullptr, bytes.data(), static_cast<ULONG>(bytes.size()),
                      BCRYPT_USE_SYSTEM_PREFERRED_RNG) != 0) {
    throw Exception("The system gives no random numbers");
  }
  return HashOf(HttpHash::Sha256, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}).substr(0, 32);
}

// A header of the reply, the one at `index` of those of that name (which moves on); false when there is none.
bool ReadHeader(HINTERNET request, DWORD which, DWORD& index, std::string& text) {
  DWORD size = 0;
  DWORD sameIndex = index;
  WinHttpQueryHeaders(request, which, WINHTTP_HEADER_NAME_BY_INDEX, nullptr, &size, &sameIndex);
  if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) return false;
  std::wstring wide(size / sizeof(wchar_t), L'\0');
  if (!WinHttpQueryHeaders(request, which, WINHTTP_HEADER_NAME_BY_INDEX, wide.data(), &size, &index))
    return false;
  wide.resize(size / sizeof(wchar_t));
  text = system::FromWide(wide);
  return true;
}

std::string FirstHeader(HINTERNET request, DWORD which) {
  DWORD index = 0;
  std::string text;
  ReadHeader(request, which, index, text);
  return text;
}

// The strongest first.
constexpr std::array<std::string_view, 4> kSchemes{"negotiate", "ntlm", "digest", "basic"};

// What the server offers, strongest first, without what nobody knows here.
std::vector<HttpChallenge> OfferedChallenges(HINTERNET request) {
  std::vector<HttpChallenge> offered;
  std::string header;
  for (DWORD index = 0; ReadHeader(request, WINHTTP_QUERY_WWW_AUTHENTICATE, index, header);) {
    for (HttpChallenge& challenge : ParseChallenges(header)) offered.push_back(std::move(challenge));
  }
  const auto rank = [](const HttpChallenge& challenge) {
    return static_cast<std::size_t>(std::find(kSchemes.begin(), kSchemes.end(), challenge.scheme) -
                                    kSchemes.begin());
  };
  std::erase_if(offered, [&](const HttpChallenge& challenge) { return rank(challenge) == kSchemes.size(); });
  std::stable_sort(offered.begin(), offered.end(),
                   [&](const HttpChallenge& a, const HttpChallenge& b) { return rank(a) < rank(b); });
  return offered;
}

struct HeaderRow {
  const char* name;
  DWORD which;
};
constexpr HeaderRow kOnlyWhenSent[] = {{"Content-Length", WINHTTP_QUERY_CONTENT_LENGTH},
                                       {"Transfer-Encoding", WINHTTP_QUERY_TRANSFER_ENCODING},
                                       {"Content-Encoding", WINHTTP_QUERY_CONTENT_ENCODING}};

// Whether Windows itself has to answer.
bool IsSystems(const HttpChallenge& challenge) {
  return challenge.scheme == "negotiate" || challenge.scheme == "ntlm";
}

// One at a time uses it; any thread.
class WinHttpConnection {
 public:
  explicit WinHttpConnection(const WebDavServer& server)
      : server_(server),
        session_(WinHttpOpen(L"qxhost", WINHTTP_ACCESS_TYPE_NO_PROXY, nullptr, nullptr, 0)),
        connection_(WinHttpConnect(session_.get(), system::ToWide(HostForUrl(server.host)).c_str(),
                                   static_cast<INTERNET_PORT>(server.port), 0)) {
    if (connection_.get() == nullptr) RaiseLastError(server_.timeoutSeconds);
    const int wait = server_.timeoutSeconds * 1000;
    WinHttpSetTimeouts(session_.get(), wait, wait, wait, wait);
    // Until the first byte of a reply another one counts.
    auto first = static_cast<DWORD>(wait);
    WinHttpSetOption(session_.get(), WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, &first, sizeof first);
  }

  WebDavReply Send(const std::string& method, const std::string& target, std::optional<std::string_view> body,
                   const std::string& ifMatch) {
    const InternetHandle request(Open(method, target));
    if (!ifMatch.empty()) AddHeader(request.get(), "If-Match: " + ifMatch);
    std::string authorization = Authorization(method, target);
    WebDavReply reply = Exchange(request.get(), authorization, body);
    const bool hasName = !server_.userName.empty() || !server_.password.IsEmpty();
    if (reply.status != HTTP_STATUS_DENIED || !hasName) return reply;
    for (const HttpChallenge& challenge : OfferedChallenges(request.get())) {
      // The same answer is given twice only where its nonce got too old: servers count wrong passwords.
      const auto stale = challenge.parameters.find("stale");
      const bool isStale = stale != challenge.parameters.end() && SameText(stale->second, "true");
      if (!authorization.empty() && !isStale) continue;
      known_ = challenge;
      count_ = 0;
      clientNonce_.clear();
      authorization = Authorization(method, target);
      if (!IsSystems(known_) && authorization.empty()) continue;
      const InternetHandle again(Open(method, target));
      if (IsSystems(known_)) LetSystemAnswer(again.get());
      reply = Exchange(again.get(), authorization, body);
      return reply;
    }
    return reply;
  }

 private:
  HINTERNET Open(const std::string& method, const std::string& target) {
    const DWORD flags = WINHTTP_FLAG_ESCAPE_DISABLE | (server_.port == 443 ? WINHTTP_FLAG_SECURE : 0);
    const HINTERNET request =
        WinHttpOpenRequest(connection_.get(), system::ToWide(method).c_str(), system::ToWide(target).c_str(),
                           nullptr, WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, flags);
    if (request == nullptr) RaiseLastError(server_.timeoutSeconds);
    // The schemes of Windows hold for a connection. Else each request has one of its own: the system would
    // keep it open for half a minute after its user has gone.
    DWORD disabled = WINHTTP_DISABLE_REDIRECTS | (IsSystems(known_) ? 0 : WINHTTP_DISABLE_KEEP_ALIVE);
    WinHttpSetOption(request, WINHTTP_OPTION_DISABLE_FEATURE, &disabled, sizeof disabled);
    // The name of the user who is logged on is nobody's business.
    DWORD policy = WINHTTP_AUTOLOGON_SECURITY_LEVEL_HIGH;
    WinHttpSetOption(request, WINHTTP_OPTION_AUTOLOGON_POLICY, &policy, sizeof policy);
    return request;
  }

  // The answer to the challenge that the server is known to make; empty when it made none yet, or one for Windows.
  std::string Authorization(const std::string& method, const std::string& target) {
    if (known_.scheme == "basic") return BasicAuthorization(server_.userName, server_.password.View());
    if (known_.scheme != "digest") return {};
    if (clientNonce_.empty()) clientNonce_ = FreshNonce();
    return DigestAuthorization(
        known_,
        {server_.userName, std::string(server_.password.View()), method, target, clientNonce_, ++count_},
        HashOf);
  }

  void LetSystemAnswer(HINTERNET request) {
    const DWORD scheme = known_.scheme == "ntlm" ? WINHTTP_AUTH_SCHEME_NTLM : WINHTTP_AUTH_SCHEME_NEGOTIATE;
    if (!WinHttpSetCredentials(request, WINHTTP_AUTH_TARGET_SERVER, scheme,
                               system::ToWide(server_.userName).c_str(),
                               system::ToWide(std::string(server_.password.View())).c_str(), nullptr)) {
      RaiseLastError(server_.timeoutSeconds);
    }
  }

  void RequireDone(BOOL done) const {
    if (!done) RaiseLastError(server_.timeoutSeconds);
  }

  void AddHeader(HINTERNET request, const std::string& line) const {
    const std::wstring header = system::ToWide(line);
    RequireDone(WinHttpAddRequestHeaders(request, header.c_str(), static_cast<DWORD>(-1),
                                         WINHTTP_ADDREQ_FLAG_ADD | WINHTTP_ADDREQ_FLAG_REPLACE));
  }

  WebDavReply Exchange(HINTERNET request, const std::string& authorization,
                       std::optional<std::string_view> body) {
    if (!authorization.empty()) AddHeader(request, "Authorization: " + authorization);
    const auto size = static_cast<DWORD>(body ? body->size() : 0);
    RequireDone(WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, nullptr, 0, size, 0));
    for (DWORD sent = 0; sent < size;) {
      DWORD written = 0;
      const DWORD part = std::min<DWORD>(size - sent, 64 << 10);
      RequireDone(WinHttpWriteData(request, body->data() + sent, part, &written));
      sent += written;
    }
    RequireDone(WinHttpReceiveResponse(request, nullptr));
    return ReadReply(request);
  }

  WebDavReply ReadReply(HINTERNET request) const {
    WebDavReply reply;
    reply.status = std::stoi("0" + FirstHeader(request, WINHTTP_QUERY_STATUS_CODE));
    reply.reason = FirstHeader(request, WINHTTP_QUERY_STATUS_TEXT);
    TakeReplyHeader(reply, "Location", FirstHeader(request, WINHTTP_QUERY_LOCATION));
    TakeReplyHeader(reply, "ETag", FirstHeader(request, WINHTTP_QUERY_ETAG));
    for (const auto& [name, which] : kOnlyWhenSent) {
      const std::string text = FirstHeader(request, which);
      if (!text.empty()) TakeReplyHeader(reply, name, text);
    }
    std::vector<char> buffer(64 << 10);
    for (DWORD read = 1; read > 0;) {
      RequireDone(WinHttpReadData(request, buffer.data(), static_cast<DWORD>(buffer.size()), &read));
      if (reply.body.size() + read > kLongestReply) throw Exception("The server's file is too long");
      reply.body.append(buffer.data(), read);
    }
    // A connection that breaks looks like the end of the body.
    const std::string promised = FirstHeader(request, WINHTTP_QUERY_CONTENT_LENGTH);
    if (!promised.empty() && promised != std::to_string(reply.body.size())) {
      throw Exception("The server broke the connection after " + std::to_string(reply.body.size()) + " of " +
                      promised + " bytes");
    }
    return reply;
  }

  WebDavServer server_;
  InternetHandle session_;
  InternetHandle connection_;
  HttpChallenge known_;  // the one that was answered last; its scheme is empty before the first
  unsigned count_ = 0;
  std::string clientNonce_;
};

// Sends each request on a thread of its own, and leaves that thread behind, with all that it uses, when a stop or
// the end of its time comes first: WinHTTP's calls wait where nobody can wake them.
class LeavableConnection final : public WebDavConnection {
 public:
  explicit LeavableConnection(const WebDavServer& server)
      : server_(server), connection_(std::make_shared<WinHttpConnection>(server)) {}

  WebDavReply Send(const std::string& method, const std::string& target, std::optional<std::string_view> body,
                   const std::string& ifMatch) override {
    if (connection_ == nullptr) connection_ = std::make_shared<WinHttpConnection>(server_);
    const auto exchange = std::make_shared<Exchange>();
    exchange->connection = connection_;
    exchange->method = method;
    exchange->target = target;
    if (body) exchange->body = std::string(*body);
    exchange->ifMatch = ifMatch;
    std::thread([exchange] { exchange->Run(); }).detach();
    const HANDLE waited[] = {exchange->done.Get(), reinterpret_cast<HANDLE>(StopHandle())};
    const DWORD count = waited[1] == nullptr ? 1 : 2;
    const DWORD limit = static_cast<DWORD>(server_.limitSeconds) * 1000;
    const DWORD woken = WaitForMultipleObjects(count, waited, FALSE, limit);
    if (woken != WAIT_OBJECT_0) {
      connection_.reset();  // that thread may use it still
      throw Exception(woken == WAIT_TIMEOUT ? DescribeLimit(server_.limitSeconds) : kTransferStopped);
    }
    if (exchange->failure) std::rethrow_exception(exchange->failure);
    return std::move(exchange->reply);
  }

 private:
  struct Exchange {
    std::shared_ptr<WinHttpConnection> connection;
    std::string method;
    std::string target;
    std::optional<std::string> body;
    std::string ifMatch;
    WebDavReply reply;
    std::exception_ptr failure;
    system::Handle done{CreateEventW(nullptr, TRUE, FALSE, nullptr)};

    void Run() {
      try {
        reply = connection->Send(method, target, body, ifMatch);
      } catch (...) {
        failure = std::current_exception();
      }
      SetEvent(done.Get());
    }
  };

  WebDavServer server_;
  std::shared_ptr<WinHttpConnection> connection_;
};

}  // namespace

std::unique_ptr<WebDavConnection> OpenWebDavConnection(const WebDavServer& server) {
  RequirePort(server.port);
  return std::make_unique<LeavableConnection>(server);
}

}  // namespace qx
