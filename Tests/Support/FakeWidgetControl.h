// A host with a list of widgets, as its verbs see it.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/WidgetControl.h"

namespace lanternfold {

class FakeWidgetControl final : public WidgetControl {
 public:
  struct Widget {
    std::string id;
    std::string kind;
    std::string family;
    std::string adapter;
    int reloads = 0;
    friend bool operator==(const Widget&, const Widget&) = default;
  };

  [[nodiscard]] const std::vector<Widget>& widgets() const { return widgets_; }
  [[nodiscard]] bool hasQuit() const { return hasQuit_; }
  /// Every verb fails so from now on.
  void failWith(WidgetControlFailure failure) { failure_ = std::move(failure); }
  /// What `list` answers, whatever there is.
  void setList(std::string list) { list_ = std::move(list); }

  [[nodiscard]] Outcome<std::string> list() override {
    if (failure_) return std::unexpected(*failure_);
    if (list_) return *list_;
    std::string text;
    for (const Widget& widget : widgets_) text += (text.empty() ? "" : ",") + json(widget);
    return "[" + text + "]";
  }
  [[nodiscard]] Outcome<std::string> add(const std::string& kind, const std::string& family,
                                         const std::string& adapter) override {
    if (failure_) return std::unexpected(*failure_);
    widgets_.push_back({.id = "w" + std::to_string(++added_),
                        .kind = kind,
                        .family = family.empty() ? "large" : family,
                        .adapter = adapter});
    return widgets_.back().id;
  }
  [[nodiscard]] Outcome<void> remove(const std::string& id) override {
    if (failure_) return std::unexpected(*failure_);
    if (std::erase_if(widgets_, [&](const Widget& each) { return each.id == id; }) == 0) {
      return noSuchWidget(id);
    }
    return {};
  }
  [[nodiscard]] Outcome<void> reload(const std::string& id) override {
    if (failure_) return std::unexpected(*failure_);
    bool isFound = id.empty();
    for (Widget& widget : widgets_) {
      if (!id.empty() && widget.id != id) continue;
      isFound = true;
      ++widget.reloads;
    }
    return isFound ? Outcome<void>() : noSuchWidget(id);
  }
  [[nodiscard]] Outcome<void> quit() override {
    if (failure_) return std::unexpected(*failure_);
    hasQuit_ = true;
    return {};
  }

 private:
  static Outcome<void> noSuchWidget(const std::string& id) {
    return std::unexpected(WidgetControlFailure{.cause = WidgetControlFailure::Cause::refused,
                                                .sentence = "there is no widget \"" + id + "\""});
  }
  static std::string json(const Widget& widget) {
    const std::string adapter = widget.adapter.empty()
                                    ? ""
                                    : R"("adapter":{"identifier":")" + widget.adapter +
                                          R"(","display":")" + widget.adapter + R"("})";
    return R"({"id":")" + widget.id + R"(","kind":")" + widget.kind + R"(","family":")" +
           widget.family + R"(","configuration":{)" + adapter +
           R"(},"monitor":"DP-1","x":24,"y":48})";
  }

  std::vector<Widget> widgets_;
  int added_ = 0;
  bool hasQuit_ = false;
  std::optional<WidgetControlFailure> failure_;
  std::optional<std::string> list_;
};

}  // namespace lanternfold
