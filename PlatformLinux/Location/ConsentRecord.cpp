#include "PlatformLinux/Location/ConsentRecord.h"

#include <utility>

namespace lanternfold {
namespace {

constexpr const char* nameOfUsersFile = "location-consent";
constexpr const char* nameOfPortalsFile = "portal-location-consent";

std::string laterVersionSentence(const std::filesystem::path& file) {
  return "the consent in \"" + file.string() +
         "\" was written by a later version of this program; decide with that version, or remove "
         "the file";
}

}  // namespace

ConsentPlace consentPlaceIn(const DataDirectory& directory, ConsentKeeper keeper) {
  const char* fileName = keeper == ConsentKeeper::user ? nameOfUsersFile : nameOfPortalsFile;
  const auto& location = directory.location();
  return {.file = location ? *location / fileName : std::filesystem::path(),
          .checkFolder = [&directory] { return directory.checkIfThere(); },
          .makeFolder = [&directory]() -> std::expected<void, std::string> {
            if (auto made = directory.folder(); !made) return std::unexpected(made.error());
            return {};
          }};
}

ConsentDecision ConsentRecord::decision() const {
  return read().value_or(ConsentDecision::notDetermined);
}

std::expected<void, ConsentRecordError> ConsentRecord::record(ConsentDecision decision) {
  if (auto made = place_.makeFolder(); !made) {
    return std::unexpected(ConsentRecordError{.sentence = made.error(), .error = {}});
  }
  // A look first: it keeps a damaged file aside, which the new one is about to replace.
  if (const auto known = read(); !known && known.error() == ConsentTextError::laterVersion) {
    return std::unexpected(
        ConsentRecordError{.sentence = laterVersionSentence(place_.file), .error = {}});
  }
  const auto replaced = files_.replaceFile(place_.file, encodeConsent(decision));
  if (!replaced) {
    return std::unexpected(ConsentRecordError{.sentence = {}, .error = replaced.error()});
  }
  return {};
}

/// A file that is not there is a decision not made; one that cannot be read is none either, which
/// the log is told.
std::expected<ConsentDecision, ConsentTextError> ConsentRecord::read() const {
  if (const auto safe = place_.checkFolder(); !safe) {
    say("the consent to show Wi-Fi names cannot be read: " + safe.error());
    return ConsentDecision::notDetermined;
  }
  const auto contents = files_.readFile(place_.file, longestConsentText);
  if (!contents && contents.error() != std::errc::file_too_large) {
    const bool isThere = contents.error() != std::errc::no_such_file_or_directory;
    say(isThere ? "the consent in \"" + place_.file.string() + "\" cannot be read: " +
                      contents.error().message() + "; Wi-Fi names are not shown until it can"
                : std::string());
    return ConsentDecision::notDetermined;
  }
  const auto decision =
      contents ? decodeConsent(contents->bytes) : std::unexpected(ConsentTextError::damaged);
  if (decision) {
    say({});
  } else if (decision.error() == ConsentTextError::laterVersion) {
    say(laterVersionSentence(place_.file) + "; Wi-Fi names are not shown");
  } else {
    say(damageLine());
  }
  return decision;
}

std::string ConsentRecord::damageLine() const {
  const std::string line =
      "the consent in \"" + place_.file.string() + "\" is damaged and counts as not determined; ";
  const auto kept = files_.keepAside(place_.file);
  if (!kept && kept.error() == std::errc::file_exists) {
    return line + "it cannot be kept aside, since too many damaged ones are: remove some";
  }
  if (!kept) return line + "it could not be kept aside: " + kept.error().message();
  return line + "it is kept as \"" + kept->filename().string() + '"';
}

void ConsentRecord::say(std::string line) const {
  const std::lock_guard lock(mutex_);
  if (line == lastLine_) return;
  lastLine_ = std::move(line);
  if (!lastLine_.empty()) log_.line(lastLine_);
}

}  // namespace lanternfold
