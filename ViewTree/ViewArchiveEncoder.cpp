#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <variant>

#include "ViewTree/ArchivedNodes.h"
#include "ViewTree/DisplayableText.h"
#include "ViewTree/LinkUrl.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {
namespace {

/// Of a view that has too many nodes, so many fewer are written: every node of a path may need a
/// child or two to be complete when there is no room left for others.
constexpr std::size_t sparedNodes = 2 * deepestArchivedNode;
/// The same in bytes, a node with the longest texts included.
constexpr std::size_t sparedBytes = std::size_t{64} * 1024;

std::size_t nodesOf(const View& view) {
  std::size_t count = 1;
  for (const View& child : view.children) count += nodesOf(child);
  return count;
}

bool isPlain(std::string_view text) {
  return text.size() <= maximumShownCharacters &&
         std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

/// Appends to one string what a view consists of; a visitor of ArchivedNodes.h.
class ArchiveWriter {
 public:
  explicit ArchiveWriter(std::size_t nodes)
      : mostNodes_(nodes <= mostArchivedNodes ? mostArchivedNodes
                                              : mostArchivedNodes - sparedNodes) {}

  void node(const View& view, std::size_t depth) {
    std::visit([&](const auto& node) { nodeOfKind(view, node, depth); }, view.node);
  }

  [[nodiscard]] std::string& json() { return json_; }

  void text(std::string_view name, const std::string& text) {
    member(name);
    quoted(text);
  }

  void optionalText(std::string_view name, const std::string& optional) {
    if (!optional.empty()) text(name, optional);
  }

  void url(std::string_view name, const std::string& url) { text(name, url); }

  void number(std::string_view name, double value, const NumberRule& rule) {
    if (rule.standard && value == *rule.standard) return;
    member(name);
    number(value, rule);
  }

  void optionalNumber(std::string_view name, const std::optional<double>& value,
                      const NumberRule& rule) {
    if (value) number(name, *value, rule);
  }

  void count(std::string_view name, std::size_t value, const CountRule& rule) {
    const std::size_t bounded = std::clamp(value, std::size_t{1}, rule.most);
    if (bounded == rule.standard) return;
    member(name);
    json_ += std::to_string(bounded);
  }

  void numbers(std::string_view name, const std::vector<double>& values, const NumberRule& rule) {
    member(name);
    json_ += '[';
    number(values.empty() ? 0 : values.front(), rule);
    for (std::size_t index = 1; index < std::min(values.size(), mostRowSpacings); ++index) {
      json_ += ',';
      number(values[index], rule);
    }
    json_ += ']';
  }

  template <typename Enumeration, std::size_t count>
  void choice(std::string_view name, Enumeration value,
              const std::array<std::string_view, count>& names, Enumeration standard) {
    if (value == standard) return;
    member(name);
    quoted(names.at(static_cast<std::size_t>(value)));
  }

  void alignment(std::string_view name, const Alignment& alignment) {
    if (alignment == centred) return;
    const auto row = static_cast<std::size_t>(alignment.vertical);
    member(name);
    quoted(alignmentNames.at(row * 3 + static_cast<std::size_t>(alignment.horizontal)));
  }

  void colour(std::string_view name, const Colour& colour) {
    member(name);
    json_ += '{';
    if (const auto* pair = std::get_if<std::string>(&colour.value)) {
      text("name", *pair);
    } else {
      const Rgba& value = std::get<Rgba>(colour.value);
      number("red", value.red, fractionRule);
      number("green", value.green, fractionRule);
      number("blue", value.blue, fractionRule);
      number("alpha", value.alpha, fractionRule.unless(1));
    }
    number("opacity", colour.opacity, fractionRule.unless(1));
    json_ += '}';
  }

 private:
  template <typename Node>
  void nodeOfKind(const View& view, const Node& node, std::size_t depth) {
    using Kind = ArchivedNode<Node>;
    if constexpr (std::is_same_v<Node, LinkNode>) {
      if (!isLinkUrl(node.url)) return child(view, 0, depth);
    }
    constexpr bool needsChildren =
        Kind::children != ArchivedChildren::none && Kind::children != ArchivedChildren::any;
    if (needsChildren && depth == deepestArchivedNode) return empty();
    ++nodes_;
    json_ += '{';
    member("type");
    quoted(Kind::type);
    Kind::visit(*this, node);
    if (view.accessibleName) text("accessibleName", *view.accessibleName);
    children(view, Kind::children, depth);
    json_ += '}';
  }

  void children(const View& view, ArchivedChildren allowed, std::size_t depth) {
    if (allowed == ArchivedChildren::none || depth == deepestArchivedNode) return;
    const std::optional<std::size_t> exact = exactCount(allowed);
    const std::size_t needed = leastCount(allowed);
    if (view.children.empty() && needed == 0) return;
    member("children");
    json_ += '[';
    const std::size_t most = exact.value_or(view.children.size());
    for (std::size_t index = 0; index < std::max(most, needed); ++index) {
      if (index >= needed && !hasRoom()) break;
      if (json_.back() != '[') json_ += ',';
      child(view, index, depth + 1);
    }
    json_ += ']';
  }

  void child(const View& view, std::size_t index, std::size_t depth) {
    if (index < view.children.size() && hasRoom()) {
      node(view.children[index], depth);
    } else {
      empty();
    }
  }

  void empty() {
    ++nodes_;
    json_ += R"({"type":"empty"})";
  }

  [[nodiscard]] bool hasRoom() const {
    return nodes_ < mostNodes_ && json_.size() < longestViewArchive - sparedBytes;
  }

  void member(std::string_view name) {
    if (json_.back() != '{') json_ += ',';
    json_ += '"';
    json_ += name;
    json_ += "\":";
  }

  void number(double value, const NumberRule& rule) {
    if (rule.mayBeUnlimited && value == unlimited) {
      json_ += "\"unlimited\"";
      return;
    }
    // Every rule allows for zero, which stands for what is no number at all.
    const double bounded = std::isnan(value) ? 0 : std::clamp(value, rule.least, rule.most);
    std::array<char, 32> digits{};
    const std::to_chars_result written =
        std::to_chars(digits.data(), digits.data() + digits.size(), bounded);
    json_.append(digits.data(), static_cast<std::size_t>(written.ptr - digits.data()));
  }

  /// What is fit to show holds nothing else that JSON wants escaped.
  void quoted(std::string_view text) {
    if (!isPlain(text)) return escaped(displayableText(text));
    escaped(text);
  }

  void escaped(std::string_view text) {
    json_ += '"';
    for (const char c : text) {
      if (c == '"' || c == '\\') json_ += '\\';
      json_ += c;
    }
    json_ += '"';
  }

  std::size_t mostNodes_;
  std::size_t nodes_ = 0;
  std::string json_ = R"({"version":1,"root":)";
};

}  // namespace

std::string archiveJson(const View& view) {
  ArchiveWriter writer(nodesOf(view));
  writer.node(view, 1);
  writer.json() += '}';
  return std::move(writer.json());
}

}  // namespace lanternfold
