// A combo box: keyed items, the selected index and the text, in list-only or free style.
#include "ui/combo_box.h"

#include "core/text.h"
#include "core/vb_error.h"
#include "ui/keys.h"
#include "ui/prop_text.h"

namespace kiv::ui {

ComboBox::ComboBox(std::string name, int style) : Control(std::move(name), "ComboBox"), style_(style) {
  RegisterProperty("Text", [this] { return text_; }, [this](const std::string& v) { SetText(v); });
  RegisterProperty("ListIndex", [this] { return std::to_string(list_index_); },
                   [this](const std::string& v) { SetListIndex(ParseIntText(v)); });
  RegisterProperty("ListCount", [this] { return std::to_string(ListCount()); });
  RegisterProperty("SelectedKey", [this] { return SelectedKey(); });
  RegisterProperty("Style", [this] { return std::to_string(style_); });
  RegisterProperty("Items", [this] {
    std::string out;
    for (size_t i = 0; i < items_.size(); ++i) {
      out += (i ? "|" : "") + (items_[i].key.empty() || items_[i].key == items_[i].text
                                   ? items_[i].text
                                   : items_[i].key + "=" + items_[i].text);
    }
    return out;
  });
}

void ComboBox::CheckIndex(int index) const {
  if (index < 0 || index >= ListCount()) RaiseControlError(381);
}

int ComboBox::AddItem(const std::string& text, const std::string& key, int index) {
  if (index < 0 || index > ListCount()) index = ListCount();
  items_.insert(items_.begin() + index, Item{text, key, 0});
  if (list_index_ >= index) ++list_index_;
  return index;
}

void ComboBox::RemoveItem(int index) {
  if (index < 0 || index >= ListCount()) RaiseError(kErrInvalidCall);
  items_.erase(items_.begin() + index);
  if (list_index_ == index) {
    list_index_ = -1;
    if (style_ == vbComboDropdownList) text_.clear();
  } else if (list_index_ > index) {
    --list_index_;
  }
}

void ComboBox::Clear() {
  items_.clear();
  list_index_ = -1;
  if (style_ == vbComboDropdownList) text_.clear();
}

const std::string& ComboBox::List(int index) const {
  CheckIndex(index);
  return items_[index].text;
}

const std::string& ComboBox::ItemKey(int index) const {
  CheckIndex(index);
  return items_[index].key;
}

int ComboBox::ItemData(int index) const {
  CheckIndex(index);
  return items_[index].data;
}

void ComboBox::SetItemData(int index, int v) {
  CheckIndex(index);
  items_[index].data = v;
}

int ComboBox::FindKey(const std::string& key) const {
  for (int i = 0; i < ListCount(); ++i) {
    if (EqualsNoCase(items_[i].key, key)) return i;
  }
  return -1;
}

int ComboBox::FindText(const std::string& text) const {
  for (int i = 0; i < ListCount(); ++i) {
    if (EqualsNoCase(items_[i].text, text)) return i;
  }
  return -1;
}

void ComboBox::SetListIndex(int index) {
  if (index < -1 || index >= ListCount()) RaiseControlError(380);
  if (index == list_index_) return;
  list_index_ = index;
  if (index >= 0) {
    text_ = items_[index].text;
  } else if (style_ == vbComboDropdownList) {
    text_.clear();
  }
  FireClick();
}

std::string ComboBox::SelectedKey() const { return list_index_ >= 0 ? items_[list_index_].key : std::string(); }

void ComboBox::SetText(const std::string& v, bool fire_events) {
  if (style_ == vbComboDropdownList) {
    if (v.empty()) {
      list_index_ = -1;
      text_.clear();
      return;
    }
    int found = FindText(v);
    if (found < 0) RaiseControlError(383);
    list_index_ = found;
    text_ = items_[found].text;
    return;
  }
  list_index_ = FindText(v);
  if (v == text_) return;
  text_ = v;
  if (fire_events) FireChange();
}

bool ComboBox::Choose(const std::string& item) {
  int index = FindKey(item);
  if (index < 0) index = FindText(item);
  if (index < 0) return false;
  SetListIndex(index);
  return true;
}

void ComboBox::DefaultKeyPress(int key_ascii) {
  if (style_ == vbComboDropdownList) {
    // A list-only combo jumps to the next item starting with the typed letter.
    if (key_ascii < 32 || items_.empty()) return;
    for (int step = 1; step <= ListCount(); ++step) {
      int i = (list_index_ + step) % ListCount();
      if (!items_[i].text.empty() && (items_[i].text[0] | 0x20) == (static_cast<char>(key_ascii) | 0x20)) {
        SetListIndex(i);
        return;
      }
    }
    return;
  }
  std::string next = text_;
  if (key_ascii == vbKeyBack) {
    if (next.empty()) return;
    size_t cut = next.size() - 1;
    while (cut > 0 && (static_cast<unsigned char>(next[cut]) & 0xC0) == 0x80) --cut;
    next.erase(cut);
  } else if (key_ascii >= 32 && key_ascii < 128) {
    next += static_cast<char>(key_ascii);
  } else {
    return;
  }
  SetText(next);
}

void ComboBox::DefaultKeyDown(int key_code, int) {
  if (key_code == vbKeyDown && list_index_ + 1 < ListCount()) SetListIndex(list_index_ + 1);
  if (key_code == vbKeyUp && list_index_ > 0) SetListIndex(list_index_ - 1);
}

std::optional<std::string> ComboBox::QueryState(const std::string& name) const {
  std::string p = LCase(name);
  if (p == "text") return text_;
  if (p == "value") return std::to_string(list_index_);
  if (p == "selected") return SelectedKey().empty() ? text_ : SelectedKey();
  if (p == "count") return std::to_string(ListCount());
  return Control::QueryState(name);
}

std::string ComboBox::RefuseAction(const Action& action) const {
  switch (action.kind) {
    case ActionKind::Type:
    case ActionKind::Paste:
      if (style_ == vbComboDropdown) return {};
      break;
    case ActionKind::Click:
      if (!action.text.empty()) return {};
      break;
    case ActionKind::Choose:
      if (FindKey(action.text) < 0 && FindText(action.text) < 0) return Name() + " has no item " + action.text;
      return {};
    default:
      break;
  }
  return Control::RefuseAction(action);
}

UiResult ComboBox::ApplyAction(const Action& action) {
  if (action.kind == ActionKind::Paste) {
    SetText(action.text);
    return UiResult::Ok();
  }
  bool pick = action.kind == ActionKind::Choose || (action.kind == ActionKind::Click && !action.text.empty());
  if (!pick) return Control::ApplyAction(action);
  if (!Choose(action.text)) return UiResult::Fail(Name() + " has no item " + action.text);
  return UiResult::Ok();
}

}  // namespace kiv::ui
