// The session thread: home screen, modal forms and message boxes, each parked on Next().
#include "apps/serve/web_session.h"

#include <algorithm>

#include "apps/serve/json_text.h"
#include "core/text.h"
#include "engine/c_cust_engine.h"
#include "records/c_customer.h"
#include "ui/action.h"
#include "ui/form.h"
#include "ui/grid.h"
#include "ui/image.h"

namespace kiv::serve {
namespace {

std::string BoxJson(const kivcust::ShownBox& box) {
  auto buttons = ui::BoxButtons(box.style);
  size_t default_index = std::min(static_cast<size_t>((box.style & 0xF00) >> 8), buttons.size() - 1);
  std::string out = "{\"prompt\":" + JsonString(box.prompt) + ",\"title\":" + JsonString(box.title) +
                    ",\"icon\":" + JsonString(ui::BoxIconName(box.style)) + ",\"default\":" + std::to_string(default_index) +
                    ",\"buttons\":[";
  for (size_t i = 0; i < buttons.size(); ++i) out += (i ? "," : "") + JsonString(kivcust::AnswerText(buttons[i]));
  return out + "]}";
}

std::string CustomerText(const CCustomer& c) {
  std::string name = !c.CompanyName().empty() && c.LastName().empty() ? c.CompanyName()
                                                                      : c.LastName() + (c.FirstName().empty() ? "" : ", " + c.FirstName());
  return "customer #" + std::to_string(c.CustomerNo()) + " " + name;
}

std::string Joined(const std::vector<std::string>& items, const char* separator) {
  std::string out;
  for (size_t i = 0; i < items.size(); ++i) out += (i ? separator : "") + items[i];
  return out;
}

//! What the page needs of a grid beyond its description: each column's alignment and edit
//! list, each row's outline level, subtotal and collapsed state and style.
void AddGridLayout(const ui::Grid& grid, ui::ControlNode& node) {
  std::vector<std::string> align, lists, levels, nodes, styles;
  for (int c = 0; c < grid.Cols(); ++c) {
    static const char* const kAlign[] = {"", "l", "c", "r"};
    align.push_back(kAlign[static_cast<int>(grid.ColAlignment(c))]);
    lists.push_back(grid.ColComboList(c));
  }
  for (int r = 0; r < grid.Rows(); ++r) {
    levels.push_back(std::to_string(grid.RowOutlineLevel(r)));
    nodes.push_back(grid.IsCollapsed(r) ? "c" : grid.IsSubtotal(r) ? "s" : "");
    styles.push_back(grid.RowStyle(r));
  }
  node.properties.emplace_back("ColAlignments", Joined(align, ","));
  node.properties.emplace_back("ColComboLists", Joined(lists, "\n"));
  node.properties.emplace_back("OutlineLevels", Joined(levels, ","));
  node.properties.emplace_back("OutlineNodes", Joined(nodes, ","));
  node.properties.emplace_back("RowStyles", Joined(styles, ","));
}

void AddLayout(const ui::Form& form, ui::ControlNode& node) {
  if (node.type == "Grid") {
    if (const auto* grid = form.FindAs<ui::Grid>(node.name)) AddGridLayout(*grid, node);
  }
  for (auto& child : node.children) AddLayout(form, child);
}

}  // namespace

WebSession::WebSession(std::unique_ptr<kivcust::Session> session, std::string user)
    : session_(std::move(session)), user_(std::move(user)) {
  session_->Ui().SetDriver(this);
  thread_ = std::thread([this] { Run(); });
}

WebSession::~WebSession() {
  {
    std::lock_guard lock(mutex_);
    stop_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

Reply WebSession::Submit(Command command, std::chrono::milliseconds wait) {
  std::unique_lock lock(mutex_);
  if (stop_) return {410, "{\"error\":\"The session has ended.\"}"};
  uint64_t seq = ++next_seq_;
  queue_.emplace_back(seq, std::move(command));
  changed_.notify_all();
  bool done = changed_.wait_for(lock, wait, [&] { return stop_ || (idle_ && done_seq_ >= seq); });
  if (!done) return {503, "{\"error\":\"The screen is still working; try again in a moment.\"}"};
  if (stop_) return {410, "{\"error\":\"The session has ended.\"}"};
  return reply_;
}

std::string WebSession::Picture(const std::string& control, std::chrono::milliseconds wait) {
  Command c{Command::Kind::Picture, control, {}};
  if (Submit(std::move(c), wait).status != 200) return {};
  std::lock_guard lock(mutex_);
  return picture_;
}

std::optional<Command> WebSession::Next() {
  std::string state = StateJson();
  std::unique_lock lock(mutex_);
  reply_ = Reply{outcome_.status, std::move(state)};
  idle_ = true;
  changed_.notify_all();
  changed_.wait(lock, [&] { return stop_ || !queue_.empty(); });
  if (stop_) return std::nullopt;
  auto [seq, command] = std::move(queue_.front());
  queue_.pop_front();
  idle_ = false;
  done_seq_ = seq;
  outcome_ = Outcome{};
  if (command.kind == Command::Kind::Picture) {
    picture_.clear();
    if (ui::Form* form = session_->Ui().ActiveForm()) {
      if (auto* image = form->FindAs<ui::Image>(command.verb)) picture_.assign(image->Picture().begin(), image->Picture().end());
    }
  }
  return command;
}

void WebSession::Run() {
  while (auto command = Next()) {
    switch (command->kind) {
      case Command::Kind::Call: outcome_ = Guarded([&] { return ApplyCall(*command); }); break;
      case Command::Kind::Act: outcome_ = {409, "No screen is open; choose one from the home page."}; break;
      case Command::Kind::Answer: outcome_ = {409, "No message box is showing."}; break;
      default: break;
    }
  }
  // The screens go with the thread that owned them.
  std::lock_guard lock(mutex_);
  session_.reset();
}

void WebSession::DriveModal(ui::Form& form) {
  while (form.Visible()) {
    auto command = Next();
    if (!command) return;  // stopping: the Ui hides the form
    switch (command->kind) {
      case Command::Kind::Act: outcome_ = Guarded([&] { return ApplyAct(form, *command); }); break;
      case Command::Kind::Call: outcome_ = {409, "Close the open screen first."}; break;
      case Command::Kind::Answer: outcome_ = {409, "No message box is showing."}; break;
      default: break;
    }
  }
}

std::optional<ui::MsgBoxResult> WebSession::Unanswered(const kivcust::ShownBox& box, const std::string&) {
  box_ = box;
  while (auto command = Next()) {
    if (command->kind != Command::Kind::Answer) {
      outcome_ = {409, "Answer the message box first."};
      continue;
    }
    auto answer = kivcust::AnswerFromText(command->verb);
    if (!answer || !kivcust::StyleHasButton(box.style, *answer)) {
      outcome_ = {400, "\"" + command->verb + "\" is not a button of the message box."};
      continue;
    }
    box_.reset();
    return answer;
  }
  box_.reset();
  return std::nullopt;  // stopping: the harmless button
}

WebSession::Outcome WebSession::Guarded(const std::function<Outcome()>& body) {
  // Screen code reports its own errors; anything that still escapes is told to this tab
  // alone, and the server and the other tabs go on.
  try {
    return body();
  } catch (const std::exception& e) {
    return {500, std::string("The screen stopped on an unexpected error: ") + e.what()};
  } catch (...) {
    return {500, "The screen stopped on an unexpected error."};
  }
}

WebSession::Outcome WebSession::ApplyAct(ui::Form& form, const Command& command) {
  std::string error;
  auto action = ui::ActionFromWords(command.verb, command.args, error);
  if (!action) return {400, error.empty() ? "That is not an action." : error};
  ui::Form* top = session_->Ui().ActiveForm();
  ui::Form& target = top != nullptr ? *top : form;
  if (!action->control.empty() && target.Find(action->control) == nullptr)
    return {404, "There is no control named \"" + action->control + "\" on this screen."};
  ui::UiResult result = target.Perform(*action);
  if (!result) return {409, result.error};
  return {};
}

WebSession::Outcome WebSession::ApplyCall(const Command& command) {
  CCustEngine& engine = session_->Engine();
  if (EqualsNoCase(command.verb, "SelectCustomer")) {
    CCustEngine::SelectCustomerArgs args;
    auto customer = engine.SelectCustomer(args);
    notice_ = customer && !args.bError ? "Chosen: " + CustomerText(*customer) + "." : "No customer was chosen.";
    return {};
  }
  if (EqualsNoCase(command.verb, "ShowSearchCustomer")) {
    CCustEngine::ShowSearchCustomerArgs args;
    engine.ShowSearchCustomer(args);
    notice_.clear();
    return {};
  }
  if (EqualsNoCase(command.verb, "ShowCustomer")) {
    CCustEngine::ShowCustomerArgs args;
    std::string text = command.args.empty() ? std::string() : Trim(command.args[0]);
    try {
      size_t used = 0;
      long number = std::stol(text, &used);
      if (used != text.size() || number <= 0 || number > INT32_MAX) throw std::invalid_argument(text);
      args.lCustomerNo = static_cast<int32_t>(number);
    } catch (const std::exception&) {
      return {400, "\"" + text + "\" is not a customer number."};
    }
    auto customer = engine.ShowCustomer(args);
    notice_ = args.bError ? "Customer #" + text + " could not be opened." : std::string();
    return {};
  }
  return {400, "\"" + command.verb + "\" is not a screen this program offers."};
}

std::string WebSession::StateJson() const {
  auto& ui = session_->Ui();
  std::string out = "{\"user\":" + JsonString(user_) + ",\"error\":" + JsonString(outcome_.error) +
                    ",\"notice\":" + JsonString(notice_) + ",\"depth\":" + std::to_string(ui.ModalDepth()) +
                    ",\"wait\":" + (ui.WaitCursor() ? "true" : "false");
  out += ",\"box\":" + (box_ ? BoxJson(*box_) : std::string("null"));
  ui::Form* form = ui.ActiveForm();
  if (form == nullptr) return out + ",\"form\":null}";
  ui::ControlNode tree = form->Describe();
  AddLayout(*form, tree);
  out += ",\"form\":" + NodeJson(tree);
  return out + "}";
}

}  // namespace kiv::serve
