// Rows returned by a query or a procedure, read one at a time; updatable when opened so.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/variant.h"
#include "host/field.h"

namespace kiv::host {

class Recordset {
 public:
  virtual ~Recordset() = default;
  virtual bool IsOpen() const = 0;
  //! At end of file: no current row.
  virtual bool Eof() const = 0;
  virtual bool Bof() const = 0;
  virtual void MoveNext() = 0;
  virtual void MoveFirst() = 0;
  //! Number of rows, or -1 when the recordset cannot tell.
  virtual int32_t RecordCount() const = 0;
  virtual int32_t FieldCount() const = 0;
  //! The field by position; raises HostError 3265 when out of range.
  virtual Field& FieldAt(int32_t index) = 0;
  //! The field by name, compared without regard to case; raises HostError 3265 when absent.
  virtual Field& FieldByName(const std::string& name) = 0;
  //! Shorthand for FieldByName(name).Value().
  Variant operator[](const std::string& name) { return FieldByName(name).Value(); }

  // Updatable recordsets only; a read-only one raises HostError.
  virtual void AddNew() = 0;
  virtual void Update() = 0;
  virtual void Delete() = 0;

  virtual void Close() = 0;
  //! The next result set of a procedure that returns several; null when there is none.
  virtual std::shared_ptr<Recordset> NextRecordset() = 0;
};

}  // namespace kiv::host
