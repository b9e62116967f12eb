// A group of option buttons under one name, chosen by index.
#include "ui/option_group.h"

#include "core/text.h"
#include "core/vb_error.h"
#include "ui/prop_text.h"

namespace kiv::ui {

OptionGroup::OptionGroup(std::string name, std::vector<std::string> captions)
    : Control(std::move(name), "OptionGroup") {
  for (auto& c : captions) AddOption(std::move(c));
  RegisterProperty("Value", [this] { return std::to_string(value_); },
                   [this](const std::string& v) { SetValue(ParseIntText(v)); });
  RegisterProperty("Count", [this] { return std::to_string(Count()); });
  RegisterProperty("Captions", [this] {
    std::string out;
    for (size_t i = 0; i < options_.size(); ++i) out += (i ? "|" : "") + options_[i].caption;
    return out;
  });
}

int OptionGroup::AddOption(std::string caption) {
  options_.push_back(Option{std::move(caption)});
  return Count() - 1;
}

void OptionGroup::CheckIndex(int index) const {
  if (index < 0 || index >= Count()) RaiseError(kErrSubscript);
}

const std::string& OptionGroup::Caption(int index) const {
  CheckIndex(index);
  return options_[index].caption;
}

void OptionGroup::SetCaption(int index, std::string v) {
  CheckIndex(index);
  options_[index].caption = std::move(v);
}

bool OptionGroup::OptionEnabled(int index) const {
  CheckIndex(index);
  return options_[index].enabled;
}

void OptionGroup::SetOptionEnabled(int index, bool v) {
  CheckIndex(index);
  options_[index].enabled = v;
}

bool OptionGroup::OptionVisible(int index) const {
  CheckIndex(index);
  return options_[index].visible;
}

void OptionGroup::SetOptionVisible(int index, bool v) {
  CheckIndex(index);
  options_[index].visible = v;
}

void OptionGroup::SetValue(int index) {
  if (index == -1) {
    value_ = -1;
    return;
  }
  CheckIndex(index);
  if (index == value_) return;
  value_ = index;
  FireClick();
}

int OptionGroup::FindOption(const std::string& item) const {
  for (int i = 0; i < Count(); ++i) {
    if (EqualsNoCase(StripAccelerator(options_[i].caption), StripAccelerator(item))) return i;
  }
  int index = 0;
  if (TryParseInt(item, index) && index >= 0 && index < Count()) return index;
  return -1;
}

std::string OptionGroup::ShownCaption() const { return value_ >= 0 ? options_[value_].caption : std::string(); }

std::optional<std::string> OptionGroup::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "value") return std::to_string(value_);
  if (p == "selected") return value_ >= 0 ? StripAccelerator(options_[value_].caption) : std::string();
  if (p == "count") return std::to_string(Count());
  return Control::QueryState(name);
}

std::string OptionGroup::RefuseAction(const Action& action) const {
  if (action.kind != ActionKind::Click && action.kind != ActionKind::Choose) return Control::RefuseAction(action);
  if (action.text.empty()) return "click " + Name() + ": which item?";
  int index = FindOption(action.text);
  if (index < 0) return Name() + " has no item " + action.text;
  if (!options_[index].enabled || !options_[index].visible) return Name() + " item " + action.text + " is disabled";
  return {};
}

UiResult OptionGroup::ApplyAction(const Action& action) {
  if (action.kind != ActionKind::Click && action.kind != ActionKind::Choose) return Control::ApplyAction(action);
  int index = FindOption(action.text);
  if (index < 0) return UiResult::Fail(Name() + " has no item " + action.text);
  if (IsChosen(index)) FireClick();
  SetValue(index);
  return UiResult::Ok();
}

}  // namespace kiv::ui
