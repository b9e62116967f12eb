// A headless form: named controls in tab order, the focus and its events, default and
// cancel buttons, key preview, the load/show/hide/unload lifecycle, and the generic
// description, actions and queries that script runners and front ends drive it with.
#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/action.h"
#include "ui/control.h"
#include "ui/control_node.h"
#include "ui/ui.h"

namespace kiv::ui {

class CommandButton;

//! QueryUnload modes: the close box, or Unload called from code.
enum UnloadMode : int { vbFormControlMenu = 0, vbFormCode = 1 };
//! Show's style argument.
enum FormShow : int { vbModeless = 0, vbModal = 1 };

class Form {
 public:
  explicit Form(std::string name);
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& Caption() const { return caption_; }
  void SetCaption(std::string v) { caption_ = std::move(v); }

  //! The Ui service the form and its screen use; a SilentUi until one is given.
  Ui& ui() const { return *ui_; }
  const std::shared_ptr<Ui>& UiService() const { return ui_; }
  //! Sets the Ui service; null restores a SilentUi.
  void SetUi(std::shared_ptr<Ui> ui);

  // ---- controls ----
  //! Creates a control owned by the form, named `name` (unique without regard to case, else
  //! VbError 457), placed last in tab order and inside `container` when one is given.
  template <class T, class... Args>
  T& Add(const std::string& name, Args&&... args) {
    auto control = std::make_unique<T>(name, std::forward<Args>(args)...);
    T& ref = *control;
    Adopt(std::move(control));
    return ref;
  }
  //! The control named so (without regard to case); null when there is none.
  Control* Find(const std::string& name) const;
  template <class T>
  T* FindAs(const std::string& name) const { return dynamic_cast<T*>(Find(name)); }
  //! Every control in creation order.
  std::vector<Control*> Controls() const;
  //! Controls sorted by tab index (ties in creation order).
  std::vector<Control*> TabOrder() const;

  // ---- focus ----
  //! The control with the focus; null before the form has given it to anyone.
  Control* ActiveControl() const { return active_; }
  //! Moves the focus as the platform does: Validate on the old control (only when `target`
  //! causes validation) — a cancel leaves the focus where it was and runs neither LostFocus
  //! nor GotFocus —, then LostFocus on the old control, then GotFocus on `target`. False
  //! when the focus did not move (`target` cannot take it, Validate cancelled, or a handler
  //! moved the focus elsewhere). Moving to the control that has the focus does nothing.
  bool MoveFocus(Control& target);
  //! The "send Tab" of the platform: focus to the next (or previous) focusable tab stop
  //! after the active control, wrapping round. Inside a key's handlers the move waits until
  //! the key has been handled, as a sent keystroke would.
  void SendTab(bool backwards = false);
  //! Gives the focus to the first focusable tab stop when no control has it.
  void FocusFirst();

  // ---- keys ----
  //! When true the form's key handlers see every key before the focused control's.
  bool KeyPreview() const { return key_preview_; }
  void SetKeyPreview(bool v) { key_preview_ = v; }
  //! Delivers one keystroke to `target` (focusing it first when it has not the focus):
  //! Enter clicks the default button and Esc the cancel button unless the control consumes
  //! the key; Tab moves the focus; otherwise KeyDown (form first with KeyPreview, then the
  //! control, then its own action) and, for a character, KeyPress likewise and the insertion.
  //! Returns an error text, empty on success.
  std::string SendKey(Control& target, int key_code, int shift, int key_ascii);
  //! The enabled and visible button marked Default / Cancel; null when none.
  CommandButton* DefaultButton() const;
  CommandButton* CancelButton() const;

  // ---- lifecycle ----
  bool Loaded() const { return loaded_; }
  bool Visible() const { return visible_; }
  //! Runs Load once (on_load) until the form is unloaded again.
  void Load();
  //! Loads when needed, makes the form visible, runs Activate and focuses the first tab
  //! stop; a modal show then hands the form to the Ui (which returns when it hides).
  void Show(int style = vbModeless, Form* owner = nullptr);
  //! Makes the form invisible; it stays loaded.
  void Hide();
  //! QueryUnload (cancel, mode), then Unload (cancel); either cancelling keeps the form.
  //! Otherwise the form hides and unloads. True when it unloaded.
  bool Unload(int mode = vbFormCode);

  std::function<void()> on_load;
  std::function<void()> on_activate;
  //! Setting `cancel` to non-zero keeps the form; `unload_mode` is an UnloadMode.
  std::function<void(int& cancel, int unload_mode)> on_query_unload;
  std::function<void(int& cancel)> on_unload;
  //! Form-level key handlers, run before the control's when KeyPreview is on.
  std::function<void(int& key_code, int shift)> on_key_down;
  std::function<void(int& key_ascii)> on_key_press;

  // ---- description, actions, queries ----
  //! The form and every control as a tree: contained controls under their container.
  ControlNode Describe() const;
  //! The tree as indented text, one control a line, grids with their cells.
  std::string DescribeText() const;
  //! Performs a generic action; never throws: an unknown or unreachable control, a bad item
  //! or a handler that raised comes back as an error text. The form finds the control,
  //! checks it can be reached, handles focus, keys, typing and the close box itself, and
  //! leaves the rest to the control (Control::RefuseAction before the focus moves to it,
  //! Control::ApplyAction after; a Validate that keeps the focus elsewhere stops the action).
  UiResult Perform(const Action& action);
  //! Answers `expect CTRL.PROP`: text caption value enabled visible checked selected count
  //! focus, panel[KEY], [ROW,COL] (a grid cell as shown), rows (data rows), cols,
  //! colhidden[C], rowhidden[R] (each kind answers through Control::QueryState); any other
  //! name reads the control's property of that name.
  //! `control` empty or the form's name asks the form: caption, visible, focus (the
  //! active control's name), loaded.
  UiResult Query(const std::string& control, const std::string& prop) const;

 private:
  void Adopt(std::unique_ptr<Control> control);
  UiResult PerformOn(Control& control, const Action& action);
  //! Types `text` a character at a time into whichever control has the focus as it goes.
  UiResult TypeText(const std::string& text);
  std::string DeliverKey(Control& target, int key_code, int shift, int key_ascii);
  void RunPendingTabs();

  std::string name_;
  std::string caption_;
  std::shared_ptr<Ui> ui_;
  std::vector<std::unique_ptr<Control>> controls_;
  Control* active_ = nullptr;
  bool key_preview_ = false;
  bool loaded_ = false;
  bool visible_ = false;
  int key_depth_ = 0;
  std::vector<bool> pending_tabs_;  // backwards flag of each Tab sent while a key was handled
};

}  // namespace kiv::ui
