#include "Tests/PlatformLinux/HardwareDatabaseFile.h"

#include <cstring>
#include <vector>

namespace lanternfold {

namespace {

// The file is a trie: a header of ten numbers after its signature, nodes, and a store of strings
// that nodes and values point to by their place in the file. All numbers have 64 bits,
// little-endian like the machines these tests run on.
constexpr std::uint64_t headerSize = 80;
constexpr std::uint64_t nodeSize = 24;
constexpr std::uint64_t childSize = 16;
constexpr std::uint64_t valueSize = 16;

class FileWriter {
 public:
  void number(std::uint64_t value) {
    char bytes[sizeof(value)];
    std::memcpy(bytes, &value, sizeof(value));
    text_.append(bytes, sizeof(value));
  }
  /// One byte in the place of a number.
  void paddedByte(std::uint8_t value) {
    text_ += static_cast<char>(value);
    text_.append(7, '\0');
  }
  std::string& text() { return text_; }

 private:
  std::string text_;
};

/// The strings behind the nodes, each with its place in the file.
class StringStore {
 public:
  explicit StringStore(std::uint64_t start) : start_(start) {}

  std::uint64_t place(const std::string& string) {
    const std::uint64_t place = start_ + text_.size();
    text_ += string + '\0';
    return place;
  }
  const std::string& text() const { return text_; }

 private:
  std::uint64_t start_;
  std::string text_;
};

}  // namespace

std::string hardwareDatabaseFile(const std::string& prefix,
                                 const std::map<std::string, std::string>& properties) {
  // The root holds the prefix and has one child, the wildcard "*", which holds the values.
  const std::uint64_t rootPlace = headerSize;
  const std::uint64_t leafPlace = rootPlace + nodeSize + childSize;
  const std::uint64_t nodesEnd = leafPlace + nodeSize + valueSize * properties.size();
  StringStore strings(nodesEnd);
  FileWriter nodes;
  nodes.number(strings.place(prefix));
  nodes.paddedByte(1);
  nodes.number(0);
  nodes.paddedByte('*');
  nodes.number(leafPlace);
  nodes.number(strings.place(""));
  nodes.paddedByte(0);
  nodes.number(properties.size());
  for (const auto& [key, value] : properties) {
    // A key that begins with a space is a property.
    nodes.number(strings.place(" " + key));
    nodes.number(strings.place(value));
  }
  FileWriter file;
  file.text() = "KSLPHHRH";
  file.number(252);  // the version of the compiler
  file.number(nodesEnd + strings.text().size());
  for (const std::uint64_t size : {headerSize, nodeSize, childSize, valueSize}) file.number(size);
  file.number(rootPlace);
  file.number(nodesEnd - headerSize);
  file.number(strings.text().size());
  return file.text() + nodes.text() + strings.text();
}

}  // namespace lanternfold
