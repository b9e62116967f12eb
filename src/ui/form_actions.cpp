// The generic actions and queries by control name that script runners and front ends
// drive a form with. Nothing here throws to the caller: failures come back as text.
#include <exception>

#include "core/text.h"
#include "core/vb_error.h"
#include "ui/form.h"
#include "ui/keys.h"
#include "ui/prop_text.h"

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
    if (auto v = c->QueryState(prop)) return UiResult::Ok(*v);
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
  auto stayed = [this] {
    return UiResult::Ok("the focus stayed on " + (active_ ? active_->Name() : std::string("nothing")));
  };
  // A clerk's click or typing first brings the focus to a control that can take it; when
  // the control that had it refuses to let go (Validate), nothing more happens.
  auto focus = [&]() { return !c.Focusable() || c.HasFocus() || MoveFocus(c); };

  if (action.kind == ActionKind::Focus) {
    if (!c.Focusable()) return UiResult::Fail(c.Name() + " cannot take the focus");
    if (!focus()) return stayed();
    return UiResult::Ok();
  }
  if (action.kind == ActionKind::Key) {
    auto k = ParseKey(action.text);
    if (!k) return UiResult::Fail("not a key: " + action.text);
    if (!c.Focusable()) return UiResult::Fail(c.Name() + " cannot take the focus");
    std::string error = SendKey(c, k->key_code, k->shift, k->key_ascii);
    if (!error.empty()) return UiResult::Fail(error);
    return UiResult::Ok();
  }
  std::string refusal = c.RefuseAction(action);
  if (!refusal.empty()) return UiResult::Fail(refusal);
  if (!focus()) return stayed();
  if (action.kind == ActionKind::Type) return TypeText(action.text);
  return c.ApplyAction(action);
}

UiResult Form::TypeText(const std::string& text) {
  bool was_loaded = loaded_;
  for (int cp : CodePoints(text)) {
    Control* target = active_;
    if (target == nullptr || (was_loaded && !loaded_)) break;  // the form closed while typing
    KeyStroke k = cp == '\n' ? KeyStroke{vbKeyReturn, 0, 13} : cp == '\t' ? KeyStroke{vbKeyTab, 0, 0} : CharKey(cp);
    std::string error = SendKey(*target, k.key_code, k.shift, k.key_ascii);
    if (!error.empty()) return UiResult::Fail(error);
  }
  return UiResult::Ok();
}

}  // namespace kiv::ui
