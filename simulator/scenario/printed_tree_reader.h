// Reads the nodes of a dialog, as "inspect-open-dialog" of the tool prints them.
#pragma once

#include "simulator/panel/printed_tree.h"
#include "simulator/scenario/json_object.h"

namespace simulator {

// {"x", "y", "width", "height"}; all zeros for an element without position and size.
Rect readPrintedFrame(const JsonPlace& place);

// A list of {"role", "title", "description", "value", "frame", "actions"}, all required.
PrintedTree readPrintedTree(const JsonPlace& place);

}  // namespace simulator
