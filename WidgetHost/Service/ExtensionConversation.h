// One extension that runs: lines to it, messages of it, its end.
//
// Made by: `ExtensionClient`, one for each start.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Platform/ChildProgram.h"
#include "WidgetService/ExtensionMessage.h"
#include "WidgetService/LineSplitter.h"

namespace lanternfold {

/// Main queue. Destroying it closes the socket, upon which an extension leaves; none of the
/// listener's functions may do that.
class ExtensionConversation {
 public:
  /// Bytes that an extension may leave unread before it is told something more: room for all
  /// questions at once.
  static constexpr std::size_t mostUnread = std::size_t{4} * 1024 * 1024;

  struct Listener {
    std::function<void(ExtensionMessage)> said;
    /// Once: it makes no sense, and nothing more of it is heard. A clause about what is wrong.
    std::function<void(const std::string& fault)> brokeRules;
    /// Once: nothing can be heard of it any more, whether it has ended or not.
    std::function<void()> fellSilent;
    /// Once: the program has ended, and all that it has said was heard.
    std::function<void(ChildEnd)> ended;
  };

  ExtensionConversation(std::unique_ptr<ChildProgram> program, Listener listener);
  ExtensionConversation(const ExtensionConversation&) = delete;
  ExtensionConversation& operator=(const ExtensionConversation&) = delete;

  /// `lines` each have their end.
  void say(std::string lines);

  /// Ends the program at once; none of the listener's functions is called any more.
  void kill();
  /// None of the listener's functions is called any more.
  void ignore() { listener_ = {}; }

 private:
  void take(std::string_view line);
  void breakRules(const std::string& fault);
  void watchUnread();

  Listener listener_;
  LineSplitter lines_;
  std::size_t unread_ = 0;
  bool isWatchingUnread_ = false;
  /// Expires with this: what the stream says later is not heard.
  std::shared_ptr<ExtensionConversation*> self_ = std::make_shared<ExtensionConversation*>(this);
  std::unique_ptr<ChildProgram> program_;
};

}  // namespace lanternfold
