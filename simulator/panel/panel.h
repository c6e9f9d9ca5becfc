// A panel as those see it who ask what came of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/panel/panel_options.h"

namespace simulator {

// What came of a panel so far.
struct PanelOutcome {
  enum class End { none, chosen, cancelled };
  End end = End::none;
  std::string path;  // the chosen path, without links
  Seconds at = 0;    // when it was chosen or cancelled
  bool operator==(const PanelOutcome&) const = default;
};

// Something that happened to a panel, as the record says it.
struct PanelMilestone {
  Seconds at = 0;
  std::string text;
};

class Element;

// A part of a panel that is seen: what stands at and below its root, without the other parts.
struct PanelPart {
  const char* name = "panel";  // or "sheet", "menu", "question"
  const Element* root = nullptr;
};

class Panel {
 public:
  virtual ~Panel() = default;

  virtual const PanelOptions& options() const = 0;
  virtual const PanelOutcome& outcome() const = 0;
  // It was announced at some time; nothing of it existed before.
  virtual bool hasOpened() const = 0;
  // It has not closed, and the process that shows it runs.
  virtual bool alive() const = 0;
  // What happened to it, in order.
  virtual const std::vector<PanelMilestone>& milestones() const = 0;
  // Its windows, also those that have closed.
  virtual const std::vector<std::uint32_t>& windowNumbers() const = 0;
  // As accessibility shows it; empty for none.
  virtual std::string title() const = 0;
  // The folder shown at present; empty when nobody knows.
  virtual std::string folderShown() const = 0;
  // What is seen of it at present, also where no tree shows it; from the back to the front.
  virtual std::vector<PanelPart> parts() const = 0;
};

}  // namespace simulator
