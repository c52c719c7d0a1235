#include <atomic>
#include <thread>

#include "Support/Subject.h"

namespace lanternfold {
namespace {

class SubjectTest : public testing::Test {
 protected:
  /// Writes its name and the event.
  [[nodiscard]] Subscription subscribe(const std::string& name) {
    return publisher.subscribe(
        [this, name](const std::string& event) { diary += name + event + " "; });
  }

  std::string diary;
  Subject<std::string> subject;
  Publisher<std::string>& publisher = subject;
};

TEST_F(SubjectTest, EveryHandlerGetsEveryEventInTheOrderOfTheSubscriptions) {
  const Subscription a = subscribe("a");
  const Subscription b = subscribe("b");
  subject.send("1");
  subject.send("2");
  EXPECT_EQ(diary, "a1 b1 a2 b2 ");
}

TEST_F(SubjectTest, SendingToNobodyDoesNothing) {
  subject.send("1");
  EXPECT_EQ(diary, "");
}

TEST_F(SubjectTest, SubscriberGetsLaterEventsOnly) {
  subject.send("1");
  const Subscription a = subscribe("a");
  EXPECT_EQ(diary, "");
  subject.send("2");
  EXPECT_EQ(diary, "a2 ");
}

TEST_F(SubjectTest, CancelledHandlerIsNotCalled) {
  Subscription a = subscribe("a");
  const Subscription b = subscribe("b");
  a.cancel();
  a.cancel();
  subject.send("1");
  EXPECT_EQ(diary, "b1 ");
}

TEST_F(SubjectTest, DestroyedSubscriptionIsCancelled) {
  {
    const Subscription a = subscribe("a");
    subject.send("1");
  }
  subject.send("2");
  EXPECT_EQ(diary, "a1 ");
}

TEST_F(SubjectTest, SubscriptionMayBeMoved) {
  Subscription kept;
  {
    Subscription a = subscribe("a");
    kept = std::move(a);
  }
  subject.send("1");
  kept = subscribe("b");
  subject.send("2");
  const Subscription moved(std::move(kept));
  subject.send("3");
  EXPECT_EQ(diary, "a1 b2 b3 ");
}

TEST_F(SubjectTest, SubscriptionMayOutliveTheSubject) {
  Subscription subscription;
  {
    Subject<int> shortLived;
    subscription = shortLived.subscribe([](int) {});
  }
  subscription.cancel();
}

TEST_F(SubjectTest, HandlerThatSubscribesDuringAnEventGetsTheNextOneFirst) {
  Subscription late;
  const Subscription a = publisher.subscribe([&](const std::string& event) {
    diary += "a" + event + " ";
    if (event == "1") late = subscribe("late");
  });
  subject.send("1");
  EXPECT_EQ(diary, "a1 ");
  subject.send("2");
  EXPECT_EQ(diary, "a1 a2 late2 ");
}

TEST_F(SubjectTest, HandlerMayCancelItself) {
  Subscription a;
  a = publisher.subscribe([&](const std::string& event) {
    const std::string copy = event;
    a.cancel();
    diary += "a" + copy + " ";
  });
  const Subscription b = subscribe("b");
  subject.send("1");
  subject.send("2");
  EXPECT_EQ(diary, "a1 b1 b2 ");
}

TEST_F(SubjectTest, HandlerThatCancelsAnotherKeepsItFromTheSameEvent) {
  Subscription b;
  const Subscription a = publisher.subscribe([&](const std::string& event) {
    diary += "a" + event + " ";
    b.cancel();
  });
  b = subscribe("b");
  const Subscription c = subscribe("c");
  subject.send("1");
  EXPECT_EQ(diary, "a1 c1 ");
}

TEST_F(SubjectTest, EventSentByAHandlerIsDeliveredToAllBeforeTheFirstGoesOn) {
  const Subscription a = publisher.subscribe([&](const std::string& event) {
    diary += "a" + event + " ";
    if (event == "1") subject.send("2");
  });
  const Subscription b = subscribe("b");
  subject.send("1");
  EXPECT_EQ(diary, "a1 a2 b2 b1 ");
}

TEST_F(SubjectTest, CancelReleasesWhatTheHandlerHolds) {
  const auto held = std::make_shared<int>(0);
  Subscription subscription = publisher.subscribe([held](const std::string&) {});
  EXPECT_EQ(held.use_count(), 2);
  subscription.cancel();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(SubjectTest, HandlerMaySubscribeAndCancelWhileItIsReleased) {
  // What a cancelled handler holds may itself cancel: nothing is locked meanwhile.
  auto inner = std::make_shared<Subscription>(subscribe("inner"));
  const std::weak_ptr<Subscription> watched = inner;
  Subscription outer =
      publisher.subscribe([inner = std::move(inner)](const std::string&) { EXPECT_TRUE(inner); });
  outer.cancel();
  EXPECT_TRUE(watched.expired());
  subject.send("1");
  EXPECT_EQ(diary, "");
}

TEST_F(SubjectTest, ManyThreadsSendSubscribeAndCancel) {
  Subject<int> shared;
  std::atomic<int> received = 0;
  const Subscription steady = shared.subscribe([&received](int) { ++received; });
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&shared] {
      for (int count = 0; count < 500; ++count) {
        const Subscription passing = shared.subscribe([](int) {});
        shared.send(count);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(received, 2000);
}

}  // namespace
}  // namespace lanternfold
