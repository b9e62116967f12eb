// One column of a reference-host recordset: its value on the current row, its metadata,
// and the chunked reading and writing of long text and binary columns.
#pragma once
#include <cstdint>
#include <string>

#include "host/field.h"

namespace kiv::refhost {

class SqliteRecordset;

class SqliteField : public host::Field {
 public:
  SqliteField(SqliteRecordset& owner, int column) : owner_(owner), column_(column) {}

  std::string Name() const override;
  Variant Value() const override;
  //! Raises HostError 3251 on a read-only recordset, 3021 without a current row.
  void SetValue(const Variant& value) override;
  int32_t Type() const override;
  int32_t DefinedSize() const override;
  int32_t Precision() const override;
  int32_t NumericScale() const override;
  int32_t ActualSize() const override;
  int32_t Attributes() const override;
  Variant GetChunk(int32_t length) override;
  void AppendChunk(const Variant& data) override;

 private:
  SqliteRecordset& owner_;
  int column_;
  // Chunk positions belong to one positioning of the row: a move starts them over.
  uint64_t read_generation_ = 0;
  size_t read_offset_ = 0;
  uint64_t append_generation_ = 0;
};

}  // namespace kiv::refhost
