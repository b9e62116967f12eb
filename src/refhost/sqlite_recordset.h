// Rows of a query or procedure held in memory. An updatable recordset also knows its table
// and each row's id, and writes AddNew/assignments/Delete back with one statement each.
#pragma once
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/recordset.h"
#include "refhost/row_set.h"
#include "refhost/sqlite_field.h"

namespace kiv::refhost {

class SqliteDatabase;

class SqliteRecordset : public host::Recordset {
 public:
  enum class Mode { ForwardOnly, Static, Updatable };

  //! `table` names the one table an updatable recordset writes to.
  SqliteRecordset(RowSet rows, Mode mode, std::shared_ptr<SqliteDatabase> db = nullptr, std::string table = {});

  bool IsOpen() const override { return open_; }
  bool Eof() const override;
  bool Bof() const override;
  void MoveNext() override;
  void MoveFirst() override;
  //! The number of rows, for every mode (the rows are read at open).
  int32_t RecordCount() const override;
  int32_t FieldCount() const override;
  host::Field& FieldAt(int32_t index) override;
  host::Field& FieldByName(const std::string& name) override;
  void AddNew() override;
  //! Writes the pending new row (INSERT) or changed columns (UPDATE by row id); nothing
  //! pending does nothing. Throws HostError when the database refuses.
  void Update() override;
  //! Deletes the current row at once; the next row becomes current.
  void Delete() override;
  void Close() override;
  //! The next result set of a procedure that answered several; null after the last. This
  //! recordset is closed, as a server's is when its client moves on.
  std::shared_ptr<host::Recordset> NextRecordset() override;
  //! The result sets that follow this one, in order.
  void SetFollowing(std::vector<RowSet> following) { following_ = std::move(following); }

  // For the fields.
  const ColumnInfo& Column(int column) const { return rows_.columns[static_cast<size_t>(column)]; }
  Variant CurrentValue(int column) const;
  void Assign(int column, const Variant& value);
  //! Changes whenever the current row is positioned again (move, AddNew, Update).
  uint64_t Generation() const { return generation_; }

 private:
  void CheckOpen() const;
  void CheckCurrent() const;
  void CheckUpdatable() const;
  void Reposition();
  void Reload(size_t row);

  RowSet rows_;
  Mode mode_;
  std::shared_ptr<SqliteDatabase> db_;
  std::string table_;
  std::vector<std::unique_ptr<SqliteField>> fields_;
  size_t pos_ = 0;
  bool open_ = true;
  uint64_t generation_ = 1;
  bool adding_ = false;        // the current row is a new one not yet written
  std::set<int> dirty_;        // columns assigned on the current row since the last Update
  std::vector<RowSet> following_;
};

}  // namespace kiv::refhost
