#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/TextTable.h"

namespace lanternfold {
namespace {

std::string written(const TextTable& table, TextStyle style = TextStyle::plain) {
  std::ostringstream stream;
  table.write(stream, style);
  return stream.str();
}

TextTable sample() {
  return TextTable({{.title = "Name"}, {.title = "Sent", .alignment = ColumnAlignment::right}});
}

TEST(TextTable, AlignsColumnsAndLeavesNoSpaceAtALinesEnd) {
  TextTable table(
      {{.title = "Name"}, {.title = "Sent", .alignment = ColumnAlignment::right}, {"X"}});
  table.addRow({"eth0", "1 KB", ""});
  table.addRow({"enp0s31f6", "12.5 GB", "y"});
  EXPECT_EQ(written(table),
            "Name          Sent  X\n"
            "eth0          1 KB\n"
            "enp0s31f6  12.5 GB  y\n");
}

TEST(TextTable, AlignsWideCharacters) {
  TextTable table = sample();
  table.addRow({"家", "1"});
  table.addRow({"ab", "2"});
  EXPECT_EQ(written(table),
            "Name  Sent\n"
            "家       1\n"
            "ab       2\n");
}

TEST(TextTable, EscapesControlCharactersInCells) {
  TextTable table = sample();
  table.addRow({"a\nb", "1"});
  EXPECT_EQ(written(table),
            "Name    Sent\n"
            "a\\x0ab     1\n");
}

TEST(TextTable, OnlyTheColouredStyleWritesEscapeSequences) {
  EXPECT_EQ(written(sample()), "Name  Sent\n");
  EXPECT_EQ(written(sample(), TextStyle::coloured), "\x1b[1mName  Sent\x1b[0m\n");
}

TEST(TextTableDeathTest, ARowOfAnotherLengthStopsTheProgram) {
  TextTable table = sample();
  EXPECT_DEATH(table.addRow({"only one"}), "different number of cells");
}

}  // namespace
}  // namespace lanternfold
