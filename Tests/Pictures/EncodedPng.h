// Pictures made by tests, as PNG files.
#pragma once

#include <string>

#include "Tests/Rendering/Picture.h"

namespace lanternfold {

/// The bytes of the file; the counterpart of `decodedPng`.
[[nodiscard]] std::string encodedPng(const Picture& picture);

}  // namespace lanternfold
