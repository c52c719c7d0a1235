// The base of the resolvers that ask one HTTP endpoint each and decode its JSON answer.
//
// Made as one of the classes that derive from it. Read by: the internet info resolver.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "NetworkMonitor/PublicInfo/PublicInfoResolver.h"
#include "Platform/BundleInformation.h"
#include "Platform/UrlSession.h"

namespace lanternfold {

/// A widget extension has little time: 3 s of silence and 4 s in all; any other program 5 and 10.
[[nodiscard]] UrlSessionConfiguration publicInfoSessionConfiguration(
    const BundleInformation& bundle);

/// `answer` without what was not asked for.
[[nodiscard]] PublicInfo restrictedTo(const PublicInfoResolver::Keys& keys, PublicInfo answer);

/// Held by `std::shared_ptr`; any thread. A request keeps its resolver until it has completed, on a
/// background queue; a later one cancels it, and it completes with `UrlErrorCode::cancelled`.
class RestApiPublicInfoResolve : public PublicInfoResolver,
                                 public std::enable_shared_from_this<RestApiPublicInfoResolve> {
 public:
  /// `sessions` outlive the resolver. What `bundle` says is looked at once.
  RestApiPublicInfoResolve(UrlSessions& sessions, const BundleInformation& bundle);

  /// Every class overrides this and the next two: asking the base stops the program.
  [[nodiscard]] Keys supportedKeys() const override;
  /// The endpoint.
  [[nodiscard]] virtual std::string apiUrl() const;
  /// Every key that `data`, the body of an answer of any status, holds; or why there is none.
  [[nodiscard]] virtual Answer parseResponse(std::string_view data) const;

  /// Asks through a session of its own.
  void resolve(Keys keys, Completion completion) override;

  /// The request in flight; null for none.
  [[nodiscard]] std::shared_ptr<UrlSessionDataTask> dataTask() const;

 protected:
  /// Over which addresses the endpoint is asked.
  [[nodiscard]] virtual UrlAddressFamily addressFamily() const { return UrlAddressFamily::any; }
  /// What a request for `keys` completes with.
  [[nodiscard]] virtual Answer answerOf(const UrlAnswer& answer, const Keys& keys) const;

 private:
  /// Of a request, counted from 1: of two that begin at once the higher one stays.
  using Number = std::uint64_t;

  [[nodiscard]] Number begin();
  [[nodiscard]] std::shared_ptr<UrlSessionDataTask> makeTask(Number number, Keys keys,
                                                             Completion completion);
  [[nodiscard]] bool keep(Number number, const std::shared_ptr<UrlSessionDataTask>& task);
  void finish(Number number);

  UrlSessions& sessions_;
  const UrlSessionConfiguration configuration_;
  mutable std::mutex mutex_;  // guards what follows
  Number lastRequest_ = 0;
  std::shared_ptr<UrlSessionDataTask> dataTask_;  // of the last request
};

}  // namespace lanternfold
