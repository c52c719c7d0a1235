// A content and the accessories beside it.
#include <algorithm>
#include <cstddef>

#include "ViewTree/Arrangement.h"
#include "ViewTree/LayoutNode.h"
#include "ViewTree/LayoutPass.h"

namespace lanternfold {
namespace {

/// Which of the accessories are shown, and how wide the content is.
struct Shares {
  bool showsLeading = true;
  bool showsTrailing = true;
  std::optional<double> content;
};

class AccessoryArranger {
 public:
  AccessoryArranger(const AccessoryRowNode& row, const Arranging& view)
      : row_(row),
        view_(view),
        own_{std::nullopt, view.offer.height},
        leading_(view.self.children[0]),
        content_(view.self.children[1]),
        trailing_(view.self.children[2]) {}

  Arrangement arranged() {
    const Shares shares = sharesOf(view_.offer.width);
    if (shares.showsLeading) add(leading_, own_);
    add(content_, {shares.content, own_.height});
    if (shares.showsTrailing) add(trailing_, own_);
    for (std::size_t index = 0; index < positions_.size(); ++index) {
      PlacedChild& child = result_.children[index];
      child.at.y = beginningFor(positions_[index], guide_.position());
      addFirstBaseline(result_.guides,
                       shifted(view_.pass.dimensions(*child.node, child.offer).guides, child.at));
    }
    result_.size.height = guide_.extent();
    return std::move(result_);
  }

 private:
  /// What an accessory takes of the width, the space beside it included.
  double widthOf(LayoutNode& accessory) {
    const double width = view_.pass.measure(accessory, own_).width;
    return width > 0 ? width + row_.spacing : 0;
  }

  Shares sharesOf(std::optional<double> width) {
    if (!width) return {};
    const bool hasTrailing = !trailing_.isNothing;
    const double besideLeading = *width - widthOf(leading_);
    const double besideBoth = besideLeading - widthOf(trailing_);
    if (hasTrailing && besideBoth >= row_.besideBoth) return {true, true, besideBoth};
    if (besideLeading >= row_.besideLeading) {
      return {true, false, hasTrailing ? std::min(besideLeading, row_.besideBoth) : besideLeading};
    }
    return {false, false, std::min(*width, row_.besideLeading)};
  }

  void add(LayoutNode& child, const ProposedSize& offer) {
    const Dimensions dimensions = view_.pass.dimensions(child, offer);
    const bool isAccessory = &child != &content_;
    if (isAccessory && dimensions.size.width <= 0) return;
    if (!result_.children.empty()) result_.size.width += row_.spacing;
    result_.children.push_back({&child, {result_.size.width, 0}, offer});
    result_.size.width += dimensions.size.width;
    positions_.push_back(positionOf(row_.alignment, dimensions));
    guide_.add(positions_.back());
  }

  const AccessoryRowNode& row_;
  const Arranging& view_;
  ProposedSize own_;
  LayoutNode& leading_;
  LayoutNode& content_;
  LayoutNode& trailing_;
  Arrangement result_;
  std::vector<GuidePosition> positions_;
  SharedGuide guide_;
};

}  // namespace

Arrangement arranged(const AccessoryRowNode& node, const Arranging& view) {
  return AccessoryArranger(node, view).arranged();
}

}  // namespace lanternfold
