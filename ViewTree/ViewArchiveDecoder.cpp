#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "ViewTree/ArchiveMembers.h"
#include "ViewTree/ArchivePlace.h"
#include "ViewTree/ArchiveValue.h"
#include "ViewTree/ArchivedNodes.h"
#include "ViewTree/ViewArchive.h"

namespace lanternfold {
namespace {

const char* wrongCount(std::size_t count, ArchivedChildren allowed) {
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

/// Makes nodes of values, and stops at the first fault.
class ArchiveReader {
 public:
  std::expected<View, ViewArchiveFault> document(const ArchiveValue& value) {
    View view = whole(value);
    if (place_.fault()) return std::unexpected(*place_.fault());
    return view;
  }

 private:
  View whole(const ArchiveValue& value) {
    const auto members = ArchiveMembers::of(value, place_);
    const ArchiveValue* const version = members ? members->required("version") : nullptr;
    if (version == nullptr) return {};
    const auto* const number = std::get_if<double>(&version->value);
    if (number == nullptr || *number != 1) return failed("version", "It is not 1.");
    const ArchiveValue* const root = members->required("root");
    if (root == nullptr) return {};
    const ArchivePlace::Step step(place_, "root");
    return node(*root, 1);
  }

  View node(const ArchiveValue& value, std::size_t depth) {
    const auto members = ArchiveMembers::of(value, place_);
    if (!members) return {};
    if (depth > deepestArchivedNode) return failed("", "It is nested too deeply.");
    if (++nodes_ > mostArchivedNodes) return failed("", "There are too many nodes.");
    const std::string* const type = members->requiredText("type");
    if (type == nullptr) return {};
    constexpr auto kinds = std::make_index_sequence<std::variant_size_v<ViewNode>>();
    std::optional<View> view = nodeOfType(*type, *members, depth, kinds);
    return view ? *std::move(view) : failed("type", "It is not a type of node.");
  }

  template <std::size_t... kinds>
  std::optional<View> nodeOfType(const std::string& type, const ArchiveMembers& members,
                                 std::size_t depth, std::index_sequence<kinds...>) {
    std::optional<View> view;
    const auto tryKind = [&]<typename Node>(Node node) {
      if (ArchivedNode<Node>::type != type) return false;
      view = nodeOfKind(std::move(node), members, depth);
      return true;
    };
    (void)(tryKind(std::variant_alternative_t<kinds, ViewNode>()) || ...);
    return view;
  }

  template <typename Node>
  View nodeOfKind(Node node, const ArchiveMembers& members, std::size_t depth) {
    ArchivedNode<Node>::visit(members, node);
    View view{std::move(node), {}, std::nullopt};
    if (members.find("accessibleName") != nullptr) {
      members.text("accessibleName", view.accessibleName.emplace());
    }
    if (!place_.fault()) view.children = children(members, ArchivedNode<Node>::children, depth);
    return view;
  }

  std::vector<View> children(const ArchiveMembers& members, ArchivedChildren allowed,
                             std::size_t depth) {
    std::vector<View> views;
    static const ArchiveValue::List none;
    const ArchiveValue* const member = members.find("children");
    const auto* const list =
        member != nullptr ? std::get_if<ArchiveValue::List>(&member->value) : &none;
    if (list == nullptr) {
      place_.fail("children", "It is not a list.");
      return views;
    }
    if (const char* const wrong = wrongCount(list->size(), allowed)) {
      place_.fail("children", wrong);
      return views;
    }
    views.reserve(list->size());
    for (std::size_t index = 0; index < list->size() && !place_.fault(); ++index) {
      const ArchivePlace::Step step(place_, "children[" + std::to_string(index) + ']');
      views.push_back(node((*list)[index], depth + 1));
    }
    return views;
  }

  View failed(std::string_view name, const char* sentence) {
    place_.fail(name, sentence);
    return {};
  }

  ArchivePlace place_;
  std::size_t nodes_ = 0;
};

}  // namespace

std::expected<View, ViewArchiveFault> viewOfArchive(std::string_view json) {
  const auto value = parseArchive(json);
  if (!value) return std::unexpected(value.error());
  return viewOfArchive(*value);
}

std::expected<View, ViewArchiveFault> viewOfArchive(const ArchiveValue& value) {
  return ArchiveReader().document(value);
}

}  // namespace lanternfold
