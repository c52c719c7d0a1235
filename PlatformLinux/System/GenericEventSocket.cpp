#include "PlatformLinux/System/GenericEventSocket.h"

#include <algorithm>
#include <utility>

#include <linux/genetlink.h>
#include <linux/netlink.h>

#include "PlatformLinux/System/GenericFamily.h"

namespace lanternfold {

namespace {

/// The group of the reports about families; it alone has a number that never changes.
constexpr std::uint32_t familiesGroup = GENL_ID_CTRL;

}  // namespace

std::expected<GenericEventSocket, NetworkKernelError> GenericEventSocket::open(
    std::string familyName, std::vector<std::string> groupNames) {
  auto events = NetlinkEventSocket::openGeneric();
  if (!events) return std::unexpected(events.error());
  GenericEventSocket socket(*std::move(events),
                            GenericFamilyWatch(std::move(familyName), std::move(groupNames)));
  // Before the family is asked for, so that none comes unnoticed.
  if (!socket.socket_.join(familiesGroup)) return std::unexpected(NetworkKernelError::refused);
  if (const auto asked = socket.findFamily(); !asked) return std::unexpected(asked.error());
  return socket;
}

GenericEventSocket::GenericEventSocket(NetlinkEventSocket socket, GenericFamilyWatch watch)
    : socket_(std::move(socket)), watch_(std::move(watch)) {}

std::expected<void, NetworkKernelError> GenericEventSocket::findFamily() {
  auto questions = NetlinkSocket::open(NETLINK_GENERIC);
  if (!questions) return std::unexpected(questions.error());
  const auto family = findGenericFamily(*questions, watch_.familyName());
  if (!family) return std::unexpected(family.error());
  if (*family && !join(watch_.found(**family))) return std::unexpected(NetworkKernelError::refused);
  return {};
}

bool GenericEventSocket::join(const std::vector<std::uint32_t>& groups) {
  return std::ranges::all_of(groups, [this](std::uint32_t group) { return socket_.join(group); });
}

std::expected<NetlinkEventOutcome, NetworkKernelError> GenericEventSocket::drain(
    const std::function<void(const NetlinkMessage&)>& handler) {
  bool mayHaveMissed = false;
  const auto outcome = socket_.drain([&](const NetlinkMessage& message) {
    const auto verdict = watch_.take(message);
    if (verdict.event == GenericEvent::foreign) return;
    if (verdict.event == GenericEvent::ofFamily) return handler(message);
    mayHaveMissed = true;
    // A family that went again meanwhile cannot be joined, and says so next.
    static_cast<void>(join(verdict.groups));
  });
  if (!outcome) return outcome;
  // Among what was lost there may be the coming of the family.
  if (*outcome == NetlinkEventOutcome::overflowed) static_cast<void>(findFamily());
  return mayHaveMissed ? NetlinkEventOutcome::overflowed : *outcome;
}

}  // namespace lanternfold
