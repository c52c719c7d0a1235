// The default rendering of a double: the shortest decimal text that reads back equal.
//
// Read by: labels that show a figure as it is, such as a transmit rate of "1300.0".
#pragma once

#include <string>

namespace lanternfold {

/// Always with a fraction: "1300.0", "0.1", "-0.0". Magnitudes below 1e-4 and from 1e16 on are
/// written with an exponent ("1.0e+16"), where plain digits would run to hundreds. Values that are
/// not finite are "inf", "-inf" and "nan". The same in every locale.
[[nodiscard]] std::string doubleText(double value);

}  // namespace lanternfold
