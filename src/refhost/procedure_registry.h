// Stored procedures of the reference host: C++ functions looked up by name without regard
// to case, each declaring its parameters so a command can refresh its list as from a server.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/variant.h"
#include "refhost/row_set.h"

namespace kiv::refhost {

class SqliteDatabase;

struct ProcedureParam {
  std::string name;
  int32_t direction = 1;  // host::ParameterDirection
  int32_t type = 3;       // host::DataType
  int32_t size = 0;
};

//! A procedure's view of one call: its parameter values, its outputs and its rows.
class ProcedureCall {
 public:
  //! `params` are the declared parameters ("@RETURN_VALUE" first) with their values.
  ProcedureCall(SqliteDatabase& db, std::string user, std::vector<ProcedureParam> declared,
                std::vector<Variant> values);

  SqliteDatabase& Db() { return db_; }
  const std::string& User() const { return user_; }

  //! The value passed in (Empty reads as Null). Raises std::logic_error for an undeclared name.
  Variant In(std::string_view name) const;
  bool IsNull(std::string_view name) const;
  //! False when the caller never assigned the parameter (as opposed to assigning Null).
  bool Assigned(std::string_view name) const;
  int32_t Long(std::string_view name, int32_t if_null = 0) const;
  double Double(std::string_view name) const;
  bool Bool(std::string_view name) const;
  //! Text, Null as empty text.
  std::string Text(std::string_view name) const;
  //! The text trimmed, or Null when nothing is left: how an optional criterion is read.
  Variant Criterion(std::string_view name) const;

  void Out(std::string_view name, const Variant& value);
  void Return(int32_t value) { Out("@RETURN_VALUE", Variant(value)); }

  //! The rows the call returns: every row of the query.
  void ReturnRows(const std::string& sql, const std::vector<Variant>& args = {});
  RowSet& Rows() { return rows_; }
  bool HasRows() const { return has_rows_; }
  // ---- several result sets ----
  //! Adds the rows of the query as the next result set: the first one becomes Rows(), each
  //! later one is handed out by the recordset's NextRecordset in the order added.
  void AddResultSet(const std::string& sql, const std::vector<Variant>& args = {});
  std::vector<RowSet>& FollowingRows() { return following_rows_; }

  //! Fails the call: the transaction is rolled back and the caller's error flag set.
  [[noreturn]] void Raise(const std::string& description) const;

  const std::vector<Variant>& Values() const { return values_; }

 private:
  size_t IndexOf(std::string_view name) const;

  SqliteDatabase& db_;
  std::string user_;
  std::vector<ProcedureParam> declared_;
  std::vector<Variant> values_;
  RowSet rows_;
  bool has_rows_ = false;
  std::vector<RowSet> following_rows_;
};

struct Procedure {
  std::string name;
  //! The declared list without "@RETURN_VALUE", which every procedure has first.
  std::vector<ProcedureParam> params;
  //! A writing procedure takes the write lock when its transaction starts.
  bool writes = false;
  std::function<void(ProcedureCall&)> body;
};

class ProcedureRegistry {
 public:
  void Add(Procedure procedure);
  //! By name without regard to case, a leading "dbo." ignored; null when unknown.
  const Procedure* Find(std::string_view name) const;
  //! The parameter list as a server reports it: "@RETURN_VALUE" first.
  static std::vector<ProcedureParam> ServerParameters(const Procedure& procedure);

  //! Every procedure of the reference host.
  static const ProcedureRegistry& Standard();

 private:
  std::unordered_map<std::string, Procedure> procedures_;
};

// Registration of each area's procedures (one file per area).
void AddCustomerProcedures(ProcedureRegistry& registry);
void AddAddressProcedures(ProcedureRegistry& registry);
void AddSideRecordProcedures(ProcedureRegistry& registry);
void AddSearchProcedures(ProcedureRegistry& registry);
void AddHouseholdProcedures(ProcedureRegistry& registry);
void AddRelationshipProcedures(ProcedureRegistry& registry);
void AddCardFileProcedures(ProcedureRegistry& registry);
void AddActivityProcedures(ProcedureRegistry& registry);
void AddDedupProcedures(ProcedureRegistry& registry);
void AddAlertProcedures(ProcedureRegistry& registry);
void AddAboutProcedures(ProcedureRegistry& registry);
void AddRentalProcedures(ProcedureRegistry& registry);
void AddReservationProcedures(ProcedureRegistry& registry);
void AddAccessProcedures(ProcedureRegistry& registry);
void AddMoneyProcedures(ProcedureRegistry& registry);

// Parameter declarations, shortest form.
ProcedureParam InInt(std::string name);
ProcedureParam InSmall(std::string name);
ProcedureParam InBit(std::string name);
ProcedureParam InFloat(std::string name);
ProcedureParam InDate(std::string name);
ProcedureParam InText(std::string name, int32_t size);
ProcedureParam InOutInt(std::string name);
ProcedureParam OutInt(std::string name);
ProcedureParam OutSmall(std::string name);
ProcedureParam OutBit(std::string name);
ProcedureParam OutText(std::string name, int32_t size);

}  // namespace kiv::refhost
