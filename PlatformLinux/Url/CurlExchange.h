// One request on the event loop: its redirects, its time limits, and what comes of it.
//
// Made by: `CurlExchanges`. Internal to this folder: it brings in libcurl.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "Platform/UrlSession.h"
#include "PlatformLinux/Url/BoundedAnswer.h"
#include "PlatformLinux/Url/CurlMulti.h"
#include "PlatformLinux/Url/CurlUrlSettings.h"
#include "PlatformLinux/Url/HttpUrl.h"

namespace lanternfold {

/// Everything on the loop's thread. Redirects are followed here and not by libcurl, so that each
/// is judged, goes through its own proxy, and takes nothing along.
class CurlExchange final : public CurlTransferOwner,
                           public std::enable_shared_from_this<CurlExchange> {
 public:
  struct Limits {
    std::chrono::milliseconds silence;
    std::chrono::milliseconds whole;
  };
  /// What it needs of the sessions, which outlive it.
  struct Surroundings {
    asio::io_context& context;
    CurlMulti& transfers;
    const CurlUrlSettings& settings;
  };
  using End = std::move_only_function<void(UrlAnswer)>;

  CurlExchange(Surroundings surroundings, UrlRequest request, Limits limits, End end);
  /// Stops without calling `end`.
  ~CurlExchange();
  CurlExchange(const CurlExchange&) = delete;
  CurlExchange& operator=(const CurlExchange&) = delete;

  /// The time limits count from here; `end` is called once, not before `send` for any other reason.
  void startClocks();
  void send();

  /// Stopping it now leaves a thread behind that looks a name up, which nobody can stop.
  [[nodiscard]] bool looksNameUp() const;

  void bytesCame() override;
  void transferEnded(CURLcode code) override;

 private:
  void ask(std::string_view url, UrlCredentials credentials);
  void setOptions(CURL* easy, const HttpUrl& url, const std::string& proxy);
  void setTrust(CURL* easy) const;
  void setBoundsAndCallbacks(CURL* easy);
  void follow(std::string_view target);
  void armSilence();
  void timeOut();
  void finish(UrlAnswer answer);
  [[nodiscard]] UrlErrorCode errorFrom(CURLcode code) const;

  static int noteLookup(void* resolver, void* reserved, void* self);
  static curl_socket_t openSocket(void* self, curlsocktype purpose, curl_sockaddr* address);
  static std::size_t takeHeader(const char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t takeBody(const char* bytes, std::size_t size, std::size_t count, void* self);
  static int takeProgress(void* self, curl_off_t, curl_off_t bytesSoFar, curl_off_t, curl_off_t);

  const Surroundings surroundings_;
  const UrlRequest request_;
  const Limits limits_;
  End end_;  ///< none when it was called
  asio::steady_timer silence_;
  asio::steady_timer whole_;
  CurlEasyHandle easy_;  ///< of the hop that runs
  BoundedAnswer answer_;
  bool usesProxy_ = false;          ///< the hop
  bool hasTriedToConnect_ = false;  ///< the hop
  bool hasBegunLookup_ = false;     ///< the hop
  bool hasEnded_ = false;           ///< the hop, by itself
  int socketError_ = 0;             ///< the hop's: why the last socket could not be made
  int redirects_ = 0;
};

}  // namespace lanternfold
