// Reading the acting statements of the automation language into actions.
#include "ui/action.h"

#include <array>
#include <utility>

#include "core/text.h"
#include "ui/prop_text.h"

namespace kiv::ui {

namespace {

constexpr std::array<std::pair<const char*, ActionKind>, 12> kVerbs{{
    {"type", ActionKind::Type},
    {"paste", ActionKind::Paste},
    {"key", ActionKind::Key},
    {"focus", ActionKind::Focus},
    {"click", ActionKind::Click},
    {"choose", ActionKind::Choose},
    {"date", ActionKind::Date},
    {"select", ActionKind::Select},
    {"edit", ActionKind::Edit},
    {"dblclick", ActionKind::DblClick},
    {"expand", ActionKind::Expand},
    {"close", ActionKind::Close},
}};

bool ReadRow(const std::string& text, int& row, std::string& error) {
  if (TryParseInt(text, row) && row >= 0) return true;
  error = "not a row number: " + text;
  return false;
}

}  // namespace

bool IsActionVerb(const std::string& verb) {
  for (const auto& [name, kind] : kVerbs) {
    if (EqualsNoCase(verb, name)) return true;
  }
  return false;
}

std::optional<Action> ActionFromWords(const std::string& verb, const std::vector<std::string>& args,
                                      std::string& error) {
  const auto* found = kVerbs.end();
  for (const auto* it = kVerbs.begin(); it != kVerbs.end(); ++it) {
    if (EqualsNoCase(verb, it->first)) found = it;
  }
  if (found == kVerbs.end()) {
    error = "not an action: " + verb;
    return std::nullopt;
  }
  Action a;
  a.kind = found->second;
  auto want = [&](size_t min, size_t max) {
    if (args.size() >= min && args.size() <= max) return true;
    error = verb + ": expected " + std::to_string(min) + (min == max ? "" : " to " + std::to_string(max)) +
            " argument(s), got " + std::to_string(args.size());
    return false;
  };
  switch (a.kind) {
    case ActionKind::Close:
      if (!want(0, 0)) return std::nullopt;
      return a;
    case ActionKind::Focus:
      if (!want(1, 1)) return std::nullopt;
      break;
    case ActionKind::Click:
      if (!want(1, 2)) return std::nullopt;
      break;
    case ActionKind::Type:
    case ActionKind::Paste:
    case ActionKind::Key:
    case ActionKind::Choose:
    case ActionKind::Date:
      if (!want(2, 2)) return std::nullopt;
      break;
    case ActionKind::Select: {
      if (!want(2, 2)) return std::nullopt;
      for (const std::string& part : Split(args[1], ",")) {
        int row = 0;
        if (!ReadRow(part, row, error)) return std::nullopt;
        a.rows.push_back(row);
      }
      break;
    }
    case ActionKind::Edit: {
      if (!want(4, 4)) return std::nullopt;
      int row = 0;
      if (!ReadRow(args[1], row, error)) return std::nullopt;
      if (!TryParseInt(args[2], a.col) || a.col < 0) {
        error = "not a column number: " + args[2];
        return std::nullopt;
      }
      a.rows.push_back(row);
      a.control = args[0];
      a.text = args[3];
      return a;
    }
    case ActionKind::DblClick:
    case ActionKind::Expand: {
      if (!want(a.kind == ActionKind::Expand ? 2 : 1, 2)) return std::nullopt;
      if (args.size() == 2) {
        int row = 0;
        if (!ReadRow(args[1], row, error)) return std::nullopt;
        a.rows.push_back(row);
      }
      a.control = args[0];
      return a;
    }
  }
  a.control = args[0];
  if (args.size() > 1) a.text = args[1];
  return a;
}

}  // namespace kiv::ui
