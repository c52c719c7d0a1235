#include "EchoService/EchoConnection.h"

#include <algorithm>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/write.hpp>

namespace lanternfold {

EchoConnection::EchoConnection(asio::ip::tcp::socket socket, IpAddress peer,
                               std::shared_ptr<const EchoConnectionSettings> settings,
                               Closed closed)
    : socket_(std::move(socket)),
      timer_(socket_.get_executor()),
      peer_(peer),
      settings_(std::move(settings)),
      closed_(std::move(closed)) {}

void EchoConnection::serve() {
  setDeadline(settings_->limits.headerTime);
  read();
}

void EchoConnection::refuse() {
  answerLast(errorResponse(503, "too many connections at once; try again in a moment"));
}

void EchoConnection::close() {
  state_ = State::closed;
  timer_.cancel();
  std::error_code ignored;
  static_cast<void>(socket_.close(ignored));
}

/// Looks for a request in what has been received, and reads on when there is none.
void EchoConnection::awaitRequest() {
  const auto parsed = parseHttpRequest(received_);
  if (!parsed) {
    answerLast(errorResponse(parsed.error().status, parsed.error().sentence));
  } else if (*parsed) {
    answer(**parsed);
  } else {
    if (received_.empty() && !requestBegun_) {
      setDeadline(settings_->limits.idleTime);
    } else if (!requestBegun_) {
      requestBegun_ = true;
      setDeadline(settings_->limits.headerTime);
    }
    read();
  }
}

void EchoConnection::read() {
  state_ = State::reading;
  // Never nothing: of that many bytes the parser needs no more.
  const std::size_t room = std::min(chunk_.size(), longestHttpRequestBytes - received_.size());
  socket_.async_read_some(
      asio::buffer(chunk_.data(), room),
      [self = shared_from_this()](const std::error_code& error, std::size_t size) {
        if (self->state_ != State::reading) return;
        if (error) {
          self->end();
        } else {
          self->take(size);
        }
      });
}

void EchoConnection::take(std::size_t size) {
  received_.append(chunk_.data(), size);
  awaitRequest();
}

void EchoConnection::answer(const ParsedHttpRequest& parsed) {
  ++requests_;
  const HttpRequest& request = parsed.request;
  const HttpResponse response = settings_->responder.respond(request, peer_);
  // What follows may be the body of a method that the service does not have.
  const bool goesOn = request.keepAlive && response.status != 405 &&
                      requests_ < settings_->limits.requestsPerConnection;
  const AfterResponse after = goesOn ? AfterResponse::keepAlive : AfterResponse::close;
  const HttpBody body = request.method == "HEAD" ? HttpBody::leftOut : HttpBody::sent;
  received_.erase(0, parsed.consumedBytes);
  requestBegun_ = false;
  write(encodeHttpResponse(response, body, after, settings_->clock.now()), after);
}

void EchoConnection::answerLast(const HttpResponse& response) {
  write(encodeHttpResponse(response, HttpBody::sent, AfterResponse::close, settings_->clock.now()),
        AfterResponse::close);
}

void EchoConnection::write(std::string bytes, AfterResponse after) {
  state_ = State::writing;
  outgoing_ = std::move(bytes);
  setDeadline(settings_->limits.writeTime);
  asio::async_write(socket_, asio::buffer(outgoing_),
                    [self = shared_from_this(), after](const std::error_code& error, std::size_t) {
                      if (self->state_ != State::writing) return;
                      if (error) {
                        self->end();
                      } else {
                        self->written(after);
                      }
                    });
}

void EchoConnection::written(AfterResponse after) {
  if (after == AfterResponse::close) {
    linger();
  } else {
    awaitRequest();
  }
}

/// A socket that is closed while something unread has arrived is reset, and the peer may lose the
/// last answer with it: so this side is ended, and what still comes is dropped.
void EchoConnection::linger() {
  state_ = State::lingering;
  std::error_code error;
  static_cast<void>(socket_.shutdown(asio::ip::tcp::socket::shutdown_send, error));
  if (error) {
    end();
    return;
  }
  setDeadline(settings_->limits.lingerTime);
  drain();
}

void EchoConnection::drain() {
  socket_.async_read_some(
      asio::buffer(chunk_),
      [self = shared_from_this()](const std::error_code& error, std::size_t size) {
        if (self->state_ != State::lingering) return;
        self->drainedBytes_ += size;
        if (error || self->drainedBytes_ > self->settings_->limits.lingerBytes) {
          self->end();
        } else {
          self->drain();
        }
      });
}

void EchoConnection::setDeadline(std::chrono::milliseconds time) {
  const std::uint64_t number = ++deadline_;
  timer_.expires_after(time);
  timer_.async_wait([self = shared_from_this(), number](const std::error_code& error) {
    if (!error && number == self->deadline_) self->deadlinePassed();
  });
}

void EchoConnection::deadlinePassed() {
  if (state_ == State::closed) return;
  if (state_ != State::reading || received_.empty()) {
    end();
    return;
  }
  // The read under way ends without a result; its handler finds the connection writing.
  std::error_code ignored;
  static_cast<void>(socket_.cancel(ignored));
  answerLast(errorResponse(408, "the request has not come in time"));
}

void EchoConnection::end() {
  close();
  if (const Closed closed = std::exchange(closed_, nullptr)) closed(shared_from_this());
}

}  // namespace lanternfold
