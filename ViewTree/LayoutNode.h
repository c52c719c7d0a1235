// A view while it is laid out: what stays the same for every offer, and what was answered to those
// that were made already.
//
// Made by: `makeLayoutNode`, once for each layout of a view that stays where it is.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ViewTree/FittedText.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/Guides.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// The answers to the last different questions, as many as `capacity`.
template <typename Question, typename Answer, std::size_t capacity>
class RememberedAnswers {
 public:
  [[nodiscard]] const Answer* find(const Question& question) const {
    for (const Entry& entry : entries_) {
      if (entry.question == question) return &entry.answer;
    }
    return nullptr;
  }

  const Answer& add(const Question& question, Answer answer) {
    if (entries_.size() < capacity) {
      return entries_.emplace_back(Entry{question, std::move(answer)}).answer;
    }
    Entry& oldest = entries_[next_];
    next_ = (next_ + 1) % capacity;
    oldest = {question, std::move(answer)};
    return oldest.answer;
  }

 private:
  struct Entry {
    Question question;
    Answer answer;
  };

  std::vector<Entry> entries_;
  std::size_t next_ = 0;
};

struct LayoutNode {
  const View* view = nullptr;
  std::vector<LayoutNode> children;
  /// Takes part in no stack: an empty view, and what only changes how one would look.
  bool isNothing = false;
  /// For the stack around it; that of a modifier is that of its child.
  double priority = 0;

  /// The text, with the time of drawing filled in; null for every other node.
  const TextNode* text = nullptr;
  std::unique_ptr<TextNode> filledText;

  RememberedAnswers<ProposedSize, Dimensions, 32> dimensions;
  RememberedAnswers<ProposedSize, FittedText, 4> fittedTexts;
};

/// Of `view`, which must outlive it.
[[nodiscard]] LayoutNode makeLayoutNode(const View& view, const std::string& drawingTime);

}  // namespace lanternfold
