// A text measurer that asks another one only once for each text and font, and no longer when the
// steps of a layout have run out.
//
// Made by: the layout. Used on one thread.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>

#include "ViewTree/TextMeasurer.h"

namespace lanternfold {

/// How much work a layout may still do.
class LayoutSteps {
 public:
  explicit LayoutSteps(std::size_t most) : left_(most) {}

  void take(std::size_t count) { left_ -= count < left_ ? count : left_; }
  [[nodiscard]] bool haveRunOut() const { return left_ == 0; }

 private:
  std::size_t left_;
};

class RememberingTextMeasurer final : public TextMeasurer {
 public:
  RememberingTextMeasurer(const TextMeasurer& measurer, LayoutSteps& steps)
      : measurer_(measurer), steps_(steps) {}

  /// Without a step left no text but the empty one has a place that is wide enough.
  [[nodiscard]] Size measure(std::string_view text, const Font& font) const override;
  [[nodiscard]] double baseline(const Font& font) const override {
    return measurer_.baseline(font);
  }

 private:
  struct Key {
    std::string text;
    Font font;
  };
  struct KeyView {
    std::string_view text;
    const Font& font;
    KeyView(std::string_view ofText, const Font& inFont) : text(ofText), font(inFont) {}
    KeyView(const Key& key)
        : text(key.text), font(key.font) {}  // NOLINT(google-explicit-constructor)
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(const KeyView& key) const;
  };
  struct Equal {
    using is_transparent = void;
    bool operator()(const KeyView& one, const KeyView& other) const {
      return one.text == other.text && one.font == other.font;
    }
  };

  const TextMeasurer& measurer_;
  LayoutSteps& steps_;
  mutable std::unordered_map<Key, Size, Hash, Equal> known_;
};

}  // namespace lanternfold
