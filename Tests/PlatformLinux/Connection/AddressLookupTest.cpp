// A look-up by itself, over threads and a translation that the test plays.
#include <optional>
#include <string>
#include <vector>

#include <asio/error.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlatformLinux/Connection/AddressLookup.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const asio::ip::address found = asio::ip::make_address("192.0.2.7");

AddressLookup::Result failure(std::error_code error) { return std::unexpected(error); }

class AddressLookupTest : public testing::Test {
 protected:
  std::shared_ptr<AddressLookup> make() {
    return std::make_shared<AddressLookup>(threads_, [this](const std::string& name) {
      asked_.push_back(name);
      if (whileAsked_) whileAsked_();
      return AddressLookup::Result({found});
    });
  }
  void start(AddressLookup& lookup, const std::string& host) {
    lookup.start(host, [this](AddressLookup::Result result) { results_.push_back(result); });
  }
  void runThread() { std::exchange(thread_, nullptr)(); }

  /// Holds the only thread's work until the test runs it.
  LookupThreads::Work thread_;
  bool isRefused_ = false;
  std::shared_ptr<LookupThreads> threads_ =
      std::make_shared<LookupThreads>(1, [this](LookupThreads::Work work) {
        if (isRefused_) throw std::system_error(std::make_error_code(std::errc::not_enough_memory));
        thread_ = std::move(work);
      });
  std::function<void()> whileAsked_;
  std::vector<std::string> asked_;
  std::vector<AddressLookup::Result> results_;
};

TEST_F(AddressLookupTest, AsksForANameOnAThread) {
  start(*make(), "host.example");
  EXPECT_THAT(results_, IsEmpty());
  runThread();
  EXPECT_THAT(asked_, ElementsAre("host.example"));
  EXPECT_THAT(results_, ElementsAre(AddressLookup::Result({found})));
}

TEST_F(AddressLookupTest, AsksNobodyForAnAddress) {
  start(*make(), "192.0.2.7");
  start(*make(), "2001:db8::7");
  start(*make(), "fe80::1%lo");
  EXPECT_FALSE(thread_);
  ASSERT_EQ(results_.size(), 3U);
  EXPECT_EQ(results_[0], AddressLookup::Result({found}));
  EXPECT_EQ(results_[1], AddressLookup::Result({asio::ip::make_address("2001:db8::7")}));
  ASSERT_TRUE(results_[2]);
  EXPECT_EQ(results_[2]->front().to_v6().scope_id(), 1U);  // that of lo, in every namespace
}

TEST_F(AddressLookupTest, AsksNobodyForWhatIsNoName) {
  using std::string_literals::operator""s;
  for (const std::string& host : {""s, "\0"s, "host\0x"s, "fe80::1%nowhere"s, "host%lo"s}) {
    start(*make(), host);
  }
  EXPECT_FALSE(thread_);
  EXPECT_THAT(results_, testing::AllOf(testing::SizeIs(5),
                                       testing::Each(failure(asio::error::host_not_found))));
}

TEST_F(AddressLookupTest, CancelledBeforeTheStartAsksNobody) {
  const auto lookup = make();
  lookup->cancel();
  EXPECT_THAT(results_, IsEmpty());
  start(*lookup, "host.example");
  EXPECT_FALSE(thread_);
  EXPECT_THAT(results_, ElementsAre(failure(std::make_error_code(std::errc::operation_canceled))));
}

TEST_F(AddressLookupTest, CancelledWhileItWaitsNeverBegins) {
  const auto first = make();
  const auto second = make();
  start(*first, "first.example");
  start(*second, "second.example");
  second->cancel();
  EXPECT_THAT(results_, ElementsAre(failure(std::make_error_code(std::errc::operation_canceled))));
  EXPECT_EQ(second.use_count(), 1);  // the thread has let it go
  runThread();
  EXPECT_THAT(asked_, ElementsAre("first.example"));
  EXPECT_EQ(results_.size(), 2U);
}

TEST_F(AddressLookupTest, DropsWhatComesAfterACancellation) {
  const auto lookup = make();
  start(*lookup, "host.example");
  whileAsked_ = [&] { lookup->cancel(); };
  runThread();
  EXPECT_THAT(asked_, ElementsAre("host.example"));
  EXPECT_THAT(results_, ElementsAre(failure(std::make_error_code(std::errc::operation_canceled))));
}

TEST_F(AddressLookupTest, TakesACancellationAfterTheEnd) {
  const auto lookup = make();
  start(*lookup, "host.example");
  runThread();
  lookup->cancel();
  EXPECT_THAT(results_, ElementsAre(AddressLookup::Result({found})));
}

TEST_F(AddressLookupTest, SaysWhenThereIsNoThreadToBeHad) {
  isRefused_ = true;
  const auto lookup = make();
  start(*lookup, "host.example");
  lookup->cancel();
  EXPECT_THAT(results_, ElementsAre(failure(std::make_error_code(std::errc::not_enough_memory))));
}

}  // namespace
}  // namespace lanternfold
