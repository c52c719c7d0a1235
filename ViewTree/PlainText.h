// What a view says, as rows of text: for a terminal, and for whoever cannot draw.
//
// Pure function. Read by: the commands that print a widget.
#pragma once

#include <string>
#include <vector>

#include "ViewTree/View.h"

namespace lanternfold {

/// A row's columns, from the first: mostly a label and its value.
using PlainTextRow = std::vector<std::string>;

/// The rows from top to bottom, none of them empty. Texts beside each other make one row, all else
/// stands below each other, what stands behind a view below it. Of a choice the richest
/// view speaks. Pictures, shapes and buttons say nothing by themselves; a view with an accessible
/// name says that in place of its texts, and where it ends as they do, that end is a column of its
/// own ("Received", "941.9 MB"). The name of a choice is only a title, and is left out. Below a
/// link stands its URL. `drawingTime` stands in for the time in texts that show it.
[[nodiscard]] std::vector<PlainTextRow> plainTextRows(const View& view,
                                                      const std::string& drawingTime);

}  // namespace lanternfold
