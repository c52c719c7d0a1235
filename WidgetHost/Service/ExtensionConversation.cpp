#include "WidgetHost/Service/ExtensionConversation.h"

#include <utility>

namespace lanternfold {

ExtensionConversation::ExtensionConversation(std::unique_ptr<ChildProgram> program,
                                             Listener listener)
    : listener_(std::move(listener)),
      lines_(longestServiceLine, {.line = [this](std::string_view line) { take(line); },
                                  .tooLong = [this] { breakRules("a line is too long"); }}),
      program_(std::move(program)) {
  program_->stream().start({.received = [this](std::string_view bytes) { lines_.take(bytes); },
                            .ended =
                                [this](ByteStream::End) {
                                  const auto fellSilent = std::exchange(listener_.fellSilent, {});
                                  if (fellSilent) fellSilent();
                                }});
  program_->setEndHandler([this](ChildEnd end) {
    const auto ended = listener_.ended;
    if (ended) ended(end);
  });
}

void ExtensionConversation::say(std::string lines) {
  if (unread_ > mostUnread) return breakRules("it does not read what it is asked");
  unread_ += lines.size();
  program_->stream().send(std::move(lines));
  watchUnread();
}

void ExtensionConversation::kill() {
  ignore();
  program_->kill();
}

void ExtensionConversation::take(std::string_view line) {
  if (!listener_.said) return;
  ExtensionMessage message = parseExtensionMessage(line);
  if (const auto* const nonsense = std::get_if<ExtensionNonsense>(&message)) {
    return breakRules(nonsense->fault);
  }
  const auto said = listener_.said;
  said(std::move(message));
}

void ExtensionConversation::breakRules(const std::string& fault) {
  const auto brokeRules = std::exchange(listener_, {}).brokeRules;
  if (brokeRules) brokeRules(fault);
}

void ExtensionConversation::watchUnread() {
  if (unread_ == 0 || std::exchange(isWatchingUnread_, true)) return;
  program_->stream().flush([living = std::weak_ptr(self_), flushed = unread_] {
    const auto self = living.lock();
    if (!self) return;
    (*self)->isWatchingUnread_ = false;
    (*self)->unread_ -= flushed;
    (*self)->watchUnread();
  });
}

}  // namespace lanternfold
