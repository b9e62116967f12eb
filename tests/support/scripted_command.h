// Scripted commands and parameters: Refresh answers the parameter list scripted for the
// procedure, lookup by name ignores case, and every value assignment is recorded in order.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/variant.h"
#include "host/command.h"
#include "host/field.h"

namespace kiv::test {

//! One value assignment to a command parameter, as the code made it.
struct Assignment {
  std::string name;
  Variant value;
};
//! Same name (exactly) and same value: Null and Empty only match themselves, other values
//! compare as the platform's "=" does (5 equals 5.0 and "5").
bool operator==(const Assignment& a, const Assignment& b);
//! `@customer_no=5`, `@last_name="SMITH"`, `@birth=Null`.
std::string DescribeAssignment(const Assignment& a);

//! One parameter of a procedure's scripted list. A bare name converts to an input
//! parameter, except "@RETURN_VALUE" (any case), which becomes the return value (type 3):
//! `.Params({"@RETURN_VALUE", "@customer_no", Out("@message", host::adVarChar, 255)})`.
struct ParamSpec {
  ParamSpec(const char* name);
  ParamSpec(std::string name);
  ParamSpec(std::string name, int32_t direction, int32_t type = host::adVariant, int32_t size = 0);
  std::string name;
  int32_t direction = host::adParamInput;
  int32_t type = host::adVariant;
  int32_t size = 0;
};
ParamSpec In(std::string name, int32_t type = host::adVariant, int32_t size = 0);
ParamSpec Out(std::string name, int32_t type = host::adVariant, int32_t size = 0);
ParamSpec InOut(std::string name, int32_t type = host::adVariant, int32_t size = 0);

class ScriptedCommand;

class ScriptedParameter : public host::Parameter {
 public:
  ScriptedParameter(ScriptedCommand& owner, ParamSpec param) : owner_(owner), spec_(std::move(param)) {}
  std::string Name() const override { return spec_.name; }
  Variant Value() const override { return value_; }
  //! Records the assignment on the command, then keeps the value.
  void SetValue(const Variant& value) override;
  int32_t Direction() const override { return spec_.direction; }
  int32_t Type() const override { return spec_.type; }
  int32_t Size() const override { return spec_.size; }
  //! Sets the value without recording it (the server filling an output).
  void Fill(const Variant& value) { value_ = value; }

 private:
  ScriptedCommand& owner_;
  ParamSpec spec_;
  Variant value_;
};

//! The parameter list. Until a Refresh finds a scripted list (an unscripted procedure, or
//! no Refresh yet), lookup by name creates the parameter, so a test that does not care
//! needs no script; once a scripted list is in place an unknown name raises 3265.
class ScriptedParameters : public host::Parameters {
 public:
  explicit ScriptedParameters(ScriptedCommand& owner) : owner_(owner) {}
  void Refresh() override;
  int32_t Count() const override { return static_cast<int32_t>(list_.size()); }
  host::Parameter& Item(int32_t index) override;
  host::Parameter& Item(const std::string& name) override;
  host::Parameter* Find(const std::string& name) override;

  //! Replaces the list (what Refresh does with the server's answer).
  void Reset(const std::vector<ParamSpec>& declared, bool scripted);
  //! Finds or creates a parameter by name without recording anything (outputs at execution).
  ScriptedParameter& Ensure(const std::string& name, int32_t direction);
  bool Scripted() const { return scripted_; }
  std::vector<std::string> Names() const;

 private:
  ScriptedParameter* Lookup(const std::string& name);
  ScriptedCommand& owner_;
  std::vector<std::unique_ptr<ScriptedParameter>> list_;
  bool scripted_ = false;
};

//! A command handed out by the scripted connection. It keeps every assignment ever made to
//! it; the connection takes the ones since the last execution into its log at each run.
class ScriptedCommand : public host::Command {
 public:
  //! `refresher` answers the scripted parameter list for a command text; `found` false
  //! when nothing is scripted for it.
  using Refresher = std::function<std::vector<ParamSpec>(const std::string& text, bool& found)>;
  ScriptedCommand(std::string text, int32_t type, Refresher refresher);

  std::string CommandText() const override { return text_; }
  void SetCommandText(const std::string& text) override { text_ = text; }
  int32_t CommandType() const override { return type_; }
  void SetCommandType(int32_t type) override { type_ = type; }
  host::Parameters& GetParameters() override { return params_; }

  // ---- for tests and the connection ----
  ScriptedParameters& Params() { return params_; }
  int32_t RefreshCount() const { return refreshes_; }
  //! Every assignment made to this command, in order.
  const std::vector<Assignment>& Assignments() const { return all_; }
  //! The assignments since the last execution, handed to the log and forgotten.
  std::vector<Assignment> TakePending();

 private:
  friend class ScriptedParameter;
  friend class ScriptedParameters;
  std::string text_;
  int32_t type_;
  Refresher refresher_;
  ScriptedParameters params_{*this};
  std::vector<Assignment> all_;
  std::vector<Assignment> pending_;
  int32_t refreshes_ = 0;
};

}  // namespace kiv::test
