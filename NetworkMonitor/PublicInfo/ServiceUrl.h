// The URL of a web service, as a user or a default gives it.
//
// Made by: the command line's parser and `ServiceUrls`. Read by: the public-info resolvers.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

namespace lanternfold {

/// http or https, with a host and without a user's name or password.
class ServiceUrl {
 public:
  static constexpr std::size_t longestBytes = 2048;

  /// Or a clause for the user: what is wrong with `text`, which it does not repeat.
  [[nodiscard]] static std::expected<ServiceUrl, std::string> parse(std::string_view text);
  /// Of a text of the program's own; stops the program when it is no such URL.
  [[nodiscard]] static ServiceUrl of(std::string_view text);

  /// What to ask for: the URL as it was given when it has a path or a query of its own (a lone
  /// slash at the end is none), otherwise with `path` ("/…") and `query` ("?…", or empty) behind
  /// it.
  [[nodiscard]] std::string endpoint(std::string_view path, std::string_view query) const;
  /// The same, with `query` behind a path or a query of its own too: it is what is to be told.
  [[nodiscard]] std::string endpointTelling(std::string_view path, std::string_view query) const;

  friend bool operator==(const ServiceUrl&, const ServiceUrl&) = default;

 private:
  enum class Kind {
    hostAlone,
    withPath,
    withQuery,
  };

  ServiceUrl(std::string text, Kind kind) : text_(std::move(text)), kind_(kind) {}

  std::string text_;  // without the lone slash
  Kind kind_;
};

}  // namespace lanternfold
