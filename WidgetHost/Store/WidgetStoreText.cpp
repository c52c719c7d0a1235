#include "WidgetHost/Store/WidgetStoreText.h"

#include <set>
#include <utility>

#include "WidgetHost/Store/StoredWidgetJson.h"
#include "WidgetService/QuotedText.h"

namespace lanternfold {
namespace {

using Event = StoreJson::parse_event_t;

/// Levels of lists and objects in a file.
constexpr int deepestWidgetStore = 64;

/// UTF-8 even of texts that are none.
std::string jsonText(const StoreJson& value, int indent = -1) {
  return value.dump(indent, ' ', false, StoreJson::error_handler_t::replace);
}

/// Not of what nests too deep, which would take as much stack when it is written.
std::expected<StoreJson, std::string> parsed(std::string_view text) {
  // The parser takes a zero byte for the end of the text and would not look at what stands behind.
  if (text.contains('\0')) return std::unexpected("it holds a zero byte");
  bool isTooDeep = false;
  const auto watch = [&](int depth, Event event, StoreJson&) {
    const bool begins = event == Event::object_start || event == Event::array_start;
    isTooDeep = isTooDeep || (begins && depth >= deepestWidgetStore);
    return !isTooDeep;
  };
  StoreJson json = StoreJson::parse(text.begin(), text.end(), watch, false);
  if (isTooDeep) return std::unexpected("it nests too deep");
  if (json.is_discarded()) return std::unexpected("it is no JSON");
  if (!json.is_object()) return std::unexpected("it is no JSON object");
  return json;
}

std::expected<std::int64_t, std::string> versionOf(const StoreJson& file) {
  const auto member = file.find("version");
  if (member == file.end()) return std::unexpected("\"version\" is missing");
  if (!member->is_number_integer()) return std::unexpected("\"version\" is no whole number");
  if (member->is_number_unsigned() && member->get<std::uint64_t>() > INT64_MAX) return INT64_MAX;
  const auto version = member->get<std::int64_t>();
  if (version < widgetStoreVersion) return std::unexpected("\"version\" is none that there was");
  return version;
}

/// Also of what is not understood: a later program may understand it.
void noteId(WidgetIds& ids, const StoreJson& widget) {
  if (!widget.is_object()) return;
  const auto id = widget.find("id");
  if (id != widget.end() && id->is_string()) ids.note(id->get_ref<const std::string&>());
}

void readWidget(StoredWidgets& stored, const StoreJson& value) {
  StoredWidget widget{.placed = {}, .original = jsonText(value)};
  noteId(stored.ids, value);
  const std::string ordinal = std::to_string(stored.widgets.size() + 1);
  auto placed = placedWidgetOf(value);
  if (stored.widgets.size() >= mostPlacedWidgets) {
    if (stored.widgets.size() == mostPlacedWidgets) {
      stored.remarks.push_back("those behind the first " + std::to_string(mostPlacedWidgets) +
                               " widgets are not shown");
    }
  } else if (!placed) {
    stored.remarks.push_back("widget " + ordinal + " is not shown, since " + placed.error());
  } else {
    widget.placed = std::move(*placed);
  }
  stored.widgets.push_back(std::move(widget));
}

/// Once all are known, so that a new id is none of a later widget.
void separateEqualIds(StoredWidgets& stored) {
  std::set<std::string> seen;
  for (StoredWidget& widget : stored.widgets) {
    if (!widget.placed || seen.insert(widget.placed->id).second) continue;
    const std::string former = std::exchange(widget.placed->id, stored.ids.give());
    stored.remarks.push_back("two widgets had the id " + quotedText(former) +
                             ", the second one is now " + quotedText(widget.placed->id));
  }
}

StoreJson valueOf(const StoredWidget& widget) {
  StoreJson value = widget.original.empty() ? StoreJson::object()
                                            : StoreJson::parse(widget.original, nullptr, false);
  if (!widget.placed) return value;
  const auto former = placedWidgetOf(value);
  if (!former || *former != *widget.placed) putPlacedWidget(value, *widget.placed);
  return value;
}

}  // namespace

std::expected<StoredWidgets, std::string> readWidgetStore(std::string_view text) {
  auto file = parsed(text);
  if (!file) return std::unexpected(std::move(file).error());
  const auto version = versionOf(*file);
  if (!version) return std::unexpected(version.error());
  StoredWidgets stored;
  stored.isOfLaterVersion = *version > widgetStoreVersion;
  const auto list = file->find("widgets");
  stored.hasList = list != file->end() && list->is_array();
  if (!stored.hasList && !stored.isOfLaterVersion) {
    return std::unexpected("\"widgets\" is missing, or no list");
  }
  if (stored.hasList) {
    for (const StoreJson& value : *list) readWidget(stored, value);
    separateEqualIds(stored);
    *list = StoreJson::array();
  }
  stored.otherMembers = jsonText(*file);
  return stored;
}

std::string widgetStoreText(const StoredWidgets& stored) {
  StoreJson file = stored.otherMembers.empty()
                       ? StoreJson::object()
                       : StoreJson::parse(stored.otherMembers, nullptr, false);
  if (stored.otherMembers.empty()) file["version"] = widgetStoreVersion;
  StoreJson list = StoreJson::array();
  for (const StoredWidget& widget : stored.widgets) list.push_back(valueOf(widget));
  file["widgets"] = std::move(list);
  // For whoever looks into it; nobody does where that alone would make it too long.
  std::string text = jsonText(file, 2) + "\n";
  return text.size() <= longestWidgetStoreBytes ? text : jsonText(file) + "\n";
}

}  // namespace lanternfold
