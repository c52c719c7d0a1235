#include "PlatformLinux/Wifi/SecurityElement.h"

#include <array>
#include <string_view>

#include "PlatformLinux/Netlink/ByteReader.h"

namespace lanternfold {

namespace {

constexpr std::uint16_t knownVersion = 1;
constexpr std::size_t keyIdentifierSize = 16;
constexpr unsigned managementRequiredBit = 1U << 6U;
constexpr unsigned managementCapableBit = 1U << 7U;

/// Reads the fields of one element in their order. A field that is not there at all keeps its
/// default, and so does every later one.
class SecurityFields {
 public:
  explicit SecurityFields(std::span<const std::uint8_t> body) : reader_(body) {}

  [[nodiscard]] bool atEnd() const { return reader_.empty(); }

  [[nodiscard]] std::expected<std::uint16_t, DecodeError> number(std::string_view subject) {
    const auto bytes = reader_.read<std::array<std::uint8_t, 2>>();
    if (!bytes) return std::unexpected(DecodeError{DecodeProblem::truncated, subject});
    return static_cast<std::uint16_t>((*bytes)[0] | (*bytes)[1] << 8U);
  }

  [[nodiscard]] std::expected<SuiteSelector, DecodeError> suite(std::string_view subject) {
    const auto bytes = reader_.read<std::array<std::uint8_t, 4>>();
    if (!bytes) return std::unexpected(DecodeError{DecodeProblem::truncated, subject});
    return static_cast<SuiteSelector>((*bytes)[0]) << 24U |
           static_cast<SuiteSelector>((*bytes)[1]) << 16U |
           static_cast<SuiteSelector>((*bytes)[2]) << 8U | (*bytes)[3];
  }

  [[nodiscard]] std::optional<DecodeError> readSuites(std::string_view subject,
                                                      std::vector<SuiteSelector>& suites) {
    if (atEnd()) return std::nullopt;
    const auto count = number(subject);
    if (!count) return count.error();
    if (*count == 0) return DecodeError{DecodeProblem::badValue, subject};
    suites.clear();
    for (unsigned each = 0; each < *count; ++each) {
      const auto selector = suite(subject);
      if (!selector) return selector.error();
      suites.push_back(*selector);
    }
    return std::nullopt;
  }

  [[nodiscard]] std::optional<DecodeError> skipKeyIdentifiers() {
    if (atEnd()) return std::nullopt;
    const auto count = number("PMKID count");
    if (!count) return count.error();
    if (!reader_.take(*count * keyIdentifierSize)) {
      return DecodeError{DecodeProblem::truncated, "PMKID list"};
    }
    return std::nullopt;
  }

 private:
  ByteReader reader_;
};

// What both elements have: the version, the ciphers, the ways to the keys.
std::optional<DecodeError> readSuites(SecurityFields& fields, SecurityElement& element) {
  const auto version = fields.number("version");
  if (!version) return version.error();
  if (*version != knownVersion) return DecodeError{DecodeProblem::badValue, "version"};
  if (fields.atEnd()) return std::nullopt;
  const auto group = fields.suite("group cipher");
  if (!group) return group.error();
  element.groupCipher = *group;
  if (const auto error = fields.readSuites("pairwise ciphers", element.pairwiseCiphers)) {
    return error;
  }
  return fields.readSuites("authentications", element.authentications);
}

std::optional<DecodeError> readManagement(SecurityFields& fields, SecurityElement& element) {
  if (fields.atEnd()) return std::nullopt;
  const auto capabilities = fields.number("capabilities");
  if (!capabilities) return capabilities.error();
  element.requiresManagementProtection = (*capabilities & managementRequiredBit) != 0;
  element.offersManagementProtection = (*capabilities & managementCapableBit) != 0;
  if (const auto error = fields.skipKeyIdentifiers()) return error;
  if (fields.atEnd()) return std::nullopt;
  const auto cipher = fields.suite("group management cipher");
  if (!cipher) return cipher.error();
  element.managementCipher = *cipher;
  return std::nullopt;
}

}  // namespace

std::expected<SecurityElement, DecodeError> decodeRsnElement(std::span<const std::uint8_t> body) {
  SecurityElement element{.groupCipher = rsnSuite(4),
                          .pairwiseCiphers = {rsnSuite(4)},
                          .authentications = {rsnSuite(1)},
                          .managementCipher = std::nullopt};
  SecurityFields fields(body);
  auto error = readSuites(fields, element);
  if (!error) error = readManagement(fields, element);
  if (error) return std::unexpected(*error);
  return element;
}

std::expected<SecurityElement, DecodeError> decodeWpaElement(std::span<const std::uint8_t> body) {
  SecurityElement element{.groupCipher = wpaSuite(2),
                          .pairwiseCiphers = {wpaSuite(2)},
                          .authentications = {wpaSuite(1)},
                          .managementCipher = std::nullopt};
  SecurityFields fields(body);
  // Capabilities may follow; those of the first WPA say nothing of management frames.
  if (const auto error = readSuites(fields, element)) return std::unexpected(*error);
  return element;
}

}  // namespace lanternfold
