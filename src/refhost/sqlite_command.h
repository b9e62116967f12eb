// A command of the reference host: a procedure name (or SQL text) and its parameter list.
#pragma once
#include <string>

#include "host/command.h"
#include "refhost/sqlite_parameters.h"

namespace kiv::refhost {

class SqliteCommand : public host::Command {
 public:
  explicit SqliteCommand(const ProcedureRegistry& registry, std::string text = {})
      : text_(std::move(text)), parameters_(*this, registry) {}

  std::string CommandText() const override { return text_; }
  void SetCommandText(const std::string& text) override { text_ = text; }
  int32_t CommandType() const override { return type_; }
  void SetCommandType(int32_t type) override { type_ = type; }
  host::Parameters& GetParameters() override { return parameters_; }
  SqliteParameters& Params() { return parameters_; }

 private:
  std::string text_;
  int32_t type_ = host::adCmdText;
  SqliteParameters parameters_;
};

}  // namespace kiv::refhost
