#include "Support/AsciiHostName.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>

#include <unicode/bytestream.h>
#include <unicode/idna.h>
#include <unicode/stringpiece.h>

namespace lanternfold {
namespace {

/// Far beyond what a name may be long, so that converting costs nothing to speak of.
constexpr std::size_t longestName = 4096;

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text,
                             [](char each) { return static_cast<unsigned char>(each) < 0x80; });
}

}  // namespace

std::optional<std::string> asciiHostName(std::string_view name) {
  if (isAscii(name)) return std::string(name);
  if (name.size() > longestName) return std::nullopt;
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<const icu::IDNA> rules(icu::IDNA::createUTS46Instance(
      UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII, status));
  if (U_FAILURE(status) != 0) return std::nullopt;
  std::string ascii;
  icu::StringByteSink<std::string> sink(&ascii);
  icu::IDNAInfo faults;
  rules->nameToASCII_UTF8(icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size())),
                          sink, faults, status);
  if (U_FAILURE(status) != 0 || faults.hasErrors() != 0) return std::nullopt;
  return ascii;
}

}  // namespace lanternfold
