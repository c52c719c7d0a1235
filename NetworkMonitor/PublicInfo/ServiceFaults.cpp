#include "NetworkMonitor/PublicInfo/ServiceFaults.h"

#include <algorithm>
#include <set>
#include <utility>

#include "Platform/UrlError.h"

namespace lanternfold {
namespace {

class NotingResolver final : public PublicInfoResolver {
 public:
  NotingResolver(std::shared_ptr<PublicInfoResolver> resolver, std::string service,
                 std::shared_ptr<ServiceFaults> faults)
      : resolver_(std::move(resolver)), service_(std::move(service)), faults_(std::move(faults)) {}

  [[nodiscard]] Keys supportedKeys() const override { return resolver_->supportedKeys(); }
  void resolve(Keys keys, Completion completion) override {
    resolver_->resolve(std::move(keys),
                       [service = service_, faults = faults_,
                        completion = std::move(completion)](Answer answer) mutable {
                         faults->note(service, answer ? std::error_code() : answer.error());
                         completion(std::move(answer));
                       });
  }

 private:
  const std::shared_ptr<PublicInfoResolver> resolver_;
  const std::string service_;
  const std::shared_ptr<ServiceFaults> faults_;
};

class TellingResolver final : public InternetInfoResolver {
 public:
  TellingResolver(std::shared_ptr<InternetInfoResolver> resolver,
                  std::shared_ptr<ServiceFaults> faults)
      : resolver_(std::move(resolver)), faults_(std::move(faults)) {}

  void resolve(UpdateHandler updateHandler) override {
    faults_->begin();
    resolver_->resolve([faults = faults_, handler = std::move(updateHandler)](
                           const InternetInfo& info, bool complete, std::error_code error) {
      if (complete) faults->tell();
      handler(info, complete, error);
    });
  }

 private:
  const std::shared_ptr<InternetInfoResolver> resolver_;
  const std::shared_ptr<ServiceFaults> faults_;
};

std::string remedyFor(const std::error_code& error) {
  if (error.category() != urlErrorDomain()) return "check the services' URLs";
  switch (static_cast<UrlErrorCode>(error.value())) {
    case UrlErrorCode::serverCertificateHasBadDate:
      return "check the clock and the hosts' certificates";
    case UrlErrorCode::serverCertificateUntrusted:
      return "name whom to trust with --ca-file";
    case UrlErrorCode::cannotConnectToProxy:
      return "check the proxies that http_proxy, https_proxy and all_proxy name";
    case UrlErrorCode::cannotFindHost:
    case UrlErrorCode::cannotConnectToHost:
    case UrlErrorCode::timedOut:
    case UrlErrorCode::networkConnectionLost:
      return "check the connection and the services' URLs";
    default:
      return "check the services' URLs";
  }
}

}  // namespace

void ServiceFaults::begin() {
  const std::scoped_lock guard(mutex_);
  faults_.clear();
}

void ServiceFaults::note(std::string_view service, const std::error_code& error) {
  if (error == UrlErrorCode::cancelled) return;
  const std::scoped_lock guard(mutex_);
  std::erase_if(faults_, [service](const auto& fault) { return fault.first == service; });
  if (error) faults_.emplace_back(service, error);
}

void ServiceFaults::tell() {
  std::string line;
  {
    const std::scoped_lock guard(mutex_);
    line = this->line();
    if (line == told_) return;
    told_ = line;
  }
  if (!line.empty()) diagnostics_.line(line);
}

/// Each once, in the order of their kinds.
std::string ServiceFaults::remedies() const {
  std::set<std::string> remedies;
  for (const auto& [service, error] : faults_) remedies.insert(remedyFor(error));
  std::string text;
  for (const std::string& remedy : remedies) text += (text.empty() ? "" : ", ") + remedy;
  return text;
}

std::string ServiceFaults::line() const {
  std::map<std::string, std::vector<std::string>> servicesOfMessage;
  for (const auto& [service, error] : faults_)
    servicesOfMessage[error.message()].push_back(service);
  std::string text;
  for (auto& [message, services] : servicesOfMessage) {
    text += (text.empty() ? "" : "; ") + message + " (";
    std::ranges::sort(services);
    for (std::size_t at = 0; at < services.size(); ++at)
      text += (at > 0 ? ", " : "") + services[at];
    text += ')';
  }
  if (text.empty()) return {};
  return "Not every service has answered: " + text + "; " + remedies();
}

std::shared_ptr<PublicInfoResolver> notingFaults(std::shared_ptr<PublicInfoResolver> resolver,
                                                 std::string service,
                                                 std::shared_ptr<ServiceFaults> faults) {
  return std::make_shared<NotingResolver>(std::move(resolver), std::move(service),
                                          std::move(faults));
}

std::shared_ptr<InternetInfoResolver> tellingFaults(std::shared_ptr<InternetInfoResolver> resolver,
                                                    std::shared_ptr<ServiceFaults> faults) {
  return std::make_shared<TellingResolver>(std::move(resolver), std::move(faults));
}

}  // namespace lanternfold
