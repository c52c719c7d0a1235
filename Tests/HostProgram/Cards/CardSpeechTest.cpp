// What a screen reader says of a card.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Cards/CardSpeech.h"
#include "ViewTree/Elements.h"

namespace lanternfold {
namespace {

View row(std::string_view label, std::string_view value) {
  return hstack(VerticalAlignment::centre, 4, {text(label, {}), text(value, {})});
}

TEST(CardSpeechTest, SaysEveryRowAlsoOfASourceThatHasAName) {
  std::vector<View> rows;
  rows.push_back(row("IP", "192.0.2.2"));
  rows.push_back(row("Router", "192.0.2.1/24"));
  const View source =
      accessoryRow({}, symbol("bolt"), vstack(HorizontalAlignment::leading, 2, rows), emptyView())
          .accessible("Ethernet");
  EXPECT_EQ(cardSpeech(source, ""), "IP 192.0.2.2, Router 192.0.2.1/24");
}

TEST(CardSpeechTest, LeavesButtonsAndTheAddressesOfLinksToThemselves) {
  std::vector<View> parts;
  parts.push_back(drawingTime("Last update %@", {}));
  parts.push_back(link("net.quernaple.LanternfoldX://bandwidth-monitor?mini=1",
                       symbol("gauge").accessible("Bandwidth Monitor")));
  parts.push_back(button("RefreshAppIntent", text("Refresh", {})));
  EXPECT_EQ(cardSpeech(vstack(HorizontalAlignment::leading, 0, parts), "Today, 10:30 AM"),
            "Last update Today, 10:30 AM, Bandwidth Monitor");
}

TEST(CardSpeechTest, HasABoundWhateverTheCardHolds) {
  std::vector<View> parts(100, text(std::string(1000, 'x'), {}));
  parts.push_back(text("the end", {}));
  const std::string speech = cardSpeech(vstack(HorizontalAlignment::leading, 0, parts), "");
  EXPECT_LE(speech.size(), longestAccessibleDescription);
  EXPECT_TRUE(speech.ends_with(", the end"));
}

}  // namespace
}  // namespace lanternfold
