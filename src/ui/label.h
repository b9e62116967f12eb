// A label: a caption the clerk reads; it takes no focus.
#pragma once
#include <string>

#include "ui/captioned_control.h"

namespace kiv::ui {

class Label : public CaptionedControl {
 public:
  explicit Label(std::string name, std::string caption = {});
  bool Focusable() const override { return false; }

  //! The control this label captions (its "Buddy" property), for a front end that lays the
  //! two out together and gives the label's access key to it; empty when the label stands
  //! alone.
  void SetBuddy(const Control& control);
  const std::string& Buddy() const { return buddy_; }

 protected:
  //! A label fires Change when its caption changes.
  void CaptionChanged() override { FireChange(); }

 private:
  std::string buddy_;
};

}  // namespace kiv::ui
