// Making a chooser select a folder by its name: through the search field, or in the list once more
// after a go-to-folder jump.
#pragma once

#include <cstdint>
#include <string>

#include "platform/element.h"

namespace tessarine {

// Throws ToolError notFound "search field not found in open dialog", or actionFailed "failed to
// write search field: " + the platform's error code.
void setSearchQuery(const Element& dialog, const std::string& query);

// Selects the folder again after a go-to-folder jump: confirms a name field that shows its name,
// then opens its row, if the list shows one within the time-out, at most 2.0 s. Throws ToolError
// timedOut with that time, or what openRow throws.
void stabilizeFolderSelection(const Element& dialog, std::int32_t pid,
                              const std::string& targetPath, double timeoutSeconds);

}  // namespace tessarine
