#include "PlatformLinux/Url/CurlExchange.h"

#include <cerrno>
#include <optional>
#include <sys/socket.h>
#include <utility>

#include "PlatformLinux/System/FileDescriptor.h"
#include "PlatformLinux/Url/CurlErrors.h"

namespace lanternfold {
namespace {

UrlAnswer failure(UrlErrorCode code) { return {.data = std::nullopt, .error = code}; }

long ipResolveOf(UrlAddressFamily family) {
  switch (family) {
    case UrlAddressFamily::ipv4:
      return CURL_IPRESOLVE_V4;
    case UrlAddressFamily::ipv6:
      return CURL_IPRESOLVE_V6;
    case UrlAddressFamily::any:
      break;
  }
  return CURL_IPRESOLVE_WHATEVER;
}

bool kernelLacks(UrlAddressFamily family) {
  if (family == UrlAddressFamily::any) return false;
  const int domain = family == UrlAddressFamily::ipv6 ? AF_INET6 : AF_INET;
  const FileDescriptor probe(::socket(domain, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  return !probe.isOpen() && errno == EAFNOSUPPORT;
}

/// The status codes that send a client elsewhere; others may carry a "Location:" as well.
bool isRedirect(long status) {
  switch (status) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
      return true;
    default:
      return false;
  }
}

/// Where the answer sends its client, as an absolute URL.
std::optional<std::string> redirectTarget(CURL* easy) {
  long status = 0;
  const char* target = nullptr;
  curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
  curl_easy_getinfo(easy, CURLINFO_REDIRECT_URL, &target);
  return isRedirect(status) && target != nullptr ? std::optional<std::string>(target)
                                                 : std::nullopt;
}

}  // namespace

CurlExchange::CurlExchange(Surroundings surroundings, UrlRequest request, Limits limits, End end)
    : surroundings_(surroundings),
      request_(std::move(request)),
      limits_(limits),
      end_(std::move(end)),
      silence_(surroundings.context),
      whole_(surroundings.context) {}

CurlExchange::~CurlExchange() {
  if (easy_) surroundings_.transfers.remove(easy_.get());
}

void CurlExchange::startClocks() {
  armSilence();
  whole_.expires_after(limits_.whole);
  whole_.async_wait([weak = weak_from_this()](const asio::error_code& error) {
    const auto exchange = weak.lock();
    if (!error && exchange) exchange->timeOut();
  });
}

void CurlExchange::armSilence() {
  silence_.expires_after(limits_.silence);
  silence_.async_wait([weak = weak_from_this()](const asio::error_code& error) {
    const auto exchange = weak.lock();
    if (error || !exchange) return;
    // Bytes that came in the moment in which this was about to run have set the timer anew.
    if (exchange->silence_.expiry() <= std::chrono::steady_clock::now()) exchange->timeOut();
  });
}

void CurlExchange::send() { ask(request_.url, UrlCredentials::kept); }

void CurlExchange::ask(std::string_view text, UrlCredentials credentials) {
  const auto url = parseHttpUrl(text, credentials);
  if (!url) return finish(failure(url.error()));
  const std::string proxy = proxyFor(surroundings_.settings.proxies, *url);
  usesProxy_ = !proxy.empty();
  const bool isOfOtherFamily = url->literalFamily != UrlAddressFamily::any &&
                               request_.addressFamily != UrlAddressFamily::any &&
                               url->literalFamily != request_.addressFamily;
  if (isOfOtherFamily && !usesProxy_) return finish(failure(UrlErrorCode::cannotFindHost));
  // A handle of its own for each hop: none of the last one's credentials and figures are left.
  easy_.reset(curl_easy_init());
  if (!easy_) return finish(failure(UrlErrorCode::networkConnectionLost));
  answer_ = BoundedAnswer();
  hasTriedToConnect_ = false;
  hasBegunLookup_ = false;
  hasEnded_ = false;
  socketError_ = 0;
  setOptions(easy_.get(), *url, proxy);
  setTrust(easy_.get());
  setBoundsAndCallbacks(easy_.get());
  surroundings_.transfers.add(easy_.get(), *this);
}

void CurlExchange::setOptions(CURL* easy, const HttpUrl& url, const std::string& proxy) {
  curl_easy_setopt(easy, CURLOPT_URL, url.text.c_str());
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  curl_easy_setopt(easy, CURLOPT_USERAGENT, surroundings_.settings.userAgent.c_str());
  curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "gzip, deflate");
  // Both are set even when they are empty, or libcurl looks into the environment itself.
  curl_easy_setopt(easy, CURLOPT_PROXY, proxy.c_str());
  curl_easy_setopt(easy, CURLOPT_NOPROXY, "");
  curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  const auto family = usesProxy_ ? UrlAddressFamily::any : request_.addressFamily;
  curl_easy_setopt(easy, CURLOPT_IPRESOLVE, ipResolveOf(family));
  // Nothing is kept for another request: no name, no connection, no TLS session.
  curl_easy_setopt(easy, CURLOPT_DNS_CACHE_TIMEOUT, 0L);
  curl_easy_setopt(easy, CURLOPT_FRESH_CONNECT, 1L);
  curl_easy_setopt(easy, CURLOPT_FORBID_REUSE, 1L);
  curl_easy_setopt(easy, CURLOPT_SSL_SESSIONID_CACHE, 0L);
  curl_easy_setopt(easy, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  // Whoever stops waiting for a name does not wait for the thread that looks it up either.
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
}

void CurlExchange::setTrust(CURL* easy) const {
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  const auto& file = surroundings_.settings.certificateAuthoritiesFile;
  if (!file) return;
  curl_easy_setopt(easy, CURLOPT_CAINFO, file->c_str());
  curl_easy_setopt(easy, CURLOPT_PROXY_CAINFO, file->c_str());
  // The system's store would be trusted besides.
  curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
  curl_easy_setopt(easy, CURLOPT_PROXY_CAPATH, nullptr);
}

void CurlExchange::setBoundsAndCallbacks(CURL* easy) {
  curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE,
                   static_cast<curl_off_t>(BoundedAnswer::longestSentBodyBytes));
  // Of several addresses the later ones are tried within the limit too.
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits_.silence.count()));
  curl_easy_setopt(easy, CURLOPT_RESOLVER_START_FUNCTION, &CurlExchange::noteLookup);
  curl_easy_setopt(easy, CURLOPT_RESOLVER_START_DATA, this);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &CurlExchange::openSocket);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &CurlExchange::takeHeader);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &CurlExchange::takeBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &CurlExchange::takeProgress);
  curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
  curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
}

int CurlExchange::noteLookup(void* /*resolver*/, void* /*reserved*/, void* self) {
  static_cast<CurlExchange*>(self)->hasBegunLookup_ = true;
  return 0;
}

curl_socket_t CurlExchange::openSocket(void* self, curlsocktype /*purpose*/,
                                       curl_sockaddr* address) {
  auto& exchange = *static_cast<CurlExchange*>(self);
  exchange.hasTriedToConnect_ = true;
  const curl_socket_t socket = exchange.surroundings_.transfers.openSocket(*address);
  exchange.socketError_ = socket == CURL_SOCKET_BAD ? errno : 0;
  return socket;
}

std::size_t CurlExchange::takeHeader(const char* /*bytes*/, std::size_t size, std::size_t count,
                                     void* self) {
  return static_cast<CurlExchange*>(self)->answer_.takeHeader(size * count) ? size * count : 0;
}

std::size_t CurlExchange::takeBody(const char* bytes, std::size_t size, std::size_t count,
                                   void* self) {
  const std::string_view piece(bytes, size * count);
  return static_cast<CurlExchange*>(self)->answer_.takeBody(piece) ? piece.size() : 0;
}

int CurlExchange::takeProgress(void* self, curl_off_t, curl_off_t bytesSoFar, curl_off_t,
                               curl_off_t) {
  auto& answer = static_cast<CurlExchange*>(self)->answer_;
  return answer.acceptsSentBody(static_cast<std::size_t>(bytesSoFar)) ? 0 : 1;
}

bool CurlExchange::looksNameUp() const {
  if (!hasBegunLookup_ || hasEnded_) return false;
  curl_off_t lookupMicroseconds = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_NAMELOOKUP_TIME_T, &lookupMicroseconds);
  return lookupMicroseconds == 0;
}

void CurlExchange::bytesCame() { armSilence(); }

void CurlExchange::transferEnded(CURLcode code) {
  hasEnded_ = true;
  if (answer_.isRefused()) return finish(failure(UrlErrorCode::dataLengthExceedsMaximum));
  if (code != CURLE_OK) return finish(failure(errorFrom(code)));
  if (const auto target = redirectTarget(easy_.get())) return follow(*target);
  finish({.data = answer_.releaseBody(), .error = {}});
}

void CurlExchange::follow(std::string_view target) {
  if (++redirects_ > mostUrlRedirects) return finish(failure(UrlErrorCode::tooManyRedirects));
  ask(target, UrlCredentials::dropped);
}

void CurlExchange::timeOut() { finish(failure(errorFrom(CURLE_OPERATION_TIMEDOUT))); }

UrlErrorCode CurlExchange::errorFrom(CURLcode code) const {
  CurlFailure failure{.code = code, .usesProxy = usesProxy_};
  // It has been waiting for its turn: nothing has been learnt of the host.
  if (!easy_) return UrlErrorCode::networkConnectionLost;
  long osError = 0;
  curl_off_t connectMicroseconds = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_OS_ERRNO, &osError);
  curl_easy_getinfo(easy_.get(), CURLINFO_CONNECT_TIME_T, &connectMicroseconds);
  curl_easy_getinfo(easy_.get(), CURLINFO_SSL_VERIFYRESULT, &failure.verifyResult);
  curl_easy_getinfo(easy_.get(), CURLINFO_HTTP_CONNECTCODE, &failure.proxyConnectStatus);
  // libcurl does not look at the error of a socket that it has not made itself.
  failure.osError = socketError_ != 0 ? socketError_ : static_cast<int>(osError);
  failure.hasTriedToConnect = hasTriedToConnect_;
  failure.isConnected = connectMicroseconds > 0;
  failure.lacksAddressFamily = !usesProxy_ && kernelLacks(request_.addressFamily);
  return urlErrorFrom(failure);
}

/// Whoever is called may destroy the exchange.
void CurlExchange::finish(UrlAnswer answer) {
  if (!end_) return;
  if (easy_) surroundings_.transfers.remove(easy_.get());
  silence_.cancel();
  whole_.cancel();
  std::exchange(end_, nullptr)(std::move(answer));
}

}  // namespace lanternfold
