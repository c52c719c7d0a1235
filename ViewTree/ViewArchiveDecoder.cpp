#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>
#include <variant>

#include "ViewTree/ArchiveValue.h"
#include "ViewTree/ArchivedNodes.h"
#include "ViewTree/DisplayableText.h"
#include "ViewTree/LinkUrl.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {
namespace {

using Object = ArchiveValue::Object;

const ArchiveValue* find(const Object& object, std::string_view name) {
  const auto found = std::ranges::find(object, name, &ArchiveMember::name);
  return found == object.end() ? nullptr : &found->value;
}

/// Makes nodes of values, and stops at the first fault; a visitor of ArchivedNodes.h.
class ArchiveReader {
 public:
  std::expected<View, ViewArchiveFault> document(const ArchiveValue& value) {
    View view = whole(value);
    if (fault_) return std::unexpected(*std::move(fault_));
    return view;
  }

  void text(std::string_view name, std::string& text) {
    if (const std::string* found = textMember(name)) text = displayableText(*found);
  }

  void optionalText(std::string_view name, std::string& optional) {
    if (find(*object_, name) != nullptr) text(name, optional);
  }

  void url(std::string_view name, std::string& url) {
    const std::string* const found = textMember(name);
    if (found == nullptr) return;
    if (!isLinkUrl(*found)) return fail(name, "It is not a URL.");
    url = *found;
  }

  void number(std::string_view name, double& number, const NumberRule& rule) {
    const ArchiveValue* const value = find(*object_, name);
    if (value != nullptr) {
      number = numberOf(*value, name, rule);
    } else if (rule.standard) {
      number = *rule.standard;
    } else {
      fail(name, missing);
    }
  }

  void optionalNumber(std::string_view name, std::optional<double>& number,
                      const NumberRule& rule) {
    const ArchiveValue* const value = find(*object_, name);
    if (value != nullptr) number = numberOf(*value, name, rule);
  }

  void count(std::string_view name, std::size_t& count, const CountRule& rule) {
    const ArchiveValue* const value = find(*object_, name);
    count = rule.standard;
    if (value == nullptr) return;
    const double number = numberOf(*value, name, {1, static_cast<double>(rule.most)});
    if (fault_) return;
    if (number != std::floor(number)) return fail(name, "It is not a whole number.");
    count = static_cast<std::size_t>(number);
  }

  void numbers(std::string_view name, std::vector<double>& numbers, const NumberRule& rule) {
    const ArchiveValue* const value = find(*object_, name);
    if (value == nullptr) return fail(name, missing);
    const auto* const list = std::get_if<ArchiveValue::List>(&value->value);
    if (list == nullptr) return fail(name, "It is not a list.");
    if (list->empty()) return fail(name, "It is empty.");
    if (list->size() > mostRowSpacings) return fail(name, "There are too many of them.");
    for (std::size_t index = 0; index < list->size(); ++index) {
      const std::string place = std::string(name) + '[' + std::to_string(index) + ']';
      numbers.push_back(numberOf((*list)[index], place, rule));
    }
  }

  template <typename Enumeration, std::size_t count>
  void choice(std::string_view name, Enumeration& value,
              const std::array<std::string_view, count>& names, Enumeration standard) {
    value = static_cast<Enumeration>(indexMember(name, names, static_cast<std::size_t>(standard)));
  }

  void alignment(std::string_view name, Alignment& alignment) {
    const std::size_t index = indexMember(name, alignmentNames, indexOfCentre);
    alignment = {static_cast<HorizontalAlignment>(index % 3),
                 static_cast<VerticalAlignment>(index / 3)};
  }

  void colour(std::string_view name, Colour& colour) {
    const ArchiveValue* const value = find(*object_, name);
    if (value == nullptr) return fail(name, missing);
    const auto* const members = std::get_if<Object>(&value->value);
    if (members == nullptr) return fail(name, notAnObject);
    const Object* const outer = std::exchange(object_, members);
    const std::size_t length = enter(name);
    if (find(*members, "name") != nullptr) {
      text("name", colour.value.emplace<std::string>());
    } else {
      Rgba& fixed = colour.value.emplace<Rgba>();
      number("red", fixed.red, fractionRule);
      number("green", fixed.green, fractionRule);
      number("blue", fixed.blue, fractionRule);
      number("alpha", fixed.alpha, fractionRule.unless(1));
    }
    number("opacity", colour.opacity, fractionRule.unless(1));
    path_.resize(length);
    object_ = outer;
  }

 private:
  static constexpr const char* missing = "It is missing.";
  static constexpr const char* notAnObject = "It is not an object.";

  View whole(const ArchiveValue& value) {
    object_ = std::get_if<Object>(&value.value);
    if (object_ == nullptr) return failed("", notAnObject);
    const ArchiveValue* const version = find(*object_, "version");
    if (version == nullptr) return failed("version", missing);
    const auto* const number = std::get_if<double>(&version->value);
    if (number == nullptr || *number != 1) return failed("version", "It is not 1.");
    const ArchiveValue* const root = find(*object_, "root");
    if (root == nullptr) return failed("root", missing);
    path_ = "root";
    return node(*root, 1);
  }

  View node(const ArchiveValue& value, std::size_t depth) {
    object_ = std::get_if<Object>(&value.value);
    if (object_ == nullptr) return failed("", notAnObject);
    if (depth > deepestArchivedNode) return failed("", "It is nested too deeply.");
    if (++nodes_ > mostArchivedNodes) return failed("", "There are too many nodes.");
    const std::string* const type = textMember("type");
    if (type == nullptr) return {};
    constexpr auto kinds = std::make_index_sequence<std::variant_size_v<ViewNode>>();
    std::optional<View> view = nodeOfType(*type, depth, kinds);
    return view ? *std::move(view) : failed("type", "It is not a type of node.");
  }

  template <std::size_t... kinds>
  std::optional<View> nodeOfType(const std::string& type, std::size_t depth,
                                 std::index_sequence<kinds...>) {
    std::optional<View> view;
    const auto tryKind = [&]<typename Node>(Node node) {
      if (ArchivedNode<Node>::type != type) return false;
      view = nodeOfKind(std::move(node), depth);
      return true;
    };
    (void)(tryKind(std::variant_alternative_t<kinds, ViewNode>()) || ...);
    return view;
  }

  template <typename Node>
  View nodeOfKind(Node node, std::size_t depth) {
    const Object& object = *object_;
    ArchivedNode<Node>::visit(*this, node);
    View view{std::move(node), {}, std::nullopt};
    if (find(object, "accessibleName") != nullptr)
      text("accessibleName", view.accessibleName.emplace());
    if (!fault_) view.children = children(object, ArchivedNode<Node>::children, depth);
    return view;
  }

  std::vector<View> children(const Object& object, ArchivedChildren allowed, std::size_t depth) {
    std::vector<View> views;
    static const ArchiveValue::List none;
    const ArchiveValue* const member = find(object, "children");
    const auto* const list =
        member != nullptr ? std::get_if<ArchiveValue::List>(&member->value) : &none;
    if (list == nullptr) {
      fail("children", "It is not a list.");
      return views;
    }
    if (const char* const wrong = wrongCount(list->size(), allowed)) {
      fail("children", wrong);
      return views;
    }
    views.reserve(list->size());
    for (std::size_t index = 0; index < list->size() && !fault_; ++index) {
      const std::size_t length = enter("children[" + std::to_string(index) + ']');
      views.push_back(node((*list)[index], depth + 1));
      path_.resize(length);
    }
    return views;
  }

  static const char* wrongCount(std::size_t count, ArchivedChildren allowed) {
    if (allowed == ArchivedChildren::none && count != 0) return "There must be no child.";
    if (allowed == ArchivedChildren::one && count != 1) return "There must be one child.";
    if (allowed == ArchivedChildren::two && count != 2) return "There must be two children.";
    if (allowed == ArchivedChildren::three && count != 3) return "There must be three children.";
    if (allowed == ArchivedChildren::oneOrTwo && (count < 1 || count > 2)) {
      return "There must be one child or two.";
    }
    if (allowed == ArchivedChildren::atLeastOne && count == 0) {
      return "There must be at least one child.";
    }
    return nullptr;
  }

  /// A text that must be there.
  const std::string* textMember(std::string_view name) {
    const ArchiveValue* const value = find(*object_, name);
    if (value == nullptr) {
      fail(name, missing);
      return nullptr;
    }
    const auto* const text = std::get_if<std::string>(&value->value);
    if (text == nullptr) fail(name, "It is not a text.");
    return text;
  }

  template <std::size_t count>
  std::size_t indexMember(std::string_view name, const std::array<std::string_view, count>& names,
                          std::size_t standard) {
    if (find(*object_, name) == nullptr) return standard;
    const std::string* const text = textMember(name);
    if (text == nullptr) return standard;
    const auto* const found = std::ranges::find(names, *text);
    if (found != names.end()) return static_cast<std::size_t>(found - names.begin());
    fail(name, "It is none of the words that may stand here.");
    return standard;
  }

  double numberOf(const ArchiveValue& value, std::string_view name, const NumberRule& rule) {
    const auto* const word = std::get_if<std::string>(&value.value);
    if (rule.mayBeUnlimited && word != nullptr && *word == "unlimited") return unlimited;
    const auto* const number = std::get_if<double>(&value.value);
    if (number == nullptr) {
      fail(name, "It is not a number.");
    } else if (*number < rule.least) {
      fail(name, "The number is too small.");
    } else if (*number > rule.most) {
      fail(name, "The number is too large.");
    }
    return number != nullptr ? *number : 0;
  }

  /// Goes on in a member; the length to which the path is cut when that is left.
  std::size_t enter(std::string_view name) {
    const std::size_t length = path_.size();
    path_.append(".").append(name);
    return length;
  }

  void fail(std::string_view name, const char* sentence) {
    if (fault_) return;
    std::string path = path_;
    if (!path.empty() && !name.empty()) path += '.';
    fault_ = ViewArchiveFault{path.append(name), sentence};
  }

  View failed(std::string_view name, const char* sentence) {
    fail(name, sentence);
    return {};
  }

  const Object* object_ = nullptr;  // whose members are asked for
  std::string path_;                // of it
  std::size_t nodes_ = 0;
  std::optional<ViewArchiveFault> fault_;
};

}  // namespace

std::expected<View, ViewArchiveFault> viewOfArchive(std::string_view json) {
  const auto value = parseArchive(json);
  if (!value) return std::unexpected(value.error());
  return ArchiveReader().document(*value);
}

}  // namespace lanternfold
