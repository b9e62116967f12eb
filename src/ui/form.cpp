// A headless form: its controls, the focus and its events, keys with default and cancel
// buttons and key preview, and the load/show/hide/unload lifecycle.
#include "ui/form.h"

#include <algorithm>

#include "core/text.h"
#include "core/vb_error.h"
#include "ui/command_button.h"
#include "ui/keys.h"

namespace kiv::ui {


Form::Form(std::string name) : name_(std::move(name)), ui_(std::make_shared<SilentUi>()) {}

void Form::SetUi(std::shared_ptr<Ui> ui) { ui_ = ui ? std::move(ui) : std::make_shared<SilentUi>(); }

void Form::Adopt(std::unique_ptr<Control> control) {
  if (Find(control->Name()) != nullptr) RaiseError(kErrKeyExists);
  control->parent_ = this;
  control->tab_index_ = static_cast<int>(controls_.size());
  controls_.push_back(std::move(control));
}

Control* Form::Find(const std::string& name) const {
  for (const auto& c : controls_) {
    if (EqualsNoCase(c->Name(), name)) return c.get();
  }
  return nullptr;
}

std::vector<Control*> Form::Controls() const {
  std::vector<Control*> out;
  out.reserve(controls_.size());
  for (const auto& c : controls_) out.push_back(c.get());
  return out;
}

std::vector<Control*> Form::TabOrder() const {
  std::vector<Control*> out = Controls();
  std::stable_sort(out.begin(), out.end(), [](const Control* a, const Control* b) { return a->TabIndex() < b->TabIndex(); });
  return out;
}

// ---- focus ----

bool Form::MoveFocus(Control& target) {
  if (target.Parent() != this || !target.CanFocus()) return false;
  if (active_ == &target) return true;
  Control* old = active_;
  if (old != nullptr) {
    // As on the platform: Validate first (only when the new control causes validation);
    // a cancel keeps the focus and nothing else runs. Then LostFocus, then GotFocus.
    if (target.CausesValidation() && old->on_validate) {
      bool cancel = false;
      auto handler = old->on_validate;
      handler(cancel);
      if (cancel || active_ != old) return false;
    }
    if (old->on_lost_focus) {
      auto handler = old->on_lost_focus;
      handler();
      if (active_ != old) return false;  // the handler moved the focus itself
    }
  }
  if (!target.CanFocus()) return false;  // a handler disabled or hid the target
  active_ = &target;
  if (target.on_got_focus) {
    auto handler = target.on_got_focus;
    handler();
  }
  return true;
}

void Form::SendTab(bool backwards) {
  if (key_depth_ > 0) {
    pending_tabs_.push_back(backwards);
    return;
  }
  std::vector<Control*> stops;
  for (Control* c : TabOrder()) {
    if (c->TabStop() && c->CanFocus()) stops.push_back(c);
  }
  if (stops.empty()) return;
  auto at = std::find(stops.begin(), stops.end(), active_);
  Control* next = nullptr;
  if (at == stops.end()) {
    // The active control is no tab stop: continue from its place in the tab order.
    std::vector<Control*> order = TabOrder();
    auto pos = std::find(order.begin(), order.end(), active_);
    next = backwards ? stops.back() : stops.front();
    if (pos != order.end()) {
      int my_index = (*pos)->TabIndex();
      if (!backwards) {
        for (Control* c : stops) {
          if (c->TabIndex() > my_index) { next = c; break; }
        }
      } else {
        for (auto it = stops.rbegin(); it != stops.rend(); ++it) {
          if ((*it)->TabIndex() < my_index) { next = *it; break; }
        }
      }
    }
  } else if (!backwards) {
    next = (at + 1 == stops.end()) ? stops.front() : *(at + 1);
  } else {
    next = (at == stops.begin()) ? stops.back() : *(at - 1);
  }
  MoveFocus(*next);
}

void Form::RunPendingTabs() {
  while (!pending_tabs_.empty() && key_depth_ == 0) {
    bool backwards = pending_tabs_.front();
    pending_tabs_.erase(pending_tabs_.begin());
    SendTab(backwards);
  }
}

void Form::FocusFirst() {
  if (active_ != nullptr && active_->CanFocus()) return;
  for (Control* c : TabOrder()) {
    if (c->TabStop() && c->CanFocus()) {
      active_ = nullptr;  // the old one can no longer hold the focus: nothing to leave
      MoveFocus(*c);
      return;
    }
  }
}

// ---- keys ----

CommandButton* Form::DefaultButton() const {
  for (const auto& c : controls_) {
    auto* b = dynamic_cast<CommandButton*>(c.get());
    if (b != nullptr && b->Default() && b->IsEffectivelyEnabled() && b->IsEffectivelyVisible()) return b;
  }
  return nullptr;
}

CommandButton* Form::CancelButton() const {
  for (const auto& c : controls_) {
    auto* b = dynamic_cast<CommandButton*>(c.get());
    if (b != nullptr && b->Cancel() && b->IsEffectivelyEnabled() && b->IsEffectivelyVisible()) return b;
  }
  return nullptr;
}

std::string Form::SendKey(Control& target, int key_code, int shift, int key_ascii) {
  if (target.Parent() != this) return target.Name() + " is not on " + name_;
  if (!target.HasFocus()) {
    if (!target.CanFocus()) return target.Name() + " cannot take the focus";
    if (!MoveFocus(target)) return "the focus stayed on " + (active_ ? active_->Name() : std::string("nothing"));
  }
  // Tabs sent while the key is handled wait until it has been (as a sent keystroke would);
  // a failure drops them with the key.
  ++key_depth_;
  std::string error;
  try {
    error = DeliverKey(target, key_code, shift, key_ascii);
  } catch (...) {
    if (--key_depth_ == 0) pending_tabs_.clear();
    throw;
  }
  if (--key_depth_ == 0) RunPendingTabs();
  return error;
}

std::string Form::DeliverKey(Control& target, int key_code, int shift, int key_ascii) {
  if (key_code == vbKeyReturn && !target.ConsumesKey(key_code, shift)) {
    if (CommandButton* b = DefaultButton()) {
      b->FireClick();
      return {};
    }
  }
  if (key_code == vbKeyEscape && !target.ConsumesKey(key_code, shift)) {
    if (CommandButton* b = CancelButton()) {
      b->FireClick();
      return {};
    }
  }
  if (key_code == vbKeyTab && (shift & (vbCtrlMask | vbAltMask)) == 0) {
    SendTab((shift & vbShiftMask) != 0);
    return {};
  }
  if (key_code != 0) {
    int code = key_code;
    if (key_preview_ && on_key_down) {
      auto handler = on_key_down;
      handler(code, shift);
    }
    if (code != 0 && target.on_key_down) {
      auto handler = target.on_key_down;
      handler(code, shift);
    }
    if (code != 0) target.DefaultKeyDown(code, shift);
  }
  if (key_ascii != 0) {
    int ascii = key_ascii;
    if (key_preview_ && on_key_press) {
      auto handler = on_key_press;
      handler(ascii);
    }
    if (ascii != 0 && target.on_key_press) {
      auto handler = target.on_key_press;
      handler(ascii);
    }
    if (ascii != 0) target.DefaultKeyPress(ascii);
  }
  if (key_code != 0 && target.on_key_up) {
    int code = key_code;
    auto handler = target.on_key_up;
    handler(code, shift);
  }
  return {};
}

// ---- lifecycle ----

void Form::Load() {
  if (loaded_) return;
  loaded_ = true;
  if (on_load) {
    auto handler = on_load;
    handler();
  }
}

void Form::Show(int style, Form* owner) {
  Load();
  if (!loaded_) return;  // Load unloaded the form again
  visible_ = true;
  if (on_activate) {
    auto handler = on_activate;
    handler();
  }
  if (!visible_) return;
  FocusFirst();
  if (style == vbModal) ui_->ShowModal(*this, owner);
}

void Form::Hide() { visible_ = false; }

bool Form::Unload(int mode) {
  if (!loaded_) return true;
  int cancel = 0;
  if (on_query_unload) {
    auto handler = on_query_unload;
    handler(cancel, mode);
    if (cancel != 0) return false;
  }
  if (on_unload) {
    auto handler = on_unload;
    handler(cancel);
    if (cancel != 0) return false;
  }
  visible_ = false;
  loaded_ = false;
  active_ = nullptr;
  return true;
}

}  // namespace kiv::ui
