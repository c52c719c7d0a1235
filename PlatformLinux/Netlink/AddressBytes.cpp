#include "PlatformLinux/Netlink/AddressBytes.h"

#include <sys/socket.h>

#include "PlatformLinux/Netlink/ByteReader.h"

namespace lanternfold {

namespace {

template <typename Bytes>
std::expected<SocketAddress, DecodeError> exactly(std::span<const std::uint8_t> bytes,
                                                  std::string_view subject) {
  if (bytes.size() != sizeof(Bytes)) {
    return std::unexpected(DecodeError{DecodeProblem::wrongSize, subject});
  }
  return SocketAddress(ByteReader(bytes).read<Bytes>().value());
}

}  // namespace

std::expected<SocketAddress, DecodeError> socketAddressOf(std::uint16_t family,
                                                          std::span<const std::uint8_t> bytes,
                                                          std::string_view subject) {
  switch (family) {
    case AF_INET:
      return exactly<IPv4Bytes>(bytes, subject);
    case AF_INET6:
      return exactly<IPv6Bytes>(bytes, subject);
    default:
      return SocketAddress(OtherAddress{});
  }
}

}  // namespace lanternfold
