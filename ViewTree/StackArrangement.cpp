// Rows, columns and layers.
#include <algorithm>
#include <cstddef>
#include <vector>

#include "ViewTree/Arrangement.h"
#include "ViewTree/LayoutArithmetic.h"
#include "ViewTree/LayoutNode.h"
#include "ViewTree/LayoutPass.h"

namespace lanternfold {
namespace {

enum class Axis { horizontal, vertical };

double along(Axis axis, Size size) { return axis == Axis::horizontal ? size.width : size.height; }

std::optional<double> along(Axis axis, const ProposedSize& offer) {
  return axis == Axis::horizontal ? offer.width : offer.height;
}

ProposedSize withLength(Axis axis, ProposedSize offer, std::optional<double> length) {
  (axis == Axis::horizontal ? offer.width : offer.height) = length;
  return offer;
}

class StackArranger {
 public:
  StackArranger(Axis axis, double spacing, const Arranging& view) : axis_(axis), view_(view) {
    for (LayoutNode& child : view.self.children) {
      if (!child.isNothing) members_.push_back(&child);
    }
    spacing_ = fittingSpacing(spacing, members_.size(), along(axis, view.offer));
  }

  template <typename Alignment>
  Arrangement arranged(Alignment alignment) {
    const Shares offers = shares();
    Arrangement result;
    std::vector<GuidePosition> positions;
    SharedGuide guide;
    double length = 0;
    auto offer = offers.begin();
    for (LayoutNode& child : view_.self.children) {
      const bool isMember = !child.isNothing;
      if (isMember && offer != offers.begin()) length += spacing_;
      const ProposedSize own =
          withLength(axis_, view_.offer, isMember ? *offer++ : std::optional<double>(0));
      Dimensions dimensions = view_.pass.dimensions(child, own);
      positions.push_back(positionOf(alignment, dimensions));
      if (isMember) guide.add(positions.back());
      result.children.push_back({&child, pointAt(length, 0), own});
      length += along(axis_, dimensions.size);
    }
    result.size = sizeOf(std::max(0.0, length), guide.extent());
    for (std::size_t index = 0; index < positions.size(); ++index) {
      PlacedChild& child = result.children[index];
      const double across = beginningFor(positions[index], guide.position());
      (axis_ == Axis::horizontal ? child.at.y : child.at.x) = across;
      addFirstBaseline(result.guides,
                       shifted(view_.pass.dimensions(*child.node, child.offer).guides, child.at));
    }
    return result;
  }

 private:
  using Shares = std::vector<std::optional<double>>;

  [[nodiscard]] Point pointAt(double length, double across) const {
    return axis_ == Axis::horizontal ? Point{length, across} : Point{across, length};
  }

  [[nodiscard]] Size sizeOf(double length, double across) const {
    return axis_ == Axis::horizontal ? Size{length, across} : Size{across, length};
  }

  /// What each member is offered along the axis.
  Shares shares() {
    const std::optional<double> available = along(axis_, view_.offer);
    // How flexible a child is matters only beside others: asking would measure its whole tree
    // twice.
    if (!available || members_.size() < 2) return Shares(members_.size(), available);
    const auto lengthFor = [this](std::size_t member, double offered) {
      return along(axis_,
                   view_.pass.measure(*members_[member], withLength(axis_, view_.offer, offered)));
    };
    std::vector<StackMember> members;
    members.reserve(members_.size());
    for (std::size_t member = 0; member < members_.size(); ++member) {
      members.push_back(
          {members_[member]->priority, lengthFor(member, 0), lengthFor(member, unlimited)});
    }
    const std::vector<double> offers = stackOffers(*available, spacing_, members, lengthFor);
    return {offers.begin(), offers.end()};
  }

  Axis axis_;
  const Arranging& view_;
  std::vector<LayoutNode*> members_;
  double spacing_ = 0;
};

}  // namespace

Arrangement arranged(const HStackNode& node, const Arranging& view) {
  return StackArranger(Axis::horizontal, node.spacing, view).arranged(node.alignment);
}

Arrangement arranged(const VStackNode& node, const Arranging& view) {
  return StackArranger(Axis::vertical, node.spacing, view).arranged(node.alignment);
}

Arrangement arranged(const ZStackNode& node, const Arranging& view) {
  SharedGuide across;
  SharedGuide down;
  std::vector<Dimensions> layers;
  for (LayoutNode& child : view.self.children) {
    const Dimensions& layer = layers.emplace_back(view.pass.dimensions(child, view.offer));
    across.add(positionOf(node.alignment.horizontal, layer));
    down.add(positionOf(node.alignment.vertical, layer));
  }
  Arrangement result;
  result.size = {across.extent(), down.extent()};
  for (std::size_t index = 0; index < layers.size(); ++index) {
    const Dimensions& layer = layers[index];
    const Point at{beginningFor(positionOf(node.alignment.horizontal, layer), across.position()),
                   beginningFor(positionOf(node.alignment.vertical, layer), down.position())};
    result.children.push_back({&view.self.children[index], at, view.offer});
    addFirstBaseline(result.guides, shifted(layer.guides, at));
  }
  return result;
}

}  // namespace lanternfold
