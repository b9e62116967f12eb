// The generic actions a front end performs on a form by control name (the acting
// statements of the automation language), and what performing or querying answers.
#pragma once
#include <optional>
#include <string>
#include <vector>

namespace kiv::ui {

enum class ActionKind {
  Type,      //!< type CTRL TEXT: per character KeyPress then insertion and Change at the caret
  Paste,     //!< paste CTRL TEXT: replaces the text, no KeyPress
  Key,       //!< key CTRL KEY: KeyDown, then KeyPress when the key makes a character
  Focus,     //!< focus CTRL
  Click,     //!< click CTRL [ITEM]: button, check box, menu item; option or tab by index, key or caption
  Choose,    //!< choose CTRL ITEM: list item by key or text
  Date,      //!< date CTRL YYYY-MM-DD|none
  Select,    //!< select GRID ROW[,ROW...]: first row current
  Edit,      //!< edit GRID ROW COL VALUE
  DblClick,  //!< dblclick GRID ROW (or dblclick CTRL on any other control)
  Expand,    //!< expand GRID ROW: the outline box of the row (opens a closed row, closes an open one)
  Close,     //!< close: the form's close box (QueryUnload with mode 0)
};

struct Action {
  ActionKind kind = ActionKind::Focus;
  std::string control;    //!< control name; empty for Close
  std::string text;       //!< TEXT, KEY, ITEM, date text or cell VALUE
  std::vector<int> rows;  //!< Select: the rows; Edit, DblClick, Expand: one row
  int col = 0;            //!< Edit: the column
};

//! Answer of Form::Perform and Form::Query: `ok` with the value (Query) or an error text.
struct UiResult {
  bool ok = true;
  std::string value;
  std::string error;
  static UiResult Ok(std::string v = {}) { return UiResult{true, std::move(v), {}}; }
  static UiResult Fail(std::string e) { return UiResult{false, {}, std::move(e)}; }
  explicit operator bool() const { return ok; }
};

//! Reads a statement of the automation language (verb and its words, quotes removed) into
//! an action; nullopt with `error` set when the verb is not an action or the words do not fit.
std::optional<Action> ActionFromWords(const std::string& verb, const std::vector<std::string>& args,
                                      std::string& error);

//! True for the verbs ActionFromWords reads (type paste key focus click choose date select
//! edit dblclick expand close), without regard to case.
bool IsActionVerb(const std::string& verb);

}  // namespace kiv::ui
