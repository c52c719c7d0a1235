#include "Wiring/ArgumentFaults.h"

#include <algorithm>
#include <set>
#include <string_view>

#include <CLI/CLI.hpp>

#include "Wiring/PrintableText.h"

namespace lanternfold {
namespace {

using Fault = std::optional<std::string>;

bool looksLikeOption(std::string_view word) { return word.size() > 1 && word.front() == '-'; }

bool mayRepeat(const CLI::Option& option) { return option.get_items_expected_max() > 1; }

bool isFlag(const CLI::Option& option) { return option.get_items_expected_max() == 0; }

/// Walks over the arguments as the library does, one option with its value at a time.
class ArgumentWalk {
 public:
  ArgumentWalk(const CLI::App& app, std::span<const std::string> arguments)
      : arguments_(arguments), command_(&app) {}

  Fault firstFault() {
    while (next_ < arguments_.size()) {
      if (auto fault = faultOf(arguments_[next_++])) return fault;
    }
    return lacksCommand() ? "no command was given; " + whereToLook() : faultOfWhatIsMissing();
  }

 private:
  /// Whether the command that does something is still to be named.
  bool lacksCommand() const {
    return !command_->get_subcommands([](const CLI::App*) { return true; }).empty();
  }

  Fault faultOf(const std::string& word) {
    if (!onlyPositionals_ && word == "--" && !lacksCommand()) {
      onlyPositionals_ = true;
      return std::nullopt;
    }
    if (onlyPositionals_ || !looksLikeOption(word)) return faultOfPositional(word);
    return word.starts_with("--") ? faultOfLong(word) : faultOfShort(word);
  }

  Fault faultOfPositional(const std::string& word) {
    if (lacksCommand()) {
      const auto named =
          command_->get_subcommands([&](const CLI::App* each) { return each->get_name() == word; });
      if (!named.empty()) {
        command_ = named.front();
        return std::nullopt;
      }
      return "unknown command " + inQuotes(word) + "; " + whereToLook();
    }
    const auto places =
        command_->get_options([](const auto* each) { return each->get_positional(); });
    if (positionals_++ < places.size()) return std::nullopt;
    return "unexpected argument " + inQuotes(word) + "; " + whereToLook();
  }

  Fault faultOfLong(const std::string& word) {
    const std::size_t end = word.find('=');
    const std::string name = word.substr(0, end);
    const CLI::Option* option = find(
        [&](const auto* each) { return name.size() > 2 && each->check_lname(name.substr(2)); });
    if (option == nullptr) return unknownOption(name);
    const bool hasValue = end != std::string::npos;
    if (hasValue && isFlag(*option)) {
      return name + " takes no value, and was given " + inQuotes(word.substr(end + 1));
    }
    return faultOfUse(*option, hasValue);
  }

  Fault faultOfShort(const std::string& word) {
    const CLI::Option* option =
        find([&](const auto* each) { return each->check_sname(word.substr(1, 1)); });
    if (option == nullptr) return unknownOption(word);
    if (isFlag(*option) && word.size() > 2) return faultOfShort("-" + word.substr(2));
    return faultOfUse(*option, /*hasValue=*/word.size() > 2);
  }

  Fault faultOfUse(const CLI::Option& option, bool hasValue) {
    if (isFlag(option)) return std::nullopt;
    const std::string needs = option.get_name() + " needs " + option.get_type_name();
    if (!hasValue && next_ == arguments_.size()) return needs + ", and nothing follows it";
    if (!hasValue && isNoValue(arguments_[next_])) {
      return needs + ", and " + inQuotes(arguments_[next_]) + " follows it";
    }
    if (!hasValue) ++next_;
    if (given_.insert(&option).second || mayRepeat(option)) return std::nullopt;
    return option.get_name() + " was given twice; give it once";
  }

  /// Whether a word behind an option is the next option and not its value. A number below zero is
  /// a value, if a wrong one.
  bool isNoValue(const std::string& word) const {
    if (word.starts_with("--")) return true;
    return looksLikeOption(word) &&
           find([&](const auto* each) { return each->check_sname(word.substr(1, 1)); }) != nullptr;
  }

  Fault faultOfWhatIsMissing() const {
    std::size_t place = 0;
    for (const CLI::Option* option : command_->get_options()) {
      const bool isGiven =
          option->get_positional() ? place++ < positionals_ : given_.contains(option);
      if (isGiven || !option->get_required()) continue;
      const std::string name = option->get_positional()
                                   ? option->get_option_text()
                                   : option->get_name() + " " + option->get_option_text();
      // The program's own name stands before every sentence.
      const std::string who = command_->get_parent() ? command_->get_name() + " " : "";
      return who + "needs " + name + ", " + option->get_type_name();
    }
    return std::nullopt;
  }

  template <typename Condition>
  const CLI::Option* find(Condition condition) const {
    const auto found =
        command_->get_options([&](const CLI::Option* each) { return condition(each); });
    return found.empty() ? nullptr : found.front();
  }

  std::string unknownOption(const std::string& name) const {
    const char* const hint = lacksCommand() ? "; options come behind the command; " : "; ";
    return "unknown option " + inQuotes(name) + hint + whereToLook();
  }

  std::string whereToLook() const {
    std::string names = command_->get_name();
    for (const CLI::App* each = command_->get_parent(); each != nullptr;
         each = each->get_parent()) {
      names = each->get_name() + " " + names;
    }
    return '"' + names + " --help\" lists " + (lacksCommand() ? "the commands" : "what it takes");
  }

  std::span<const std::string> arguments_;
  std::size_t next_ = 0;
  const CLI::App* command_;  ///< as far as it has been named; the program itself to begin with
  bool onlyPositionals_ = false;
  std::size_t positionals_ = 0;
  std::set<const CLI::Option*> given_;
};

}  // namespace

std::optional<std::string> firstArgumentFault(const CLI::App& app,
                                              std::span<const std::string> arguments) {
  return ArgumentWalk(app, arguments).firstFault();
}

std::vector<std::string> withEmptyValuesApart(std::span<const std::string> arguments) {
  std::vector<std::string> result;
  const auto marker = std::ranges::find(arguments, "--");
  for (auto word = arguments.begin(); word != arguments.end(); ++word) {
    const bool isEmptyValue = word < marker && word->starts_with("--") && word->ends_with('=');
    if (isEmptyValue && word->find('=') == word->size() - 1) {
      result.push_back(word->substr(0, word->size() - 1));
      result.emplace_back();
    } else {
      result.push_back(*word);
    }
  }
  return result;
}

}  // namespace lanternfold
