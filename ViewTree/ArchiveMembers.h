// The members of one object of an archive, as a kind of node asks for them: a visitor of
// ViewTree/ArchivedNodes.h.
//
// Made by: the decoder, for each object. Rule: what is missing, of another kind or out of its
// bounds is a fault of the place, and what was to be read stays or becomes any value of its type.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ViewTree/ArchivePlace.h"
#include "ViewTree/ArchiveRules.h"
#include "ViewTree/ArchiveValue.h"
#include "ViewTree/View.h"

namespace lanternfold {

class ArchiveMembers {
 public:
  /// Those of `value`, which stands at `name` of the place, or at the place itself without one.
  /// None when it is no object. `value` and `place` outlive them.
  [[nodiscard]] static std::optional<ArchiveMembers> of(const ArchiveValue& value,
                                                        ArchivePlace& place,
                                                        std::string_view name = "");

  /// Null when there is none, which is no fault.
  [[nodiscard]] const ArchiveValue* find(std::string_view name) const;
  /// Null when there is none.
  [[nodiscard]] const ArchiveValue* required(std::string_view name) const;
  /// Null when there is none, or when it is no text.
  [[nodiscard]] const std::string* requiredText(std::string_view name) const;

  void text(std::string_view name, std::string& text) const;
  void optionalText(std::string_view name, std::string& text) const;
  void url(std::string_view name, std::string& url) const;
  void number(std::string_view name, double& number, const NumberRule& rule) const;
  void optionalNumber(std::string_view name, std::optional<double>& number,
                      const NumberRule& rule) const;
  void count(std::string_view name, std::size_t& count, const CountRule& rule) const;
  void numbers(std::string_view name, std::vector<double>& numbers, const NumberRule& rule) const;
  void alignment(std::string_view name, Alignment& alignment) const;
  void colour(std::string_view name, Colour& colour) const;

  template <typename Enumeration, std::size_t count>
  void choice(std::string_view name, Enumeration& value,
              const std::array<std::string_view, count>& names, Enumeration standard) const {
    value = static_cast<Enumeration>(indexOf(name, names, static_cast<std::size_t>(standard)));
  }

 private:
  ArchiveMembers(const ArchiveValue::Object& object, ArchivePlace& place)
      : object_(object), place_(place) {}

  /// Which of the words the member is; `standard` where it is not there.
  [[nodiscard]] std::size_t indexOf(std::string_view name, std::span<const std::string_view> words,
                                    std::size_t standard) const;
  [[nodiscard]] double numberOf(const ArchiveValue& value, std::string_view name,
                                const NumberRule& rule) const;

  const ArchiveValue::Object& object_;
  ArchivePlace& place_;
};

}  // namespace lanternfold
