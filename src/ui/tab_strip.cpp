// A tab strip: keyed tabs from 1, the selected one, BeforeClick and Click.
#include "ui/tab_strip.h"

#include "core/text.h"
#include "ui/prop_text.h"

namespace kiv::ui {

TabStrip::TabStrip(std::string name) : Control(std::move(name), "TabStrip") {
  RegisterProperty("SelectedIndex", [this] { return std::to_string(selected_); },
                   [this](const std::string& v) { SetSelectedIndex(ParseIntText(v)); });
  RegisterProperty("SelectedKey", [this] { return SelectedKey(); });
  RegisterProperty("SelectedCaption", [this] { return SelectedCaption(); });
  RegisterProperty("Count", [this] { return std::to_string(Count()); });
  RegisterProperty("Tabs", [this] {
    std::string out;
    for (size_t i = 0; i < tabs_.size(); ++i) out += (i ? "|" : "") + tabs_[i].key + "=" + tabs_[i].caption;
    return out;
  });
}

void TabStrip::CheckIndex(int index) const {
  if (index < 1 || index > Count()) RaiseControlError(35600);
}

int TabStrip::AddTab(const std::string& key, const std::string& caption) {
  if (!key.empty() && FindKey(key) != 0) RaiseControlError(35602);
  tabs_.push_back(Tab{key, caption});
  if (selected_ == 0) selected_ = 1;  // the first tab is selected as it appears
  return Count();
}

void TabStrip::Clear() {
  tabs_.clear();
  selected_ = 0;
}

void TabStrip::RemoveTab(int index) {
  CheckIndex(index);
  tabs_.erase(tabs_.begin() + (index - 1));
  if (selected_ > Count() || selected_ == index) selected_ = Count() > 0 ? 1 : 0;
  else if (selected_ > index) --selected_;
}

const std::string& TabStrip::TabKey(int index) const {
  CheckIndex(index);
  return tabs_[index - 1].key;
}

const std::string& TabStrip::TabCaption(int index) const {
  CheckIndex(index);
  return tabs_[index - 1].caption;
}

void TabStrip::SetTabCaption(int index, std::string caption) {
  CheckIndex(index);
  tabs_[index - 1].caption = std::move(caption);
}

int TabStrip::FindKey(const std::string& key) const {
  for (int i = 0; i < Count(); ++i) {
    if (EqualsNoCase(tabs_[i].key, key)) return i + 1;
  }
  return 0;
}

int TabStrip::FindTab(const std::string& item) const {
  if (int k = FindKey(item); k != 0) return k;
  for (int i = 0; i < Count(); ++i) {
    if (EqualsNoCase(StripAccelerator(tabs_[i].caption), StripAccelerator(item))) return i + 1;
  }
  int index = 0;
  if (TryParseInt(item, index) && index >= 1 && index <= Count()) return index;
  return 0;
}

std::string TabStrip::SelectedKey() const { return selected_ > 0 ? tabs_[selected_ - 1].key : std::string(); }

std::string TabStrip::SelectedCaption() const {
  return selected_ > 0 ? tabs_[selected_ - 1].caption : std::string();
}

void TabStrip::SetSelectedIndex(int index) {
  CheckIndex(index);
  selected_ = index;
  FireClick();
}

bool TabStrip::ClickTab(int index) {
  CheckIndex(index);
  if (on_before_click) {
    bool cancel = false;
    auto handler = on_before_click;
    handler(cancel);
    if (cancel) return false;
  }
  SetSelectedIndex(index);
  return true;
}

std::optional<std::string> TabStrip::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "value") return std::to_string(selected_);
  if (p == "selected") return SelectedKey().empty() ? SelectedCaption() : SelectedKey();
  if (p == "count") return std::to_string(Count());
  return Control::QueryState(name);
}

std::string TabStrip::RefuseAction(const Action& action) const {
  if (action.kind != ActionKind::Click && action.kind != ActionKind::Choose) return Control::RefuseAction(action);
  if (action.text.empty()) return "click " + Name() + ": which item?";
  if (FindTab(action.text) < 1) return Name() + " has no item " + action.text;
  return {};
}

UiResult TabStrip::ApplyAction(const Action& action) {
  if (action.kind != ActionKind::Click && action.kind != ActionKind::Choose) return Control::ApplyAction(action);
  int index = FindTab(action.text);
  if (index < 1) return UiResult::Fail(Name() + " has no item " + action.text);
  ClickTab(index);
  return UiResult::Ok();
}

}  // namespace kiv::ui
