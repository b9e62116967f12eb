// An image holding a picture's bytes.
#include "ui/image.h"

#include "ui/prop_text.h"

namespace kiv::ui {

Image::Image(std::string name) : Control(std::move(name), "Image") {
  RegisterProperty("Picture", [this] {
    return picture_.empty() ? std::string("(none)") : "(" + std::to_string(picture_.size()) + " bytes)";
  });
  RegisterProperty("Stretch", [this] { return BoolText(stretch_); },
                   [this](const std::string& v) { SetStretch(ParseBoolText(v)); });
}

}  // namespace kiv::ui
