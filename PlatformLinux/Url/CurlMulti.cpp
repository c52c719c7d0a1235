#include "PlatformLinux/Url/CurlMulti.h"

#include <chrono>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include <asio/posix/stream_descriptor.hpp>
#include <asio/post.hpp>

#include "Support/FatalError.h"

namespace lanternfold {

/// One socket that libcurl wants to hear of. The descriptor stays libcurl's.
struct CurlMulti::Watch {
  Watch(CurlMulti& multi, CURL* transfer, curl_socket_t watched)
      : owner(multi), easy(transfer), socket(watched), descriptor(multi.context_) {
    asio::error_code error;
    // One that cannot be watched is ended by the time limits.
    static_cast<void>(descriptor.assign(watched, error));
  }
  ~Watch() { release(); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  void release() {
    if (descriptor.is_open()) descriptor.release();
  }

  CurlMulti& owner;
  CURL* const easy;
  const curl_socket_t socket;
  asio::posix::stream_descriptor descriptor;
  int wanted = CURL_POLL_NONE;
  bool waitsToRead = false;
  bool waitsToWrite = false;
};

CurlMulti::CurlMulti(asio::io_context& context)
    : context_(context), timer_(context), multi_(curl_multi_init()) {
  if (!multi_) fatalError("there is no memory for URL transfers");
  CURLM* multi = multi_.get();
  curl_multi_setopt(multi, CURLMOPT_SOCKETFUNCTION, &CurlMulti::changeWatch);
  curl_multi_setopt(multi, CURLMOPT_SOCKETDATA, this);
  curl_multi_setopt(multi, CURLMOPT_TIMERFUNCTION, &CurlMulti::changeTimer);
  curl_multi_setopt(multi, CURLMOPT_TIMERDATA, this);
}

CurlMulti::~CurlMulti() {
  if (!owners_.empty()) fatalError("URL transfers were destroyed while they ran");
}

void CurlMulti::add(CURL* easy, CurlTransferOwner& owner) {
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &CurlMulti::closeSocket);
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
  owners_.emplace(easy, &owner);
  curl_multi_add_handle(multi_.get(), easy);
}

void CurlMulti::remove(CURL* easy) {
  if (owners_.erase(easy) > 0) curl_multi_remove_handle(multi_.get(), easy);
}

/// libcurl's own way leaves the descriptor to programs that are started later.
curl_socket_t CurlMulti::openSocket(const curl_sockaddr& address) {
  const int socket =
      ::socket(address.family, address.socktype | SOCK_CLOEXEC | SOCK_NONBLOCK, address.protocol);
  if (socket < 0) return CURL_SOCKET_BAD;
  networkSockets_.insert(socket);
  return socket;
}

int CurlMulti::closeSocket(void* self, curl_socket_t socket) {
  static_cast<CurlMulti*>(self)->networkSockets_.erase(socket);
  return ::close(socket);
}

int CurlMulti::changeWatch(CURL* easy, curl_socket_t socket, int wanted, void* self,
                           void* /*watch*/) {
  auto& multi = *static_cast<CurlMulti*>(self);
  if (wanted == CURL_POLL_REMOVE) {
    multi.unwatch(easy, socket);
  } else {
    multi.watch(easy, socket, wanted);
  }
  return 0;
}

void CurlMulti::unwatch(CURL* easy, curl_socket_t socket) {
  if (const auto found = watches_.find(socket); found != watches_.end()) {
    // At once, not when the handler that runs lets go of the watch: by then another socket may have
    // the number, and would not be heard of.
    found->second->release();
    watches_.erase(found);
  }
  asio::post(context_, [weak = weak_from_this(), easy] {
    if (const auto multi = weak.lock()) multi->goOn(easy);
  });
}

/// libcurl 7.88 gives up the first of a host's addresses and does not begin with the next one until
/// it is called again, for which it sets no timer. To be paused and continued has it called.
void CurlMulti::goOn(CURL* easy) {
  if (!owners_.contains(easy)) return;
  curl_easy_pause(easy, CURLPAUSE_SEND);
  curl_easy_pause(easy, CURLPAUSE_CONT);
}

int CurlMulti::changeTimer(CURLM* /*multi*/, long delayMilliseconds, void* self) {
  static_cast<CurlMulti*>(self)->setTimer(delayMilliseconds);
  return 0;
}

void CurlMulti::watch(CURL* easy, curl_socket_t socket, int wanted) {
  auto& watch = watches_[socket];
  if (!watch) watch = std::make_shared<Watch>(*this, easy, socket);
  watch->wanted = wanted;
  waitFor(watch);
}

void CurlMulti::waitFor(const std::shared_ptr<Watch>& watch) {
  // A handler that was about to run is run although its watch has gone: hence the weak pointers.
  const auto arm = [&watch](bool Watch::* waits, auto kind, int event) {
    if (std::exchange((*watch).*waits, true)) return;
    watch->descriptor.async_wait(
        kind, [weak = std::weak_ptr(watch), waits, event](const asio::error_code& error) {
          const auto ready = weak.lock();
          if (error || !ready) return;
          (*ready).*waits = false;
          ready->owner.socketIsReady(*ready, event);
        });
  };
  using Descriptor = asio::posix::stream_descriptor;
  if ((watch->wanted & CURL_POLL_IN) != 0) {
    arm(&Watch::waitsToRead, Descriptor::wait_read, CURL_CSELECT_IN);
  }
  if ((watch->wanted & CURL_POLL_OUT) != 0) {
    arm(&Watch::waitsToWrite, Descriptor::wait_write, CURL_CSELECT_OUT);
  }
}

void CurlMulti::socketIsReady(const Watch& watch, int event) {
  const int wantedForEvent = event == CURL_CSELECT_IN ? CURL_POLL_IN : CURL_POLL_OUT;
  if ((watch.wanted & wantedForEvent) == 0) return;
  if (event == CURL_CSELECT_IN && networkSockets_.contains(watch.socket)) {
    if (const auto owner = owners_.find(watch.easy); owner != owners_.end()) {
      owner->second->bytesCame();
    }
  }
  const curl_socket_t socket = watch.socket;
  act(socket, event);
  // The socket may have been closed, or closed and opened anew, meanwhile.
  if (const auto found = watches_.find(socket); found != watches_.end()) waitFor(found->second);
}

void CurlMulti::act(curl_socket_t socket, int event) {
  int running = 0;
  curl_multi_socket_action(multi_.get(), socket, event, &running);
  int waiting = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &waiting)) {
    if (message->msg != CURLMSG_DONE) continue;
    // The message goes with the transfer.
    CURL* const easy = message->easy_handle;
    const CURLcode code = message->data.result;
    const auto found = owners_.find(easy);
    if (found == owners_.end()) continue;
    CurlTransferOwner& owner = *found->second;
    remove(easy);
    owner.transferEnded(code);
  }
}

void CurlMulti::setTimer(long delayMilliseconds) {
  if (delayMilliseconds < 0) {
    timer_.cancel();
    return;
  }
  timer_.expires_after(std::chrono::milliseconds(delayMilliseconds));
  timer_.async_wait([weak = weak_from_this()](const asio::error_code& error) {
    const auto multi = weak.lock();
    if (!error && multi) multi->act(CURL_SOCKET_TIMEOUT, 0);
  });
}

}  // namespace lanternfold
