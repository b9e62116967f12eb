// A status bar: keyed panels of text.
#include "ui/status_bar.h"

#include "core/text.h"
#include "ui/prop_text.h"

namespace kiv::ui {

StatusBar::StatusBar(std::string name) : Control(std::move(name), "StatusBar") {
  RegisterProperty("SimpleText", [this] { return simple_text_; }, [this](const std::string& v) { SetSimpleText(v); });
  RegisterProperty("Panels", [this] {
    std::string out;
    for (size_t i = 0; i < panels_.size(); ++i) out += (i ? "|" : "") + panels_[i].key + "=" + panels_[i].text;
    return out;
  });
}

int StatusBar::AddPanel(const std::string& key, const std::string& text) {
  if (!key.empty() && IndexOfKey(key) != 0) RaiseControlError(35602);
  panels_.push_back(Panel{key, text});
  return PanelCount();
}

int StatusBar::IndexOfKey(const std::string& key) const {
  for (int i = 0; i < PanelCount(); ++i) {
    if (EqualsNoCase(panels_[i].key, key)) return i + 1;
  }
  return 0;
}

int StatusBar::FindPanel(const std::string& key_or_index) const {
  if (int k = IndexOfKey(key_or_index); k != 0) return k;
  int index = 0;
  if (TryParseInt(key_or_index, index) && index >= 1 && index <= PanelCount()) return index;
  return 0;
}

const std::string& StatusBar::PanelText(const std::string& key) const {
  int i = IndexOfKey(key);
  if (i == 0) RaiseControlError(35601);
  return panels_[i - 1].text;
}

void StatusBar::SetPanelText(const std::string& key, const std::string& text) {
  int i = IndexOfKey(key);
  if (i == 0) RaiseControlError(35601);
  panels_[i - 1].text = text;
}

const std::string& StatusBar::PanelTextAt(int index) const {
  if (index < 1 || index > PanelCount()) RaiseControlError(35600);
  return panels_[index - 1].text;
}

void StatusBar::SetPanelTextAt(int index, const std::string& text) {
  if (index < 1 || index > PanelCount()) RaiseControlError(35600);
  panels_[index - 1].text = text;
}

const std::string& StatusBar::PanelKey(int index) const {
  if (index < 1 || index > PanelCount()) RaiseControlError(35600);
  return panels_[index - 1].key;
}

std::optional<std::string> StatusBar::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "text") return simple_text_;
  if (p == "count") return std::to_string(PanelCount());
  std::string arg;
  if (ReadIndexed(name, "panel", arg)) {
    int index = FindPanel(arg);
    if (index == 0) RaiseControlError(35601);
    return PanelTextAt(index);
  }
  return Control::QueryState(name);
}

}  // namespace kiv::ui
