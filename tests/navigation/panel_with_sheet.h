// A panel built by hand that opens a go-to sheet for the chord, and leaves what else keys do to a
// test.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "dialog/hand_built_panel.h"
#include "simulator/desktop/input.h"

namespace tessarine::test {

struct PanelWithSheet : simulator::InputReceiver {
  using Node = simulator::Element;

  PanelWithSheet() { panel.process().receivers.push_back(this); }
  bool keyEvent(const simulator::KeyEvent& event, simulator::Route) override {
    if (event.down && event.keyCode == 5) ++chords, chordTaken();
    if (event.down && event.keyCode == 36) ++returns, returnTaken();
    if (event.down && event.keyCode == 53) ++escapes, escapeTaken();
    return true;
  }
  bool mouseEvent(const simulator::MouseEvent&, simulator::Window&, simulator::Route) override {
    return false;
  }
  void openSheet() {
    sheet = &add(panel.root, "GoToWindow", "AXSheet");
    sheet->setFrame({150, 120, 300, 100});
    field = &sheet->addChild("AXTextField");
    field->set("AXFocused", true);
    field->makeSettable("AXValue", [this](const simulator::Value& value) {
      field->set("AXValue", value);
      written();
      return simulator::ax::success;
    });
    opened();
  }
  void closeSheet() { panel.root.removeChild(*std::exchange(sheet, nullptr)); }
  Node& addButton(const std::string& title, std::function<void()> pressed) {
    Node& button = sheet->addChild("AXButton");
    button.set("AXTitle", title);
    button.addAction("AXPress",
                     [pressed = std::move(pressed)] { return pressed(), simulator::ax::success; });
    return button;
  }

  HandBuiltPanel panel;
  Node* sheet = nullptr;  // while it is open
  Node* field = nullptr;
  std::function<void()> opened = [] {};
  std::function<void()> written = [] {};
  std::function<void()> chordTaken = [this] { openSheet(); };
  std::function<void()> returnTaken = [] {};
  std::function<void()> escapeTaken = [] {};
  int chords = 0;
  int returns = 0;
  int escapes = 0;
};

}  // namespace tessarine::test
