#include "Tests/Support/FakeResolvers.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

template <typename Predicate>
std::vector<BasicInterface> selected(const std::vector<BasicInterface>& interfaces,
                                     const Predicate& predicate) {
  std::vector<BasicInterface> result;
  std::ranges::copy_if(interfaces, std::back_inserter(result), predicate);
  return result;
}

}  // namespace

std::vector<BasicInterface> FakeInterfaceResolver::interfacesExcluding(
    const std::vector<std::string>& names) {
  return selected(machine, [&names](const BasicInterface& interface) {
    return std::ranges::find(names, interface.name) == names.end();
  });
}

std::vector<BasicInterface> FakeInterfaceResolver::interfacesPrefixed(std::string_view prefix) {
  askedPrefixes.emplace_back(prefix);
  return selected(machine, [prefix](const BasicInterface& interface) {
    return interface.name.starts_with(prefix);
  });
}

std::optional<BasicInterface> FakeInterfaceResolver::interfaceNamed(std::string_view name) {
  const auto interface = std::ranges::find(machine, name, &BasicInterface::name);
  if (interface == machine.end()) return std::nullopt;
  return *interface;
}

void FakeInternetInfoResolver::resolve(UpdateHandler updateHandler) {
  const std::size_t resolution = handlers_.size();
  handlers_.push_back(std::move(updateHandler));
  for (const Answer& immediate : std::vector(immediateAnswers)) answer(resolution, immediate);
}

void FakeInternetInfoResolver::answer(std::size_t resolution, const Answer& answer) {
  // A copy, because a handler may begin another resolution.
  const UpdateHandler handler = handlers_.at(resolution);
  if (!handler) fatalError("a resolution was answered after its end");
  if (answer.complete) handlers_[resolution] = nullptr;
  handler(answer.info, answer.complete, answer.error);
}

void FakeInternetInfoResolver::abandon() { std::vector<UpdateHandler>().swap(handlers_); }

}  // namespace lanternfold
