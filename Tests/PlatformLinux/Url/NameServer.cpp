#include "Tests/PlatformLinux/Url/NameServer.h"

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <utility>

#include <gtest/gtest.h>

namespace lanternfold::test {
namespace {

constexpr std::size_t headerBytes = 12;
constexpr unsigned char typeA = 1;
constexpr unsigned char typeAAAA = 28;

/// The name that is asked for, and where its question ends.
struct Question {
  std::string name;
  unsigned char type = 0;
  std::size_t end = 0;
};

Question questionIn(std::string_view message) {
  Question question;
  std::size_t place = headerBytes;
  while (const auto length = static_cast<unsigned char>(message.at(place))) {
    if (!question.name.empty()) question.name += '.';
    question.name += message.substr(place + 1, length);
    place += length + 1U;
  }
  question.type = static_cast<unsigned char>(message.at(place + 2));
  question.end = place + 5;
  return question;
}

/// The records of the type: a pointer to the name, type, class, a minute to live, and the address.
std::vector<std::string> recordsFor(const Question& question,
                                    const std::vector<std::string>& addresses) {
  const int family = question.type == typeA ? AF_INET : AF_INET6;
  const std::size_t length = question.type == typeA ? 4 : 16;
  std::vector<std::string> records;
  std::array<char, 16> bytes{};
  for (const std::string& address : addresses) {
    if (inet_pton(family, address.c_str(), bytes.data()) != 1) continue;
    records.push_back(std::string("\xc0\x0c\0", 3) + static_cast<char>(question.type) +
                      std::string("\0\1\0\0\0\x3c\0", 7) + static_cast<char>(length) +
                      std::string(bytes.data(), length));
  }
  return records;
}

std::string answerTo(std::string_view message, const NameServer::Names& names) {
  const Question question = questionIn(message);
  const auto found = names.find(question.name);
  std::vector<std::string> records;
  if (found != names.end() && (question.type == typeA || question.type == typeAAAA)) {
    records = recordsFor(question, found->second);
  }
  // An answer with recursion available: NOERROR or NXDOMAIN.
  std::string answer(message.substr(0, question.end));
  answer[2] = static_cast<char>(0x81);
  answer[3] = static_cast<char>(found == names.end() ? 0x83 : 0x80);
  answer[7] = static_cast<char>(records.size());
  answer[11] = 0;
  for (const std::string& record : records) answer += record;
  return answer;
}

}  // namespace

NameServer::NameServer(std::optional<Names> names)
    : names_(std::move(names)),
      socket_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)),
      ending_(eventfd(0, EFD_CLOEXEC)) {
  sockaddr_in name{};
  name.sin_family = AF_INET;
  name.sin_port = htons(53);
  name.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(bind(socket_.get(), reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
  thread_ = std::thread([this] { serve(); });
}

NameServer::~NameServer() {
  eventfd_write(ending_.get(), 1);
  thread_.join();
}

void NameServer::serve() {
  std::array<pollfd, 2> waits{pollfd{socket_.get(), POLLIN, 0}, pollfd{ending_.get(), POLLIN, 0}};
  while (poll(waits.data(), waits.size(), -1) > 0 && waits[1].revents == 0) {
    std::array<char, 512> message{};
    sockaddr_in client{};
    socklen_t length = sizeof client;
    const ssize_t count = recvfrom(socket_.get(), message.data(), message.size(), 0,
                                   reinterpret_cast<sockaddr*>(&client), &length);
    if (count < static_cast<ssize_t>(headerBytes)) continue;
    ++questions_;
    if (!names_) continue;
    const std::string answer = answerTo({message.data(), static_cast<std::size_t>(count)}, *names_);
    sendto(socket_.get(), answer.data(), answer.size(), 0,
           reinterpret_cast<const sockaddr*>(&client), length);
  }
}

}  // namespace lanternfold::test
