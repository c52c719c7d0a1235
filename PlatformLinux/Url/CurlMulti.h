// libcurl's transfers on the event loop: its sockets and its timer are waited for there.
//
// Made by: `CurlExchanges`. Used by: the exchanges, which add themselves. Internal to this folder:
// it brings in libcurl.
#pragma once

#include <curl/curl.h>
#include <map>
#include <memory>
#include <set>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

namespace lanternfold {

struct CurlEasyCloser {
  void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
using CurlEasyHandle = std::unique_ptr<CURL, CurlEasyCloser>;

/// Whoever sent a transfer. Called on the loop's thread, never inside of a call of libcurl.
class CurlTransferOwner {
 public:
  /// Bytes came over the wire, of whatever layer; a name that was looked up does not count.
  virtual void bytesCame() = 0;
  /// The transfer has been removed; its handle can still be asked what happened.
  virtual void transferEnded(CURLcode code) = 0;

 protected:
  ~CurlTransferOwner() = default;
};

/// Everything but the constructor on the loop's thread.
class CurlMulti : public std::enable_shared_from_this<CurlMulti> {
 public:
  explicit CurlMulti(asio::io_context& context);
  /// After every transfer has been removed.
  ~CurlMulti();
  CurlMulti(const CurlMulti&) = delete;
  CurlMulti& operator=(const CurlMulti&) = delete;

  /// `easy` and `owner` stay until the transfer has ended or was removed.
  void add(CURL* easy, CurlTransferOwner& owner);
  /// Ends the transfer without a word; does nothing for one that has ended.
  void remove(CURL* easy);
  /// For a transfer that asks for one; negative when there is none.
  [[nodiscard]] curl_socket_t openSocket(const curl_sockaddr& address);

 private:
  /// Holds the library's own initialisation, which it counts itself.
  struct Library {
    Library() { curl_global_init(CURL_GLOBAL_DEFAULT); }
    ~Library() { curl_global_cleanup(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
  };
  struct MultiCloser {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };
  struct Watch;

  static int closeSocket(void* self, curl_socket_t socket);
  static int changeWatch(CURL* easy, curl_socket_t socket, int wanted, void* self, void* watch);
  static int changeTimer(CURLM* multi, long delayMilliseconds, void* self);

  void watch(CURL* easy, curl_socket_t socket, int wanted);
  void waitFor(const std::shared_ptr<Watch>& watch);
  void socketIsReady(const Watch& watch, int event);
  void act(curl_socket_t socket, int event);
  void unwatch(CURL* easy, curl_socket_t socket);
  void goOn(CURL* easy);
  void setTimer(long delayMilliseconds);

  const Library library_;
  asio::io_context& context_;
  asio::steady_timer timer_;
  std::map<CURL*, CurlTransferOwner*> owners_;
  /// Opened for transfers; libcurl also has sockets that tell of names that were looked up.
  std::set<curl_socket_t> networkSockets_;
  std::map<curl_socket_t, std::shared_ptr<Watch>> watches_;
  /// Last, because closing it closes sockets.
  const std::unique_ptr<CURLM, MultiCloser> multi_;
};

}  // namespace lanternfold
