#include "ViewTree/PlainText.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>
#include <variant>

#include "Support/TextPlaceholders.h"

namespace lanternfold {
namespace {

using Rows = std::vector<PlainTextRow>;

Rows rowOf(std::string text) {
  if (text.empty()) return {};
  return {{std::move(text)}};
}

class PlainTextMaker {
 public:
  explicit PlainTextMaker(const std::string& drawingTime) : drawingTime_(drawingTime) {}

  Rows rows(const View& view) const {
    if (std::holds_alternative<ButtonNode>(view.node)) return {};
    if (std::holds_alternative<FirstThatFitsNode>(view.node)) return rows(view.children.front());
    Rows own = ownRows(view);
    // The name of such a row stands in place of a title, which its content tells by itself.
    const bool hasTitle = std::holds_alternative<AccessoryRowNode>(view.node);
    if (view.accessibleName && !hasTitle) own = named(*view.accessibleName, own);
    if (const auto* link = std::get_if<LinkNode>(&view.node)) own.push_back({link->url});
    return own;
  }

 private:
  Rows ownRows(const View& view) const {
    if (const auto* words = std::get_if<TextNode>(&view.node)) return rowOf(words->text);
    if (const auto* time = std::get_if<DrawingTimeNode>(&view.node)) {
      return rowOf(fillPlaceholders(time->format, {drawingTime_}));
    }
    Rows all;
    bool isRow = std::holds_alternative<HStackNode>(view.node);
    for (const View& child : view.children) {
      Rows own = rows(child);
      isRow = isRow && (own.empty() || (own.size() == 1 && own.front().size() == 1));
      std::ranges::move(own, std::back_inserter(all));
    }
    return isRow ? inOneRow(all) : all;
  }

  static Rows inOneRow(const Rows& cells) {
    PlainTextRow row;
    for (const PlainTextRow& cell : cells) row.push_back(cell.front());
    if (row.empty()) return {};
    return {row};
  }

  /// The name, parted before what the last of the texts say, as many of them as it ends with.
  static Rows named(const std::string& name, const Rows& texts) {
    std::string_view label = name;
    for (auto row = texts.rbegin(); row != texts.rend() && row->size() == 1; ++row) {
      if (label == row->front()) return rowOf(name);
      if (!label.ends_with(row->front())) break;
      const std::string_view rest = label.substr(0, label.size() - row->front().size());
      if (!rest.ends_with(' ')) break;
      label = rest.substr(0, rest.find_last_not_of(' ') + 1);
    }
    if (label.empty() || label.size() == name.size()) return rowOf(name);
    const std::size_t value = name.find_first_not_of(' ', label.size());
    return {{std::string(label), name.substr(value)}};
  }

  const std::string& drawingTime_;
};

}  // namespace

std::vector<PlainTextRow> plainTextRows(const View& view, const std::string& drawingTime) {
  return PlainTextMaker(drawingTime).rows(view);
}

}  // namespace lanternfold
