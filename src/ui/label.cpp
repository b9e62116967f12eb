// A label: a caption, Change when it changes.
#include "ui/label.h"

namespace kiv::ui {

Label::Label(std::string name, std::string caption) : Control(std::move(name), "Label"), caption_(std::move(caption)) {
  RegisterProperty("Caption", [this] { return caption_; }, [this](const std::string& v) { SetCaption(v); });
}

void Label::SetCaption(const std::string& v) {
  if (v == caption_) return;
  caption_ = v;
  FireChange();
}

}  // namespace kiv::ui
