#include "cli/dispatch.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "commands/choose_folder.h"
#include "commands/choose_path.h"
#include "commands/close.h"
#include "commands/direct_input.h"
#include "commands/listings.h"
#include "commands/verified_choice.h"
#include "platform/foreground.h"

namespace tessarine {
namespace {

bool isBackgroundOnly(const Options& options) {
  return options.strictBackground && !options.temporaryForeground;
}

Result runClose(const Options& options) {
  const bool backgroundOnly = isBackgroundOnly(options);
  return withBackgroundFrontmostPreserved(backgroundOnly, [&] {
    const int closed = closeDialogs(options.pid, options.temporaryForeground, backgroundOnly);
    return Result{{"ok", true}, {"command", "close"}, {"closed", closed}};
  });
}

Result runChooseFolder(const Options& options) {
  if (options.verify) {
    return chooseFolderVerified(options.pid, options.path.value(), options.timeoutSeconds);
  }
  const bool backgroundOnly = isBackgroundOnly(options);
  return withBackgroundFrontmostPreserved(backgroundOnly, [&] {
    return withTemporaryForeground(options.pid, options.temporaryForeground, [&] {
      return chooseFolder(options.pid, options.path.value(), options.timeoutSeconds,
                          options.preferBackgroundPanel, options.temporaryForeground,
                          backgroundOnly);
    });
  });
}

Result runChoosePath(const Options& options) {
  const auto choose = options.verify ? choosePathVerified : choosePath;
  return choose(options.pid, options.path.value(), options.timeoutSeconds);
}

}  // namespace

Result run(const Options& options) {
  switch (options.command.value()) {
    case CommandKind::close:
      return runClose(options);
    case CommandKind::chooseFolder:
      return runChooseFolder(options);
    case CommandKind::choosePath:
      return runChoosePath(options);
    case CommandKind::clickPoint:
      return clickPoint(options.pid, options.x.value(), options.y.value());
    case CommandKind::typeText:
      return typeTextCommand(options.pid, options.text.value());
    case CommandKind::pressKey:
      return pressKeyCommand(options.pid, options.key.value());
    case CommandKind::listWindows:
      return listWindows(options.pid);
    case CommandKind::listBackgroundPanels:
      return listBackgroundPanels(options.pid);
    case CommandKind::inspectOpenDialog:
      return inspectOpenDialog(options.pid);
  }
  throw std::logic_error("a command without a function");
}

}  // namespace tessarine
