// A list box with an edit part: items with a key and a text (and a number the screen
// keeps with each), a selected index, and either a free text or a list-only style.
#pragma once
#include <string>
#include <vector>

#include "ui/control.h"

namespace kiv::ui {

//! Dropdown combo (free text with a list) or dropdown list (list items only).
enum ComboStyle : int { vbComboDropdown = 0, vbComboDropdownList = 2 };

class ComboBox : public Control {
 public:
  explicit ComboBox(std::string name, int style = vbComboDropdownList);
  int Style() const { return style_; }
  void SetStyle(int v) { style_ = v; }

  //! Adds an item at the end or before `index` and returns its index; the key may be empty.
  int AddItem(const std::string& text, const std::string& key = {}, int index = -1);
  //! Removes item `index` (VbError 5 outside); the selection follows its item or clears.
  void RemoveItem(int index);
  //! Removes every item; a list-only combo also loses its text.
  void Clear();
  int ListCount() const { return static_cast<int>(items_.size()); }
  //! Text, key and number of item `index`; VbError 381 outside.
  const std::string& List(int index) const;
  const std::string& ItemKey(int index) const;
  int ItemData(int index) const;
  void SetItemData(int index, int v);
  //! First item with this key / text (without regard to case); -1 when none.
  int FindKey(const std::string& key) const;
  int FindText(const std::string& text) const;

  //! Selected item; -1 when none.
  int ListIndex() const { return list_index_; }
  //! Selects an item (-1 clears; else VbError 380 outside); the text becomes the item's.
  //! Fires Click when the index changes.
  void SetListIndex(int index);
  //! Key of the selected item; empty when none.
  std::string SelectedKey() const;
  const std::string& Text() const { return text_; }
  //! A dropdown combo takes any text (fires Change) and selects the item with that text or
  //! none; a list-only combo selects the item with that text (VbError 383 when none).
  void SetText(const std::string& v, bool fire_events = true);
  //! Picks an item as the clerk does: by key, else by text; false when there is none.
  bool Choose(const std::string& item);

  //! Typing into a dropdown combo appends at the end (Backspace removes the last character);
  //! in a list-only combo a letter moves to the next item starting with it.
  void DefaultKeyPress(int key_ascii) override;
  //! Up and Down move to the previous or next item (Click as for any selection).
  void DefaultKeyDown(int key_code, int shift) override;

  //! text reads the text, value the list index, selected the chosen key (its text when it
  //! has none), count the items.
  std::optional<std::string> QueryState(const std::string& name) const override;
  //! A dropdown combo takes typing and pasted text; any combo a click or choice of an item
  //! (by key or text). Choosing an item it lacks is refused before the focus moves; a click
  //! on one finds out after.
  std::string RefuseAction(const Action& action) const override;
  UiResult ApplyAction(const Action& action) override;

 private:
  struct Item {
    std::string text;
    std::string key;
    int data = 0;
  };
  void CheckIndex(int index) const;
  int style_;
  std::vector<Item> items_;
  int list_index_ = -1;
  std::string text_;
};

}  // namespace kiv::ui
