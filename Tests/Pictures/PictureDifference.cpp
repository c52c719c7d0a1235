#include "Tests/Pictures/PictureDifference.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "Tests/Pictures/LabPlanes.h"

namespace lanternfold {
namespace {

/// The side of a patch over which one SSIM value is computed, and the step to the next.
constexpr std::size_t patch = 8;
constexpr std::size_t patchStep = 4;
/// A patch with less variance of lightness in both pictures has no structure; its colour is judged.
constexpr double leastVariance = 25;
/// As if there were so many patches at least: a single one, which touches the edge of a letter, is
/// chance.
constexpr std::size_t leastPatches = 8;

/// SSIM of the lightness in the patch at x, y; none where there is no structure.
std::optional<double> similarityAt(const LabPlanes& one, const LabPlanes& other, std::size_t x,
                                   std::size_t y) {
  const std::size_t right = std::min(x + patch, one.width);
  const std::size_t bottom = std::min(y + patch, one.height);
  double sum1 = 0;
  double sum2 = 0;
  double squares1 = 0;
  double squares2 = 0;
  double products = 0;
  for (std::size_t row = y; row < bottom; ++row) {
    for (std::size_t column = x; column < right; ++column) {
      const double light1 = one.at(column, row).lightness;
      const double light2 = other.at(column, row).lightness;
      sum1 += light1;
      sum2 += light2;
      squares1 += light1 * light1;
      squares2 += light2 * light2;
      products += light1 * light2;
    }
  }
  // The constants of the measure for values of 0 to 100.
  constexpr double stabiliser1 = 1;
  constexpr double stabiliser2 = 9;
  const auto count = static_cast<double>((right - x) * (bottom - y));
  const double mean1 = sum1 / count;
  const double mean2 = sum2 / count;
  const double variance1 = squares1 / count - mean1 * mean1;
  const double variance2 = squares2 / count - mean2 * mean2;
  const double covariance = products / count - mean1 * mean2;
  if (std::max(variance1, variance2) < leastVariance) return std::nullopt;
  return (2 * mean1 * mean2 + stabiliser1) * (2 * covariance + stabiliser2) /
         ((mean1 * mean1 + mean2 * mean2 + stabiliser1) * (variance1 + variance2 + stabiliser2));
}

/// Where windows of `size` begin along a length, the last one at its end.
std::vector<std::size_t> beginnings(std::size_t length, std::size_t size, std::size_t step) {
  std::vector<std::size_t> all;
  for (std::size_t begin = 0; begin + size < length; begin += step) all.push_back(begin);
  all.push_back(length > size ? length - size : 0);
  return all;
}

/// Of the patches of `window` that have structure.
double meanSimilarity(const LabPlanes& one, const LabPlanes& other, const WindowDifference& window,
                      std::size_t right, std::size_t bottom) {
  double lost = 0;
  std::size_t count = 0;
  for (const std::size_t y : beginnings(bottom - window.y, patch, patchStep)) {
    for (const std::size_t x : beginnings(right - window.x, patch, patchStep)) {
      const auto similarity = similarityAt(one, other, window.x + x, window.y + y);
      if (!similarity) continue;
      lost += 1 - *similarity;
      ++count;
    }
  }
  return 1 - lost / static_cast<double>(std::max(count, leastPatches));
}

Lab meanColour(const LabPlanes& planes, const WindowDifference& window, std::size_t right,
               std::size_t bottom) {
  Lab sum;
  for (std::size_t y = window.y; y < bottom; ++y) {
    for (std::size_t x = window.x; x < right; ++x) {
      const Lab& pixel = planes.at(x, y);
      sum.lightness += pixel.lightness;
      sum.greenRed += pixel.greenRed;
      sum.blueYellow += pixel.blueYellow;
    }
  }
  const auto count = static_cast<double>((right - window.x) * (bottom - window.y));
  return {sum.lightness / count, sum.greenRed / count, sum.blueYellow / count};
}

std::string sizeText(const Picture& picture) {
  return std::to_string(picture.width) + " x " + std::to_string(picture.height);
}

std::string sentenceOn(const std::vector<WindowDifference>& windows,
                       const PictureTolerance& tolerance) {
  const auto colour = std::ranges::max_element(windows, {}, &WindowDifference::colourDifference);
  const auto structure = std::ranges::min_element(windows, {}, &WindowDifference::similarity);
  const auto count = std::ranges::count_if(
      windows, [&](const WindowDifference& window) { return window.exceeds(tolerance); });
  std::ostringstream text;
  text.precision(3);
  text << count << " of " << windows.size() << " windows differ; the worst colour by "
       << colour->colourDifference << " at " << colour->x << "," << colour->y << " (at most "
       << tolerance.colourDifference << "), the worst structure is similar by "
       << structure->similarity << " at " << structure->x << "," << structure->y << " (at least "
       << tolerance.similarity << ")";
  return text.str();
}

/// Every place is in several windows, so that one alone whose structure differs is chance: the end
/// of a line whose last letters were put down a quarter of a pixel aside.
bool differ(const std::vector<WindowDifference>& windows, const PictureTolerance& tolerance) {
  constexpr std::size_t leastWindows = 2;
  std::size_t dissimilar = 0;
  for (const WindowDifference& window : windows) {
    if (window.colourDifference > tolerance.colourDifference) return true;
    if (window.similarity < tolerance.similarity) ++dissimilar;
  }
  return dissimilar >= std::min(leastWindows, windows.size());
}

constexpr std::uint32_t red = 0xFFE0202AU;

/// On white, and mixed with three times as much of it.
std::uint32_t faded(std::uint32_t pixel) {
  const auto component = [pixel](unsigned shift) {
    const std::uint32_t onWhite = ((pixel >> shift) & 0xFFU) + (0xFFU - (pixel >> 24U));
    return ((std::min(onWhite, 0xFFU) + 3 * 0xFFU) / 4) << shift;
  };
  return 0xFF000000U | component(16) | component(8) | component(0);
}

/// Half of `pixel`, half red.
std::uint32_t reddened(std::uint32_t pixel) {
  return 0xFF000000U | (((pixel & 0xFEFEFEU) >> 1U) + ((red & 0xFEFEFEU) >> 1U));
}

/// In red where only one of the pictures is.
Picture fadedOver(const Picture& blessed, const Picture& actual) {
  Picture result{.width = std::max(blessed.width, actual.width),
                 .height = std::max(blessed.height, actual.height),
                 .pixels = {}};
  for (std::size_t y = 0; y < result.height; ++y) {
    for (std::size_t x = 0; x < result.width; ++x) {
      const bool isInBoth =
          x < std::min(blessed.width, actual.width) && y < std::min(blessed.height, actual.height);
      result.pixels.push_back(isInBoth ? faded(actual.at(x, y)) : red);
    }
  }
  return result;
}

}  // namespace

std::vector<WindowDifference> windowDifferences(const Picture& one, const Picture& other) {
  const LabPlanes planes1 = labPlanesOf(one);
  const LabPlanes planes2 = labPlanesOf(other);
  std::vector<WindowDifference> windows;
  for (const std::size_t y : beginnings(one.height, judgedWindow, judgedWindow / 2)) {
    for (const std::size_t x : beginnings(one.width, judgedWindow, judgedWindow / 2)) {
      WindowDifference window{.x = x, .y = y};
      const std::size_t right = std::min(x + judgedWindow, one.width);
      const std::size_t bottom = std::min(y + judgedWindow, one.height);
      window.colourDifference = colourDistance(meanColour(planes1, window, right, bottom),
                                               meanColour(planes2, window, right, bottom));
      window.similarity = meanSimilarity(planes1, planes2, window, right, bottom);
      windows.push_back(window);
    }
  }
  return windows;
}

std::optional<std::string> describedDifference(const Picture& blessed, const Picture& actual,
                                               const PictureTolerance& tolerance) {
  if (blessed.width != actual.width || blessed.height != actual.height) {
    return "the size was " + sizeText(blessed) + " and is " + sizeText(actual);
  }
  if (blessed.pixels == actual.pixels) return std::nullopt;
  const std::vector<WindowDifference> windows = windowDifferences(blessed, actual);
  if (!differ(windows, tolerance)) return std::nullopt;
  return sentenceOn(windows, tolerance);
}

Picture differencePicture(const Picture& blessed, const Picture& actual,
                          const PictureTolerance& tolerance) {
  Picture result = fadedOver(blessed, actual);
  if (blessed.width != actual.width || blessed.height != actual.height) return result;
  for (const WindowDifference& window : windowDifferences(blessed, actual)) {
    if (!window.exceeds(tolerance)) continue;
    for (std::size_t y = window.y; y < std::min(window.y + judgedWindow, result.height); ++y) {
      for (std::size_t x = window.x; x < std::min(window.x + judgedWindow, result.width); ++x) {
        result.pixels[y * result.width + x] = reddened(faded(actual.at(x, y)));
      }
    }
  }
  return result;
}

}  // namespace lanternfold
