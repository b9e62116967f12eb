// One column of a recordset's current row, with the database access library's type codes.
#pragma once
#include <cstdint>
#include <string>

#include "core/variant.h"

namespace kiv::host {

//! Field and parameter type codes of the database access library.
enum DataType : int32_t {
  adEmpty = 0,
  adSmallInt = 2,
  adInteger = 3,
  adSingle = 4,
  adDouble = 5,
  adCurrency = 6,
  adDate = 7,
  adBoolean = 11,
  adVariant = 12,
  adDecimal = 14,
  adTinyInt = 16,
  adBigInt = 20,
  adChar = 129,
  adWChar = 130,
  adNumeric = 131,
  adDBDate = 133,
  adDBTime = 134,
  adDBTimeStamp = 135,
  adVarChar = 200,
  adLongVarChar = 201,
  adVarWChar = 202,
  adLongVarWChar = 203,
  adVarBinary = 204,
  adLongVarBinary = 205,
};

//! Field attribute bits.
enum FieldAttribute : int32_t {
  adFldMayBeNull = 0x40,
  adFldLong = 0x80,  // long field: read and write it in chunks
};

class Field {
 public:
  virtual ~Field() = default;
  virtual std::string Name() const = 0;
  virtual Variant Value() const = 0;
  //! Assigns the value of the current (or new) row; only on an updatable recordset.
  virtual void SetValue(const Variant& value) = 0;
  virtual int32_t Type() const = 0;
  virtual int32_t DefinedSize() const = 0;
  virtual int32_t Precision() const = 0;
  virtual int32_t NumericScale() const = 0;
  //! Length in bytes of the current value (0 for null).
  virtual int32_t ActualSize() const = 0;
  virtual int32_t Attributes() const = 0;
  //! Reads the next `length` bytes of a long field, continuing where the last call stopped;
  //! Null once nothing is left.
  virtual Variant GetChunk(int32_t length) = 0;
  //! Appends to the value being written; the first call after the row was positioned
  //! replaces the value.
  virtual void AppendChunk(const Variant& data) = 0;
};

}  // namespace kiv::host
