// One widget of the store's file as a JSON value.
//
// Pure. Used by: the text of the whole file.
#pragma once

#include <expected>
#include <string>

#include <nlohmann/json.hpp>

#include "WidgetHost/Store/PlacedWidget.h"

namespace lanternfold {

/// Keeps the order of members, so that a file stays as its user has arranged it.
using StoreJson = nlohmann::ordered_json;

/// The error is a clause that says what is not understood.
[[nodiscard]] std::expected<PlacedWidget, std::string> placedWidgetOf(const StoreJson& value);

/// Puts the members of `widget` into `value`, an object, and leaves its others as they are.
void putPlacedWidget(StoreJson& value, const PlacedWidget& widget);

}  // namespace lanternfold
