#include "PlatformLinux/Connection/AddressLookup.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <netdb.h>
#include <netinet/in.h>
#include <optional>
#include <sys/socket.h>
#include <thread>
#include <utility>

#include <asio/error.hpp>

#include "PlatformLinux/System/ThreadTraits.h"
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

AddressLookup::Result lookUp(const std::string& name) {
  // One entry an address, instead of one for each kind of socket.
  const addrinfo wanted{.ai_family = AF_UNSPEC, .ai_socktype = SOCK_STREAM};
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

}  // namespace

void AddressLookup::start(const std::string& host, Completion completion) {
  {
    const std::lock_guard lock(mutex_);
    completion_ = std::move(completion);
    if (isCancelled_) return tell(cancelled());
  }
  const std::optional<std::string> name = asciiHostName(host);
  // The C library would cut the name at a zero byte.
  if (!name || name->empty() || name->contains('\0')) {
    return finish(std::unexpected(make_error_code(asio::error::host_not_found)));
  }
  // Scopes are the C library's: asio drops one that there is not.
  if (!name->contains('%')) {
    std::error_code isName;
    if (const auto address = asio::ip::make_address(*name, isName); !isName) {
      return finish(Addresses{address});
    }
  }
  try {
    std::thread([self = shared_from_this(), name = *name] {
      nameCurrentThread("address-lookup");
      self->finish(lookUp(name));
    }).detach();
  } catch (const std::system_error& error) {
    finish(std::unexpected(error.code()));  // there are too many threads
  }
}

void AddressLookup::cancel() {
  const std::lock_guard lock(mutex_);
  isCancelled_ = true;
  tell(cancelled());
}

void AddressLookup::finish(Result result) {
  const std::lock_guard lock(mutex_);
  tell(std::move(result));
}

void AddressLookup::tell(Result result) {
  if (completion_) std::exchange(completion_, nullptr)(std::move(result));
}

}  // namespace lanternfold
