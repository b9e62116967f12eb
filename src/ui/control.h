// The base of every headless control: identity, the common properties, the platform's
// events as assignable handlers, and a registry of properties readable and writable as
// text, so a script runner or a browser can walk any form without knowing its controls.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ui/action.h"

namespace kiv::ui {

class Form;

class Control {
 public:
  //! A property as text: `set` is empty for a read-only property.
  struct Property {
    std::string name;
    std::function<std::string()> get;
    std::function<void(const std::string&)> set;
  };

  Control(std::string name, std::string type_name);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  const std::string& Name() const { return name_; }
  //! The control's kind as a front end names it ("TextBox", "Grid"...).
  const std::string& TypeName() const { return type_name_; }

  bool Enabled() const { return enabled_; }
  void SetEnabled(bool v) { enabled_ = v; }
  bool Visible() const { return visible_; }
  void SetVisible(bool v) { visible_ = v; }
  //! Enabled and visible here and in every container up the chain: what a clerk can reach.
  bool IsEffectivelyEnabled() const;
  bool IsEffectivelyVisible() const;

  int TabIndex() const { return tab_index_; }
  //! Moves the control in its form's tab order (lower first; ties keep creation order).
  void SetTabIndex(int v) { tab_index_ = v; }
  bool TabStop() const { return tab_stop_; }
  void SetTabStop(bool v) { tab_stop_ = v; }
  const std::string& Tag() const { return tag_; }
  void SetTag(std::string v) { tag_ = std::move(v); }
  const std::string& ToolTipText() const { return tool_tip_; }
  void SetToolTipText(std::string v) { tool_tip_ = std::move(v); }
  //! When false, leaving another control for this one does not run that control's Validate.
  bool CausesValidation() const { return causes_validation_; }
  void SetCausesValidation(bool v) { causes_validation_ = v; }

  //! The form that owns the control; null until a form adds it.
  Form* Parent() const { return parent_; }
  //! The frame, panel or menu the control sits in; null for the form itself.
  Control* Container() const { return container_; }
  void SetContainer(Control* container) { container_ = container; }

  //! True when the control can hold the focus at all (labels, frames, menus cannot).
  virtual bool Focusable() const { return true; }
  //! Focusable, enabled and visible (with its containers).
  bool CanFocus() const;
  //! True when the control holds its form's focus.
  bool HasFocus() const;
  //! Moves the form's focus here (LostFocus/Validate on the old control, GotFocus here);
  //! false when the old control's Validate kept the focus or the control cannot take it.
  bool SetFocus();

  //! Property names in registration order.
  std::vector<std::string> PropertyNames() const;
  bool HasProperty(const std::string& name) const;
  //! Reads a property as text (name without regard to case); VbError 438 when unknown.
  std::string GetProperty(const std::string& name) const;
  //! Writes a property from text, running the same setter (and events) as code would;
  //! VbError 438 when unknown, 383 when read-only, 13 or 380 when the text does not fit.
  void SetProperty(const std::string& name, const std::string& text);
  //! Every property with its current text, in registration order.
  std::vector<std::pair<std::string, std::string>> PropertyValues() const;

  //! What the control does with a key after the KeyDown handlers (Delete in a text box).
  virtual void DefaultKeyDown(int key_code, int shift);
  //! What the control does with a character after the KeyPress handlers (a text box
  //! inserts it). `key_ascii` is never 0 here.
  virtual void DefaultKeyPress(int key_ascii);
  //! True when the control keeps Enter (or Esc) for itself instead of letting the form's
  //! default (cancel) button have it: a focused command button, a multi-line text box with Ctrl.
  virtual bool ConsumesKey(int key_code, int shift) const;

  // ---- what a front end sees and does, by control kind ----
  //! The caption a clerk reads on the control: its Caption property when it has one, else
  //! empty. A tab strip answers its selected tab, an option group its chosen option.
  virtual std::string ShownCaption() const;
  //! Answers a standard query (name without regard to case): enabled, visible, focus, text
  //! and caption here; value, checked, selected, count and the kind's own names (a grid's
  //! rows or [ROW,COL]) where a kind has them. nullopt when the kind does not know the name,
  //! so the caller may fall back to the property of that name.
  virtual std::optional<std::string> QueryState(const std::string& name) const;
  //! Checks, before the form moves the focus here, that the control takes `action` (its
  //! kind, item, row or date); an error text refuses it, empty lets it go on. Focus, Key
  //! and Close are the form's and never come here. Any control takes a plain click and a
  //! plain double click; the rest is refused unless a kind takes it.
  virtual std::string RefuseAction(const Action& action) const;
  //! Carries out an action RefuseAction let through, once the focus is here (Type is the
  //! form's: it sends the keys). A plain click fires Click, a double click DblClick.
  virtual UiResult ApplyAction(const Action& action);

  // Events, as on the platform. A handler left empty does nothing.
  std::function<void()> on_change;
  std::function<void()> on_click;
  std::function<void()> on_dbl_click;
  std::function<void()> on_got_focus;
  std::function<void()> on_lost_focus;
  //! Setting `cancel` keeps the focus on this control.
  std::function<void(bool& cancel)> on_validate;
  //! Setting `key_ascii` to 0 swallows the character; changing it types another.
  std::function<void(int& key_ascii)> on_key_press;
  //! Setting `key_code` to 0 stops the key's own action (Delete) and later KeyDown handlers.
  std::function<void(int& key_code, int shift)> on_key_down;
  std::function<void(int& key_code, int shift)> on_key_up;

  //! Runs on_change / on_click / on_dbl_click when set.
  void FireChange();
  void FireClick();
  void FireDblClick();

 protected:
  //! Registers a property; a later registration of the same name replaces it.
  void RegisterProperty(std::string name, std::function<std::string()> get,
                        std::function<void(const std::string&)> set = {});

 private:
  friend class Form;
  const Property* FindProperty(const std::string& name) const;

  std::string name_;
  std::string type_name_;
  bool enabled_ = true;
  bool visible_ = true;
  int tab_index_ = 0;
  bool tab_stop_ = true;
  bool causes_validation_ = true;
  std::string tag_;
  std::string tool_tip_;
  Form* parent_ = nullptr;
  Control* container_ = nullptr;
  std::vector<Property> properties_;
};

}  // namespace kiv::ui
