// What a Chromium browser asks once a folder to upload was chosen, in a window of its own.
#pragma once

#include <functional>
#include <string>

#include "simulator/desktop/desktop.h"
#include "simulator/panel/panel_options.h"

namespace simulator {

class UploadQuestion final : public InputReceiver {
 public:
  // Asks as long as the object lives, or until it is answered. `note` is told what comes of it:
  // "upload asked for", "upload confirmed", "upload declined".
  UploadQuestion(Desktop& desktop, const PanelOptions& options,
                 std::function<void(const std::string&)> note);
  ~UploadQuestion();

  UploadQuestion(const UploadQuestion&) = delete;
  UploadQuestion& operator=(const UploadQuestion&) = delete;

  // Null once it is answered or its host has ended.
  const Element* element() const;

  bool keyEvent(const KeyEvent& event, Route route) override;
  bool mouseEvent(const MouseEvent& event, Window& window, Route route) override;

 private:
  void addButton(const Rect& frame, const std::string& title, const std::string& answer);
  void end(const std::string& answer);
  Process& host() { return *desktop_.findProcess(host_); }

  Desktop& desktop_;
  Pid host_;
  std::function<void(const std::string&)> note_;
  std::uint32_t window_ = 0;
  Element* root_ = nullptr;
};

}  // namespace simulator
