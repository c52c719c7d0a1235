#include "PlatformLinux/Connection/AddressLookup.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <netdb.h>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <utility>

#include <asio/error.hpp>

#include "Support/AsciiHostName.h"

namespace lanternfold {
namespace {

std::error_code lookupError(int status) {
  switch (status) {
    case EAI_NONAME:
    case EAI_NODATA:
      return asio::error::host_not_found;
    case EAI_AGAIN:
      return asio::error::host_not_found_try_again;
    case EAI_SYSTEM:
      return {errno, std::generic_category()};
    case EAI_MEMORY:
      return std::make_error_code(std::errc::not_enough_memory);
    default:
      return asio::error::no_recovery;
  }
}

/// None for a family that is not asked for.
std::optional<asio::ip::address> addressOf(const addrinfo& entry) {
  if (entry.ai_family == AF_INET) {
    const auto& address = *reinterpret_cast<const sockaddr_in*>(entry.ai_addr);
    return asio::ip::address_v4(ntohl(address.sin_addr.s_addr));
  }
  if (entry.ai_family != AF_INET6) return std::nullopt;
  const auto& address = *reinterpret_cast<const sockaddr_in6*>(entry.ai_addr);
  asio::ip::address_v6::bytes_type bytes;
  std::copy_n(std::begin(address.sin6_addr.s6_addr), bytes.size(), bytes.begin());
  return asio::ip::address_v6(bytes, address.sin6_scope_id);
}

AddressLookup::Result translated(const std::string& name, int flags) {
  // One entry an address, instead of one for each kind of socket.
  const addrinfo wanted{.ai_flags = flags, .ai_family = AF_UNSPEC, .ai_socktype = SOCK_STREAM};
  addrinfo* first = nullptr;
  if (const int status = ::getaddrinfo(name.c_str(), nullptr, &wanted, &first); status != 0) {
    return std::unexpected(lookupError(status));
  }
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> entries(first, ::freeaddrinfo);
  AddressLookup::Addresses addresses;
  for (const addrinfo* entry = first; entry != nullptr; entry = entry->ai_next) {
    if (const auto address = addressOf(*entry)) addresses.push_back(*address);
  }
  return addresses;
}

AddressLookup::Result cancelled() {
  return std::unexpected(std::make_error_code(std::errc::operation_canceled));
}

/// Without asking anybody; none for a name that somebody may know.
std::optional<AddressLookup::Result> knownAddresses(const std::optional<std::string>& name) {
  // The C library would cut the name at a zero byte.
  if (!name || name->empty() || name->contains('\0')) {
    return std::unexpected(make_error_code(asio::error::host_not_found));
  }
  // Scopes are the C library's: asio drops one that there is not. No name has one.
  if (name->contains('%')) return translated(*name, AI_NUMERICHOST);
  std::error_code isName;
  const auto address = asio::ip::make_address(*name, isName);
  if (isName) return std::nullopt;
  return AddressLookup::Addresses{address};
}

}  // namespace

AddressLookup::AddressLookup(std::shared_ptr<LookupThreads> threads, Question question)
    : threads_(std::move(threads)), question_(std::move(question)) {}

void AddressLookup::start(const std::string& host, Completion completion) {
  const std::optional<std::string> name = asciiHostName(host);
  const std::lock_guard lock(mutex_);
  completion_ = std::move(completion);
  if (isCancelled_) return tell(cancelled());
  if (auto known = knownAddresses(name)) return tell(*std::move(known));
  ask(*name);
}

void AddressLookup::cancel() {
  std::optional<LookupThreads::Ticket> ticket;
  {
    const std::lock_guard lock(mutex_);
    isCancelled_ = true;
    tell(cancelled());
    ticket = std::exchange(ticket_, std::nullopt);
  }
  if (ticket) threads_->withdraw(*ticket);
}

void AddressLookup::ask(std::string name) {
  const auto ticket = threads_->run(
      [self = shared_from_this(), name = std::move(name)] { self->finish(self->question_(name)); });
  if (!ticket) return tell(std::unexpected(ticket.error()));
  ticket_ = *ticket;
}

AddressLookup::Result AddressLookup::askSystem(const std::string& name) {
  return translated(name, 0);
}

void AddressLookup::finish(Result result) {
  const std::lock_guard lock(mutex_);
  tell(std::move(result));
}

void AddressLookup::tell(Result result) {
  if (completion_) std::exchange(completion_, nullptr)(std::move(result));
}

}  // namespace lanternfold
