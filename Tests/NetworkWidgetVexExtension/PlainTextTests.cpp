// What the widgets say on a terminal.
#include <string>

#include <gtest/gtest.h>

#include "Tests/NetworkWidgetVexExtension/CardStates.h"
#include "ViewTree/PlainText.h"

namespace lanternfold {
namespace {

/// Columns parted by a bar, a line a row.
std::string linesOf(const View& view) {
  std::string lines;
  for (const PlainTextRow& row : plainTextRows(view, "Today, 10:30")) {
    for (const std::string& column : row) lines += (&column == &row.front() ? "" : " | ") + column;
    lines += '\n';
  }
  return lines;
}

std::string linesOf(const std::string& card) {
  const FakeStringTable strings;
  for (const CardState& state : cardStates()) {
    if (state.name == card) return linesOf(state.view(strings));
  }
  return "no such card";
}

TEST(WidgetPlainText, OfAnAdapterIsItsRowsAndItsMeters) {
  EXPECT_EQ(linesOf("adapter_medium_long"),
            "enp0s31f6u1u2u3 | Realtek Semiconductor RTL8125 2.5 Gigabit Ethernet Controller "
            "(rev 05)\n"
            "IP | 192.168.100.200\n"
            "Router | 192.168.100.129/25\n"
            "MAC | 02:42:ac:11:1e:d6\n"
            "Received | 941.9 MB\n"
            "Sent | 0.8 KB\n");
  EXPECT_EQ(linesOf("adapter_medium_bare"), "eth0 | Virtio network device\n");
}

TEST(WidgetPlainText, SaysWhatIsMissing) {
  EXPECT_EQ(linesOf("adapter_medium_initial"), "No source\n");
  EXPECT_EQ(linesOf("adapter_medium_gone"),
            "en5 | Not available\n"
            "It is gone, or cannot be read now.\n"
            "Its card comes back with it.\n");
  EXPECT_EQ(linesOf("wlan_small_no_wifi"), "No source\n");
}

TEST(WidgetPlainText, EndsWithTheTimestampWhereThereIsOne) {
  EXPECT_TRUE(linesOf("adapter_medium_timestamp").ends_with("\nLast update Today, 10:30\n"))
      << linesOf("adapter_medium_timestamp");
}

TEST(WidgetPlainText, OfWifiIsItsRowsAndItsMeters) {
  EXPECT_EQ(linesOf("wlan_medium_placeholder"),
            "en0 | Home Network\n"
            "IP | 192.168.0.8\n"
            "Router | 192.168.0.1/24\n"
            "MAC | ab:cd:ef:12:34:56\n"
            "BSSID | 12:34:56:ab:cd:ef\n"
            "PHY mode | 802.11ac\n"
            "Security | WPA2 Personal\n"
            "Channel | 44 (5 GHz, 80 MHz)\n"
            "Received | 14.93 GB\n"
            "Sent | 2.03 GB\n");
  EXPECT_TRUE(linesOf("wlan_small_withheld")
                  .starts_with("SSID | SSID Unvailable, location access needed\n"));
}

TEST(WidgetPlainText, OfAStateIsSourceAfterSource) {
  const FakeStringTable strings;
  const NetworkStateEntry entry = stateEntry(placeholderState());
  EXPECT_EQ(linesOf(NetworkStateWidgetEntryView{entry}.body({strings})),
            "ISP | Your ISP Name\n"
            "IP - COUNTRY | 12.34.56.78 (IT)\n"
            "DNS | 8.8.8.8\n"
            "IPv6 | 2001:db8:0:0:1:0:0:ef\n"
            "Received | 17.12 GB\n"
            "Sent | 2.31 GB\n"
            "en0 | Home Network\n"
            "IP | 192.168.0.8\n"
            "Router | 192.168.0.1/24\n"
            "MAC | ab:cd:ef:12:34:56\n"
            "Received | 14.93 GB\n"
            "Sent | 2.03 GB\n"
            "en2 | Ethernet Adapter\n"
            "IP | 192.168.0.9\n"
            "Router | 192.168.0.1/24\n"
            "MAC | ab:cd:ef:12:34:57\n"
            "Received | 10.54 GB\n"
            "Sent | 3.85 GB\n");
}

}  // namespace
}  // namespace lanternfold
