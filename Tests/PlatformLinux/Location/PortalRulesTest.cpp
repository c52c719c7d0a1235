#include <set>

#include <gtest/gtest.h>

#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {
namespace {

constexpr auto notDetermined = ConsentDecision::notDetermined;
constexpr auto denied = ConsentDecision::denied;
constexpr auto inUse = ConsentDecision::authorizedWhenInUse;
constexpr auto always = ConsentDecision::authorizedAlways;
constexpr std::array stores = {StoredPermission::unobservable, StoredPermission::absent,
                               StoredPermission::refused, StoredPermission::granted};

PortalKnowledge offered(StoredPermission stored) {
  return {.portal = PortalOutcome::offered, .stored = stored};
}

TEST(PortalResponse, ZeroIsAConsentOneARefusalAndTheRestNoDecision) {
  EXPECT_EQ(outcomeOfResponse(0), PortalOutcome::granted);
  EXPECT_EQ(outcomeOfResponse(1), PortalOutcome::refused);
  for (const std::uint32_t other : {2U, 3U, 256U, 0x80000000U, 0xffffffffU}) {
    EXPECT_EQ(outcomeOfResponse(other), PortalOutcome::ended) << other;
  }
}

TEST(PortalErrors, TheirNamesTellWhoIsMissing) {
  const std::string bus = "org.freedesktop.DBus.Error.";
  for (const char* name :
       {"ServiceUnknown", "NameHasNoOwner", "UnknownObject", "UnknownMethod", "UnknownInterface",
        "AccessDenied", "Spawn.ServiceNotFound", "Spawn.ChildExited"}) {
    EXPECT_EQ(outcomeOfError(bus + name), PortalOutcome::missing) << name;
  }
  EXPECT_EQ(outcomeOfError(bus + "NoReply"), PortalOutcome::silent);
  EXPECT_EQ(outcomeOfError(bus + "Timeout"), PortalOutcome::silent);
  EXPECT_EQ(outcomeOfError(bus + "InvalidSignature"), PortalOutcome::garbled);
  EXPECT_EQ(outcomeOfError(bus + "Disconnected"), PortalOutcome::vanished);
  EXPECT_EQ(outcomeOfError("org.freedesktop.portal.Error.NotAllowed"), PortalOutcome::disabled);
  EXPECT_EQ(outcomeOfError("org.freedesktop.portal.Error.Cancelled"), PortalOutcome::ended);
  for (const char* name : {"", "x", "org.freedesktop.DBus.Error.Failed", "a.b"}) {
    EXPECT_EQ(outcomeOfError(name), PortalOutcome::failed) << name;
  }
}

TEST(PortalPath, ItIsMadeOfTheCallersNameAndItsToken) {
  EXPECT_EQ(portalPath("request", ":1.42", "abc"),
            "/org/freedesktop/portal/desktop/request/1_42/abc");
  EXPECT_EQ(portalPath("session", ":1.2.3", "t"),
            "/org/freedesktop/portal/desktop/session/1_2_3/t");
}

TEST(StoredPermission, TheAccuracyOfThisApplicationDecides) {
  const auto of = [](std::vector<std::string> words) {
    return storedPermissionOf({{"other", {"EXACT", "1"}}, {"own", std::move(words)}}, "own");
  };
  EXPECT_EQ(of({"NONE", "0"}), StoredPermission::refused);
  for (const char* accuracy : {"COUNTRY", "CITY", "NEIGHBORHOOD", "STREET", "EXACT"}) {
    EXPECT_EQ(of({accuracy, "1700000000"}), StoredPermission::granted) << accuracy;
  }
  for (const char* accuracy : {"", "exact", "5", "EXACT "}) {
    EXPECT_EQ(of({accuracy, "0"}), StoredPermission::absent) << accuracy;
  }
}

TEST(StoredPermission, AnotherShapeOrAnotherApplicationIsNoDecision) {
  EXPECT_EQ(storedPermissionOf({}, "own"), StoredPermission::absent);
  EXPECT_EQ(storedPermissionOf({{"other", {"EXACT", "1"}}}, "own"), StoredPermission::absent);
  EXPECT_EQ(storedPermissionOf({{"own", {}}}, "own"), StoredPermission::absent);
  EXPECT_EQ(storedPermissionOf({{"own", {"EXACT"}}}, "own"), StoredPermission::absent);
  EXPECT_EQ(storedPermissionOf({{"", {"EXACT", "1"}}}, ""), StoredPermission::absent);
}

TEST(StoredPermission, AnErrorIsNobodyThereOrNoDecisionAndNeverAConsent) {
  const auto after = [](const char* name, StoredPermission known) {
    return storedPermissionAfterError(name, known);
  };
  constexpr const char* nobody = "org.freedesktop.DBus.Error.ServiceUnknown";
  constexpr const char* nothing = "org.freedesktop.portal.Error.NotFound";
  constexpr const char* silence = "org.freedesktop.DBus.Error.Timeout";
  EXPECT_EQ(after(nobody, StoredPermission::unobservable), StoredPermission::unobservable);
  EXPECT_EQ(after(silence, StoredPermission::unobservable), StoredPermission::absent);
  EXPECT_EQ(after("odd", StoredPermission::unobservable), StoredPermission::absent);
  for (const auto known : stores) EXPECT_EQ(after(nothing, known), StoredPermission::absent);
  for (const auto known : {StoredPermission::refused, StoredPermission::granted}) {
    EXPECT_EQ(after(nobody, known), known);
    EXPECT_EQ(after(silence, known), known);
  }
}

TEST(SandboxedStatus, BothTheRecordAndTheStoreHaveToSayYes) {
  EXPECT_EQ(sandboxedStatus(inUse, offered(StoredPermission::granted)), 4);
  EXPECT_EQ(sandboxedStatus(inUse, offered(StoredPermission::unobservable)), 4);
  EXPECT_EQ(sandboxedStatus(inUse, offered(StoredPermission::absent)), 0);
  EXPECT_EQ(sandboxedStatus(inUse, offered(StoredPermission::refused)), 2);
  EXPECT_EQ(sandboxedStatus(notDetermined, offered(StoredPermission::granted)), 0);
  EXPECT_EQ(sandboxedStatus(notDetermined, offered(StoredPermission::unobservable)), 0);
  EXPECT_EQ(sandboxedStatus(notDetermined, offered(StoredPermission::absent)), 0);
  EXPECT_EQ(sandboxedStatus(notDetermined, offered(StoredPermission::refused)), 2);
  for (const auto stored : stores) EXPECT_EQ(sandboxedStatus(denied, offered(stored)), 2);
}

TEST(SandboxedStatus, APortalsConsentIsNeverForAlways) {
  EXPECT_EQ(sandboxedStatus(always, offered(StoredPermission::granted)), 4);
}

TEST(SandboxedStatus, WithoutAPortalItIsRestrictedUnlessTheUserDenies) {
  for (const auto fault : {PortalOutcome::noBus, PortalOutcome::missing, PortalOutcome::disabled,
                           PortalOutcome::silent, PortalOutcome::vanished, PortalOutcome::garbled,
                           PortalOutcome::failed}) {
    for (const auto stored : stores) {
      const PortalKnowledge knowledge{.portal = fault, .stored = stored};
      EXPECT_EQ(sandboxedStatus(inUse, knowledge), 1);
      EXPECT_EQ(sandboxedStatus(notDetermined, knowledge), 1);
      EXPECT_EQ(sandboxedStatus(denied, knowledge), 2);
      EXPECT_EQ(portalRequestFor(notDetermined, knowledge), PortalRequest::none);
    }
  }
}

TEST(PortalRequests, TheUserIsAskedWhileNothingIsDecided) {
  EXPECT_EQ(portalRequestFor(notDetermined, offered(StoredPermission::unobservable)),
            PortalRequest::question);
  EXPECT_EQ(portalRequestFor(notDetermined, offered(StoredPermission::granted)),
            PortalRequest::question);
  EXPECT_EQ(portalRequestFor(inUse, offered(StoredPermission::absent)), PortalRequest::question);
}

TEST(PortalRequests, AConsentThatNobodyCanSeeTakenBackIsVerified) {
  EXPECT_EQ(portalRequestFor(inUse, offered(StoredPermission::unobservable)),
            PortalRequest::verification);
  EXPECT_EQ(portalRequestFor(inUse, offered(StoredPermission::granted)), PortalRequest::none);
}

TEST(PortalRequests, WhoHasRefusedIsNotAsked) {
  for (const auto stored : stores) {
    EXPECT_EQ(portalRequestFor(denied, offered(stored)), PortalRequest::none);
  }
  EXPECT_EQ(portalRequestFor(notDetermined, offered(StoredPermission::refused)),
            PortalRequest::none);
}

TEST(PortalSentences, EveryOutcomeHasItsOwn) {
  std::set<std::string_view> sentences;
  for (int outcome = 0; outcome <= static_cast<int>(PortalOutcome::failed); ++outcome) {
    const std::string_view sentence = sentenceOf(static_cast<PortalOutcome>(outcome));
    EXPECT_EQ(sentence.find_first_of("\n."), std::string_view::npos) << sentence;
    sentences.insert(sentence);
  }
  // Granted and offered need no explanation.
  EXPECT_EQ(sentences.size(), static_cast<std::size_t>(PortalOutcome::failed));
}

}  // namespace
}  // namespace lanternfold
