// A stored-procedure (or text) command with its parameter list, refreshed from the server.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/variant.h"

namespace kiv::host {

enum CommandType : int32_t { adCmdText = 1, adCmdTable = 2, adCmdStoredProc = 4 };
enum ParameterDirection : int32_t {
  adParamUnknown = 0,
  adParamInput = 1,
  adParamOutput = 2,
  adParamInputOutput = 3,
  adParamReturnValue = 4,
};

class Parameter {
 public:
  virtual ~Parameter() = default;
  virtual std::string Name() const = 0;
  virtual Variant Value() const = 0;
  virtual void SetValue(const Variant& value) = 0;
  virtual int32_t Direction() const = 0;
  virtual int32_t Type() const = 0;
  virtual int32_t Size() const = 0;
};

class Parameters {
 public:
  virtual ~Parameters() = default;
  //! Asks the server for the procedure's parameter list ("@RETURN_VALUE" first when it has one).
  virtual void Refresh() = 0;
  virtual int32_t Count() const = 0;
  //! By position; raises HostError 3265 when out of range.
  virtual Parameter& Item(int32_t index) = 0;
  //! By name, compared without regard to case; raises HostError 3265 when absent.
  virtual Parameter& Item(const std::string& name) = 0;
  //! By name without raising: null when absent.
  virtual Parameter* Find(const std::string& name) = 0;
  Parameter& operator[](const std::string& name) { return Item(name); }
  Parameter& operator[](int32_t index) { return Item(index); }
};

class Command {
 public:
  virtual ~Command() = default;
  virtual std::string CommandText() const = 0;
  virtual void SetCommandText(const std::string& text) = 0;
  virtual int32_t CommandType() const = 0;
  virtual void SetCommandType(int32_t type) = 0;
  virtual Parameters& GetParameters() = 0;
};

}  // namespace kiv::host
