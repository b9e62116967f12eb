// The generic actions and queries by control name that script runners and front ends
// drive a form with. Nothing here throws to the caller: failures come back as text.
#include <exception>

#include "core/text.h"
#include "core/vb_error.h"
#include "ui/check_box.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/date_picker.h"
#include "ui/form.h"
#include "ui/frame.h"
#include "ui/grid.h"
#include "ui/image.h"
#include "ui/keys.h"
#include "ui/label.h"
#include "ui/menu_item.h"
#include "ui/option_button.h"
#include "ui/option_group.h"
#include "ui/panel.h"
#include "ui/prop_text.h"
#include "ui/status_bar.h"
#include "ui/tab_strip.h"
#include "ui/text_box.h"

namespace kiv::ui {

namespace {

//! Decodes UTF-8 into code points; a stray byte stands for itself.
std::vector<int> CodePoints(const std::string& s) {
  std::vector<int> out;
  for (size_t i = 0; i < s.size();) {
    auto b0 = static_cast<unsigned char>(s[i]);
    size_t len = b0 < 0x80 ? 1 : (b0 >> 5) == 0x6 ? 2 : (b0 >> 4) == 0xE ? 3 : (b0 >> 3) == 0x1E ? 4 : 1;
    if (i + len > s.size()) len = 1;
    int cp = len == 1 ? b0 : len == 2 ? (b0 & 0x1F) : len == 3 ? (b0 & 0x0F) : (b0 & 0x07);
    bool ok = true;
    for (size_t k = 1; k < len; ++k) {
      auto b = static_cast<unsigned char>(s[i + k]);
      if ((b & 0xC0) != 0x80) ok = false;
      cp = (cp << 6) | (b & 0x3F);
    }
    if (!ok) {
      len = 1;
      cp = b0;
    }
    out.push_back(cp);
    i += len;
  }
  return out;
}

std::string ErrorText(const VbError& e) { return "error " + std::to_string(e.Number()) + ": " + e.Description(); }

//! Reads "[a,b]" after a prefix into two numbers; false when the text is not of that form.
bool ReadPair(const std::string& text, int& a, int& b) {
  if (text.size() < 5 || text.front() != '[' || text.back() != ']') return false;
  std::string inner = text.substr(1, text.size() - 2);
  size_t comma = inner.find(',');
  if (comma == std::string::npos) return false;
  return TryParseInt(inner.substr(0, comma), a) && TryParseInt(inner.substr(comma + 1), b);
}

//! Reads "name[arg]" into its argument; false when `text` is not `name` with brackets.
bool ReadIndexed(const std::string& text, const std::string& name, std::string& arg) {
  if (text.size() < name.size() + 2 || !StartsWithNoCase(text, name) || text[name.size()] != '[' ||
      text.back() != ']') {
    return false;
  }
  arg = text.substr(name.size() + 1, text.size() - name.size() - 2);
  return true;
}

std::string CaptionOf(const Control& c) {
  if (auto* x = dynamic_cast<const Label*>(&c)) return x->Caption();
  if (auto* x = dynamic_cast<const CommandButton*>(&c)) return x->Caption();
  if (auto* x = dynamic_cast<const CheckBox*>(&c)) return x->Caption();
  if (auto* x = dynamic_cast<const OptionButton*>(&c)) return x->Caption();
  if (auto* x = dynamic_cast<const MenuItem*>(&c)) return x->Caption();
  if (auto* x = dynamic_cast<const Frame*>(&c)) return x->Caption();
  if (auto* x = dynamic_cast<const Panel*>(&c)) return x->Caption();
  if (auto* x = dynamic_cast<const TabStrip*>(&c)) return x->SelectedCaption();
  if (auto* x = dynamic_cast<const OptionGroup*>(&c)) return x->Value() >= 0 ? x->Caption(x->Value()) : "";
  return c.HasProperty("Caption") ? c.GetProperty("Caption") : std::string();
}

std::string CurrentCell(const Grid& g) {
  if (g.Row() < 0 || g.Row() >= g.Rows() || g.Col() < 0 || g.Col() >= g.Cols()) return {};
  return g.DisplayText(g.Row(), g.Col());
}

//! The standard query names; nullopt when `prop` is none of them for this control.
std::optional<std::string> StandardProperty(const Control& c, const std::string& prop) {
  auto* text_box = dynamic_cast<const TextBox*>(&c);
  auto* combo = dynamic_cast<const ComboBox*>(&c);
  auto* grid = dynamic_cast<const Grid*>(&c);
  auto* check = dynamic_cast<const CheckBox*>(&c);
  auto* option = dynamic_cast<const OptionButton*>(&c);
  auto* group = dynamic_cast<const OptionGroup*>(&c);
  auto* tabs = dynamic_cast<const TabStrip*>(&c);
  auto* picker = dynamic_cast<const DatePicker*>(&c);
  auto* menu = dynamic_cast<const MenuItem*>(&c);
  auto* status = dynamic_cast<const StatusBar*>(&c);
  std::string p = LCase(prop);
  if (p == "enabled") return BoolText(c.Enabled());
  if (p == "visible") return BoolText(c.Visible());
  if (p == "focus") return BoolText(c.HasFocus());
  if (p == "text") {
    if (text_box) return text_box->Text();
    if (combo) return combo->Text();
    if (picker) return picker->Text();
    if (grid) return CurrentCell(*grid);
    if (status) return status->SimpleText();
    return CaptionOf(c);
  }
  if (p == "caption") return CaptionOf(c);
  if (p == "value") {
    if (text_box) return text_box->Text();
    if (check) return std::to_string(check->Value());
    if (option) return BoolText(option->Value());
    if (group) return std::to_string(group->Value());
    if (combo) return std::to_string(combo->ListIndex());
    if (picker) return picker->HasValue() ? picker->Text() : std::string("none");
    if (tabs) return std::to_string(tabs->SelectedIndex());
    if (grid) return CurrentCell(*grid);
    if (menu) return BoolText(menu->Checked());
    return std::nullopt;
  }
  if (p == "checked") {
    if (check) return BoolText(check->Value() == vbChecked);
    if (option) return BoolText(option->Value());
    if (menu) return BoolText(menu->Checked());
    if (grid && grid->Row() < grid->Rows() && grid->Col() < grid->Cols()) {
      return BoolText(grid->CellChecked(grid->Row(), grid->Col()) == flexChecked);
    }
    return std::nullopt;
  }
  if (p == "selected") {
    if (combo) return combo->SelectedKey().empty() ? combo->Text() : combo->SelectedKey();
    if (tabs) return tabs->SelectedKey().empty() ? tabs->SelectedCaption() : tabs->SelectedKey();
    if (group) return group->Value() >= 0 ? StripAccelerator(group->Caption(group->Value())) : std::string();
    if (option) return BoolText(option->Value());
    if (grid) {
      std::string out;
      for (int r : grid->SelectedRowList()) out += (out.empty() ? "" : ",") + std::to_string(r);
      return out;
    }
    return std::nullopt;
  }
  if (p == "count") {
    if (combo) return std::to_string(combo->ListCount());
    if (tabs) return std::to_string(tabs->Count());
    if (group) return std::to_string(group->Count());
    if (grid) return std::to_string(grid->Rows() - grid->FixedRows());
    if (status) return std::to_string(status->PanelCount());
    return std::nullopt;
  }
  if (grid) {
    int r = 0;
    int col = 0;
    std::string arg;
    if (p == "rows") return std::to_string(grid->Rows() - grid->FixedRows());
    if (p == "cols") return std::to_string(grid->Cols());
    if (ReadPair(p, r, col)) return grid->DisplayText(r, col);
    if (ReadIndexed(p, "colhidden", arg)) return BoolText(grid->ColHidden(ParseIntText(arg)));
    if (ReadIndexed(p, "rowhidden", arg)) return BoolText(grid->RowHidden(ParseIntText(arg)));
    if (ReadIndexed(p, "checked", arg)) {
      int cr = 0;
      int cc = 0;
      if (ReadPair("[" + arg + "]", cr, cc)) return BoolText(grid->CellChecked(cr, cc) == flexChecked);
    }
  }
  if (status) {
    std::string arg;
    if (ReadIndexed(prop, "panel", arg)) {
      int index = status->FindPanel(arg);
      if (index == 0) RaiseControlError(35601);
      return status->PanelTextAt(index);
    }
  }
  return std::nullopt;
}

}  // namespace

UiResult Form::Query(const std::string& control, const std::string& prop) const {
  try {
    if (control.empty() || EqualsNoCase(control, name_)) {
      std::string p = LCase(prop);
      if (p == "caption" || p == "text") return UiResult::Ok(caption_);
      if (p == "visible") return UiResult::Ok(BoolText(visible_));
      if (p == "loaded") return UiResult::Ok(BoolText(loaded_));
      if (p == "focus") return UiResult::Ok(active_ ? active_->Name() : std::string());
      if (p == "name") return UiResult::Ok(name_);
      return UiResult::Fail("the form " + name_ + " has no property " + prop);
    }
    Control* c = Find(control);
    if (c == nullptr) return UiResult::Fail("no control named " + control + " on " + name_);
    if (auto v = StandardProperty(*c, prop)) return UiResult::Ok(*v);
    if (!c->HasProperty(prop)) return UiResult::Fail(c->Name() + " has no property " + prop);
    return UiResult::Ok(c->GetProperty(prop));
  } catch (const VbError& e) {
    return UiResult::Fail(control + "." + prop + ": " + ErrorText(e));
  } catch (const std::exception& e) {
    return UiResult::Fail(control + "." + prop + ": " + e.what());
  }
}

UiResult Form::Perform(const Action& action) {
  try {
    if (action.kind == ActionKind::Close) {
      if (!loaded_) return UiResult::Fail("the form " + name_ + " is not loaded");
      if (Unload(vbFormControlMenu)) return UiResult::Ok();
      return UiResult::Ok("the form stayed open");
    }
    Control* c = Find(action.control);
    if (c == nullptr) return UiResult::Fail("no control named " + action.control + " on " + name_);
    if (!c->IsEffectivelyVisible()) return UiResult::Fail(c->Name() + " is not visible");
    if (!c->IsEffectivelyEnabled()) return UiResult::Fail(c->Name() + " is disabled");
    return PerformOn(*c, action);
  } catch (const VbError& e) {
    return UiResult::Fail(action.control + ": " + ErrorText(e));
  } catch (const std::exception& e) {
    return UiResult::Fail(action.control + ": " + e.what());
  } catch (...) {
    return UiResult::Fail(action.control + ": an unexpected failure");
  }
}

UiResult Form::PerformOn(Control& c, const Action& action) {
  auto* text_box = dynamic_cast<TextBox*>(&c);
  auto* combo = dynamic_cast<ComboBox*>(&c);
  auto* grid = dynamic_cast<Grid*>(&c);
  auto* group = dynamic_cast<OptionGroup*>(&c);
  auto* tabs = dynamic_cast<TabStrip*>(&c);
  auto* menu = dynamic_cast<MenuItem*>(&c);
  auto stayed = [this] {
    return UiResult::Ok("the focus stayed on " + (active_ ? active_->Name() : std::string("nothing")));
  };
  // A clerk's click or typing first brings the focus to a control that can take it; when
  // the control that had it refuses to let go (Validate), nothing more happens.
  auto focus = [&]() { return !c.Focusable() || c.HasFocus() || MoveFocus(c); };

  switch (action.kind) {
    case ActionKind::Focus:
      if (!c.Focusable()) return UiResult::Fail(c.Name() + " cannot take the focus");
      if (!focus()) return stayed();
      return UiResult::Ok();

    case ActionKind::Type: {
      bool editable_combo = combo != nullptr && combo->Style() == vbComboDropdown;
      if (text_box == nullptr && !editable_combo) return UiResult::Fail(c.Name() + " does not take typing");
      if (!focus()) return stayed();
      bool was_loaded = loaded_;
      for (int cp : CodePoints(action.text)) {
        Control* target = active_;
        if (target == nullptr || (was_loaded && !loaded_)) break;  // the form closed while typing
        KeyStroke k = cp == '\n' ? KeyStroke{vbKeyReturn, 0, 13} : cp == '\t' ? KeyStroke{vbKeyTab, 0, 0} : CharKey(cp);
        std::string error = SendKey(*target, k.key_code, k.shift, k.key_ascii);
        if (!error.empty()) return UiResult::Fail(error);
      }
      return UiResult::Ok();
    }

    case ActionKind::Paste:
      if (text_box != nullptr) {
        if (!focus()) return stayed();
        text_box->SetText(action.text);
        return UiResult::Ok();
      }
      if (combo != nullptr && combo->Style() == vbComboDropdown) {
        if (!focus()) return stayed();
        combo->SetText(action.text);
        return UiResult::Ok();
      }
      return UiResult::Fail(c.Name() + " does not take pasted text");

    case ActionKind::Key: {
      auto k = ParseKey(action.text);
      if (!k) return UiResult::Fail("not a key: " + action.text);
      if (!c.Focusable()) return UiResult::Fail(c.Name() + " cannot take the focus");
      std::string error = SendKey(c, k->key_code, k->shift, k->key_ascii);
      if (!error.empty()) return UiResult::Fail(error);
      return UiResult::Ok();
    }

    case ActionKind::Click: {
      if (group != nullptr || tabs != nullptr) {
        if (action.text.empty()) return UiResult::Fail("click " + c.Name() + ": which item?");
        int index = group ? group->FindOption(action.text) : tabs->FindTab(action.text);
        if (index < (group ? 0 : 1)) return UiResult::Fail(c.Name() + " has no item " + action.text);
        if (group != nullptr && (!group->OptionEnabled(index) || !group->OptionVisible(index))) {
          return UiResult::Fail(c.Name() + " item " + action.text + " is disabled");
        }
        if (!focus()) return stayed();
        if (group != nullptr) {
          // A click on the chosen option clicks again, though nothing changes.
          if (group->IsChosen(index)) group->FireClick();
          group->SetValue(index);
        } else {
          tabs->ClickTab(index);
        }
        return UiResult::Ok();
      }
      if (combo != nullptr && !action.text.empty()) {
        if (!focus()) return stayed();
        if (!combo->Choose(action.text)) return UiResult::Fail(c.Name() + " has no item " + action.text);
        return UiResult::Ok();
      }
      if (grid != nullptr && !action.text.empty()) {
        int row = 0;
        if (!TryParseInt(action.text, row)) return UiResult::Fail("not a row number: " + action.text);
        if (!focus()) return stayed();
        grid->SelectRows({row});
        return UiResult::Ok();
      }
      if (!action.text.empty()) return UiResult::Fail(c.Name() + " has no items to click");
      if (menu != nullptr) {
        // Opening a menu runs the Click of each menu above the item first; those may
        // enable or disable what they hold.
        std::vector<MenuItem*> chain;
        for (Control* up = c.Container(); up != nullptr; up = up->Container()) {
          if (auto* m = dynamic_cast<MenuItem*>(up)) chain.insert(chain.begin(), m);
        }
        for (MenuItem* m : chain) m->FireClick();
        if (!c.IsEffectivelyEnabled() || !c.IsEffectivelyVisible()) {
          return UiResult::Fail(c.Name() + " is disabled");
        }
        menu->FireClick();
        return UiResult::Ok();
      }
      if (!focus()) return stayed();
      if (auto* check = dynamic_cast<CheckBox*>(&c)) {
        check->Toggle();
      } else if (auto* option = dynamic_cast<OptionButton*>(&c)) {
        if (option->Value()) option->FireClick();
        option->SetValue(true);
      } else {
        c.FireClick();
      }
      return UiResult::Ok();
    }

    case ActionKind::Choose: {
      if (combo == nullptr && group == nullptr && tabs == nullptr) {
        return UiResult::Fail(c.Name() + " has no list to choose from");
      }
      if (combo == nullptr) return PerformOn(c, Action{ActionKind::Click, action.control, action.text, {}, 0});
      if (combo->FindKey(action.text) < 0 && combo->FindText(action.text) < 0) {
        return UiResult::Fail(c.Name() + " has no item " + action.text);
      }
      if (!focus()) return stayed();
      combo->Choose(action.text);
      return UiResult::Ok();
    }

    case ActionKind::Date: {
      auto* picker = dynamic_cast<DatePicker*>(&c);
      if (picker == nullptr) return UiResult::Fail(c.Name() + " is not a date picker");
      std::string t = Trim(action.text);
      bool none = t.empty() || EqualsNoCase(t, "none");
      if (none && !picker->AllowNone()) return UiResult::Fail(c.Name() + " cannot be left without a date");
      if (!none && !Date::Parse(t)) return UiResult::Fail("not a date: " + action.text);
      if (!focus()) return stayed();
      picker->SetFromText(t);
      return UiResult::Ok();
    }

    case ActionKind::Select:
    case ActionKind::Edit:
    case ActionKind::Expand: {
      if (grid == nullptr) return UiResult::Fail(c.Name() + " is not a grid");
      if (action.rows.empty()) return UiResult::Fail("which row of " + c.Name() + "?");
      for (int r : action.rows) {
        if (r < grid->FixedRows() || r >= grid->Rows()) {
          return UiResult::Fail(c.Name() + " has no row " + std::to_string(r));
        }
      }
      if (!focus()) return stayed();
      if (action.kind == ActionKind::Select) {
        grid->SelectRows(action.rows);
        return UiResult::Ok();
      }
      std::string error = action.kind == ActionKind::Edit ? grid->EditCell(action.rows[0], action.col, action.text)
                                                          : grid->ToggleOutline(action.rows[0]);
      if (!error.empty()) return UiResult::Fail(error);
      return UiResult::Ok();
    }

    case ActionKind::DblClick: {
      if (grid != nullptr) {
        if (action.rows.empty()) return UiResult::Fail("which row of " + c.Name() + "?");
        int r = action.rows[0];
        if (r < grid->FixedRows() || r >= grid->Rows()) return UiResult::Fail(c.Name() + " has no row " + std::to_string(r));
        if (!focus()) return stayed();
        std::string error = grid->DoubleClickRow(r);
        if (!error.empty()) return UiResult::Fail(error);
        return UiResult::Ok();
      }
      if (!action.rows.empty()) return UiResult::Fail(c.Name() + " is not a grid");
      if (!focus()) return stayed();
      c.FireDblClick();
      return UiResult::Ok();
    }

    case ActionKind::Close:
      break;
  }
  return UiResult::Fail("unknown action");
}

}  // namespace kiv::ui
