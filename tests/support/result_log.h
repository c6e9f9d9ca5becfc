// What successful commands print, kept for the check against docs/results.schema.json.
#pragma once

#include <string>

namespace tessarine::test {

// Appends the result to a file of this process in the folder that TESSARINE_RESULTS names, as one
// line, unless a result of the same shape was kept before: with the same keys, the same kinds of
// values, and the same words where there are but a few. Does nothing without that folder, or with
// an output that is no result.
void keepResult(const std::string& output);

}  // namespace tessarine::test
