#include "Tests/PlatformLinux/Url/UrlWorld.h"

#include <utility>

namespace lanternfold::test {

std::string textOf(const UrlAnswer& answer) {
  if (answer.data) return "answer: " + *answer.data;
  if (!answer.error) return "nothing";
  const bool isUrlError = answer.error.category() == urlErrorDomain();
  return (isUrlError ? "error " : "foreign error ") + std::to_string(answer.error.value());
}

UrlSession::Completion UrlAnswers::completion() {
  return [state = state_](const UrlAnswer& answer) {
    const std::lock_guard lock(state->mutex);
    state->texts.push_back(textOf(answer));
    state->changed.notify_all();
  };
}

std::vector<std::string> UrlAnswers::await(std::size_t count) const {
  std::unique_lock lock(state_->mutex);
  state_->changed.wait_for(lock, std::chrono::seconds(30),
                           [&] { return state_->texts.size() >= count; });
  return state_->texts;
}

std::size_t UrlAnswers::count() const {
  const std::lock_guard lock(state_->mutex);
  return state_->texts.size();
}

void UrlWorld::open(CurlUrlSettings settings) {
  ENTER_NETWORK_NAMESPACE(network_);
  ASSERT_TRUE(NetworkNamespace::run("ip link set lo up"));
  ASSERT_TRUE(PrivateEtc::mount());
  PrivateEtc::write("nsswitch.conf", "hosts: files dns\n");
  PrivateEtc::write("hosts",
                    "127.0.0.1 localhost four.example\n"
                    "::1 localhost\n");
  // Nothing listens there: a name that is not above fails at once.
  PrivateEtc::write("resolv.conf", "nameserver 127.0.0.1\n");
  loop_ = std::make_unique<EventLoop>();
  dispatch_ = std::make_unique<AsioDispatch>(*loop_);
  remake(std::move(settings));
}

void UrlWorld::remake(CurlUrlSettings settings) {
  sessions_ = std::make_unique<CurlUrlSessions>(*loop_, *dispatch_, std::move(settings));
}

std::string UrlWorld::fetch(const UrlRequest& request, const UrlSessionConfiguration& limits) {
  UrlAnswers answers;
  sessions_->makeSession(limits)->dataTask(request, answers.completion())->resume();
  const auto texts = answers.await(1);
  return texts.empty() ? "no completion" : texts.front();
}

std::string UrlWorld::fetch(const std::string& url, const UrlSessionConfiguration& limits) {
  return fetch(UrlRequest{.url = url}, limits);
}

}  // namespace lanternfold::test
