// A Ui for record tests: every message box is recorded and answered with its first button.
#pragma once
#include <string>
#include <vector>

#include "ui/ui.h"

namespace kiv::test {

struct ShownBox {
  std::string prompt;
  int32_t style = 0;
  std::string title;
};

class RecordingUi : public ui::Ui {
 public:
  ui::MsgBoxResult MsgBox(const std::string& prompt, int32_t style, const std::string& title) override {
    boxes.push_back({prompt, style, title});
    return ui::FirstButton(style);
  }
  void SetWaitCursor(bool) override {}
  void ShowModal(ui::Form&, ui::Form*) override {}
  void DoEvents() override {}
  std::vector<ShownBox> boxes;
};

}  // namespace kiv::test
