#include "Wiring/ServiceOptions.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <string_view>
#include <system_error>
#include <tuple>

#include <CLI/CLI.hpp>

#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

constexpr const char* urlValues = "a URL that begins with http:// or https://";

void addUrl(CLI::App& command, const char* option, std::optional<std::string>& url,
            const std::string& description) {
  command.add_option(option, url, description)
      ->option_text("URL")
      ->type_name(urlValues)
      ->group("Which services are asked");
}

/// Takes the URL of `option` over, if there is one.
std::expected<void, CommandFailure> choose(const std::optional<std::string>& text,
                                           const char* option, ServiceUrl& url) {
  if (!text) return {};
  auto parsed = ServiceUrl::parse(*text);
  if (!parsed) {
    return std::unexpected(
        badArguments(std::string(option) + " " + inQuotes(*text) + ": " + parsed.error()));
  }
  url = *std::move(parsed);
  return {};
}

CommandFailure cannotTrust(const std::filesystem::path& file, const std::string& reason) {
  return workFailed("the certificates in " + inQuotes(file.string()) +
                    " cannot be used: " + reason +
                    "; name a file in PEM with --ca-file, or leave it out to trust the "
                    "system's certificates");
}

/// Its beginning, in which a certificate must begin: descriptions may stand before it.
std::string beginningOf(std::istream& file) {
  constexpr std::size_t longestBeginning = 1024 * 1024;
  std::string text(longestBeginning, '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

/// Under any of the names that PEM files give one.
bool holdsCertificate(std::string_view text) {
  return std::ranges::any_of(
      std::to_array<std::string_view>({"CERTIFICATE", "TRUSTED CERTIFICATE", "X509 CERTIFICATE"}),
      [text](std::string_view name) {
        return text.contains("-----BEGIN " + std::string(name) + "-----");
      });
}

}  // namespace

void addServiceOptions(CLI::App& command, ServiceOptions& options) {
  command
      .add_flag("--skip-geoip", options.skipGeoIP, "Ask nobody for the provider and the country")
      ->group("Which services are asked");
  addUrl(command, "--ipv4-echo", options.ipv4Echo,
         "The service that tells the public IPv4 address; \"echo-service\" is one");
  addUrl(command, "--ipv6-echo", options.ipv6Echo,
         "The service that tells the public IPv6 address");
  addUrl(command, "--geolocation", options.geolocation,
         "The service that tells the provider and the country");
  addUrl(command, "--sentinel", options.sentinel,
         "The service that diagnostic pings go to; no command sends any");
  command
      .add_option("--ca-file", options.certificateAuthoritiesFile,
                  "Trust the certificates in this file (PEM) instead of the system's")
      ->option_text("FILE")
      ->type_name("a file's name")
      ->group("Which services are asked");
}

std::expected<ServiceUrls, CommandFailure> chosenServiceUrls(const ServiceOptions& options) {
  ServiceUrls urls;
  for (const auto& [text, option, url] :
       {std::tuple{&options.ipv4Echo, "--ipv4-echo", &urls.ipv4Echo},
        std::tuple{&options.ipv6Echo, "--ipv6-echo", &urls.ipv6Echo},
        std::tuple{&options.geolocation, "--geolocation", &urls.geolocation},
        std::tuple{&options.sentinel, "--sentinel", &urls.sentinel}}) {
    if (auto chosen = choose(*text, option, *url); !chosen) return std::unexpected(chosen.error());
  }
  return urls;
}

std::expected<void, CommandFailure> requireCertificateAuthorities(
    const std::optional<std::filesystem::path>& file) {
  if (!file) return {};
  std::error_code error;
  const auto status = std::filesystem::status(*file, error);
  if (status.type() == std::filesystem::file_type::not_found) {
    return std::unexpected(cannotTrust(*file, "there is no such file"));
  }
  // A pipe or a device might never end.
  if (status.type() != std::filesystem::file_type::regular) {
    return std::unexpected(cannotTrust(*file, error ? error.message() : "it is no file"));
  }
  errno = 0;
  std::ifstream opened(*file, std::ios::binary);
  if (!opened) {
    return std::unexpected(cannotTrust(*file, std::generic_category().message(errno)));
  }
  if (!holdsCertificate(beginningOf(opened))) {
    return std::unexpected(cannotTrust(*file, "it holds no certificate"));
  }
  return {};
}

}  // namespace lanternfold
