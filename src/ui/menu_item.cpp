// A menu item: caption, checked mark, Click.
#include "ui/menu_item.h"

#include "ui/prop_text.h"

namespace kiv::ui {

MenuItem::MenuItem(std::string name, std::string caption)
    : Control(std::move(name), "MenuItem"), caption_(std::move(caption)) {
  RegisterProperty("Caption", [this] { return caption_; }, [this](const std::string& v) { SetCaption(v); });
  RegisterProperty("Checked", [this] { return BoolText(checked_); },
                   [this](const std::string& v) { SetChecked(ParseBoolText(v)); });
}

}  // namespace kiv::ui
