#include "CommandLine/Commands/CtlCommand.h"

#include <algorithm>
#include <glib.h>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "CommandLine/TextTable.h"
#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

using Json = nlohmann::ordered_json;

bool isCapital(char letter) { return letter >= 'A' && letter <= 'Z'; }

/// What a host says in its dialogs is a sentence of its own; here the program's name stands before
/// it. A first word with more than one capital is a widget's kind, and stays.
std::string behindProgramName(std::string sentence) {
  const std::string_view word = std::string_view(sentence).substr(0, sentence.find(' '));
  if (std::ranges::count_if(word, isCapital) == 1 && isCapital(word.front())) {
    sentence.front() = static_cast<char>(sentence.front() - 'A' + 'a');
  }
  return sentence;
}

CommandFailure failureOf(const WidgetControlFailure& failure) {
  return workFailed(behindProgramName(failure.sentence));
}

template <typename Result>
std::expected<void, CommandFailure> doneOr(const WidgetControl::Outcome<Result>& outcome) {
  if (!outcome) return std::unexpected(failureOf(outcome.error()));
  return {};
}

/// A bus carries nothing else.
bool isUtf8(std::string_view bytes) {
  return g_utf8_validate_len(bytes.data(), bytes.size(), nullptr) != FALSE;
}

/// What a column shows of `widget`; whatever it is not meant to be is empty.
std::string textOf(const Json& widget, const char* member) {
  const auto found = widget.find(member);
  if (found == widget.end()) return {};
  if (found->is_string()) return found->get<std::string>();
  return found->is_number_integer() ? found->dump() : std::string();
}

std::string adapterOf(const Json& widget) {
  const auto configuration = widget.find("configuration");
  if (configuration == widget.end() || !configuration->is_object()) return {};
  const auto adapter = configuration->find("adapter");
  if (adapter == configuration->end() || !adapter->is_object()) return {};
  return textOf(*adapter, "display");
}

void writeTable(const Json& widgets, const Console& console) {
  TextTable table({{.title = "Id"},
                   {.title = "Widget"},
                   {.title = "Size"},
                   {.title = "Adapter"},
                   {.title = "Monitor"},
                   {.title = "X", .alignment = ColumnAlignment::right},
                   {.title = "Y", .alignment = ColumnAlignment::right}});
  for (const Json& widget : widgets) {
    table.addRow({textOf(widget, "id"), textOf(widget, "kind"), textOf(widget, "family"),
                  adapterOf(widget), textOf(widget, "monitor"), textOf(widget, "x"),
                  textOf(widget, "y")});
  }
  table.write(console.output, console.style);
}

/// An array of objects, from whoever has the host's name on the bus.
std::optional<Json> widgetsIn(const std::string& text) {
  Json widgets = Json::parse(text, nullptr, /*allow_exceptions=*/false);
  if (!widgets.is_array()) return std::nullopt;
  for (const Json& widget : widgets) {
    if (!widget.is_object()) return std::nullopt;
  }
  return widgets;
}

}  // namespace

std::expected<NewWidget, CommandFailure> checkNewWidget(const WidgetOptions& options) {
  const auto question = widgetQuestion(options, EntryCall::Kind::timeline);
  if (!question) return std::unexpected(question.error());
  return NewWidget{.kind = options.kind,
                   .family = options.family.value_or(""),
                   .adapter = options.adapter.value_or("")};
}

std::expected<void, CommandFailure> checkWidgetId(const std::string& id) {
  if (!id.empty() && id.size() <= longestWidgetControlText && isUtf8(id)) return {};
  return std::unexpected(badArguments("ID needs a widget's id, not " + inQuotes(id) +
                                      "; \"lanternfold-widgets ctl list\" shows them"));
}

std::expected<void, CommandFailure> runCtlList(bool json, const Machine& machine,
                                               const Console& console) {
  const auto listed = machine.widgetControl.list();
  if (!listed) return std::unexpected(failureOf(listed.error()));
  const auto widgets = widgetsIn(*listed);
  if (!widgets) {
    return std::unexpected(
        workFailed("the program that shows the widgets has answered with no list of them; end it "
                   "and start it anew with \"lanternfold-widgets show\""));
  }
  if (json) {
    console.output << widgets->dump() << '\n';
  } else {
    writeTable(*widgets, console);
  }
  return {};
}

std::expected<void, CommandFailure> runCtlAdd(const NewWidget& widget, const Machine& machine,
                                              const Console& console) {
  const auto added = machine.widgetControl.add(widget.kind, widget.family, widget.adapter);
  if (!added) return std::unexpected(failureOf(added.error()));
  console.output << printable(*added) << '\n';
  return {};
}

std::expected<void, CommandFailure> runCtlRemove(const std::string& id, const Machine& machine) {
  return doneOr(machine.widgetControl.remove(id));
}

std::expected<void, CommandFailure> runCtlReload(const std::optional<std::string>& id,
                                                 const Machine& machine) {
  return doneOr(machine.widgetControl.reload(id.value_or("")));
}

std::expected<void, CommandFailure> runCtlQuit(const Machine& machine) {
  return doneOr(machine.widgetControl.quit());
}

}  // namespace lanternfold
