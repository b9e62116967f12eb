// The base of the controls that show a caption of their own (labels, buttons, check boxes,
// option buttons, menu items, frames, panels): the text, its "Caption" property, and what
// a front end reads as the control's caption and text.
#pragma once
#include <string>

#include "ui/control.h"

namespace kiv::ui {

class CaptionedControl : public Control {
 public:
  CaptionedControl(std::string name, std::string type_name, std::string caption);

  const std::string& Caption() const { return caption_; }
  //! Sets the caption; when it differs, CaptionChanged runs afterwards.
  void SetCaption(std::string v);

  std::string ShownCaption() const override { return caption_; }

 protected:
  //! What a kind does when its caption changes (a label fires Change); nothing by default.
  virtual void CaptionChanged() {}

 private:
  std::string caption_;
};

}  // namespace kiv::ui
