// The connection the component talks to: every call translated, checked against the
// one-statement and read-only rules, run, traced, and on failure shown and flagged.
#include "refhost/sqlite_connection.h"

#include <cstdlib>
#include <sqlite3.h>

#include "core/text.h"
#include "host/host_error.h"
#include "refhost/dialect.h"
#include "refhost/sqlite_command.h"
#include "refhost/sequences.h"
#include "refhost/sqlite_recordset.h"
#include "refhost/statement_guard.h"

namespace kiv::refhost {

namespace {

constexpr const char* kSource = "KIVRefHost.SqliteConnection";

std::string FirstWord(std::string_view sql) {
  size_t i = 0;
  while (i < sql.size() && (std::isspace(static_cast<unsigned char>(sql[i])) || sql[i] == '(')) ++i;
  size_t start = i;
  while (i < sql.size() && std::isalpha(static_cast<unsigned char>(sql[i]))) ++i;
  return UCase(sql.substr(start, i - start));
}

// The value a server would hold for a parameter of this declared type.
Variant ConvertParameter(const ProcedureParam& declared, const Variant& value) {
  if (value.IsEmpty() || value.IsNull()) return Variant::Null();
  ValueKind kind = ValueKind::Any;
  switch (declared.type) {
    case host::adInteger:
      kind = ValueKind::Long;
      break;
    case host::adSmallInt:
      kind = ValueKind::SmallInt;
      break;
    case host::adBoolean:
      kind = ValueKind::Boolean;
      break;
    case host::adDouble:
      kind = ValueKind::Double;
      break;
    case host::adCurrency:
      kind = ValueKind::Currency;
      break;
    case host::adDate:
    case host::adDBTimeStamp:
      kind = ValueKind::Date;
      break;
    case host::adVarChar:
    case host::adChar:
      kind = ValueKind::Text;
      break;
    default:
      return value;
  }
  Variant converted;
  try {
    converted = ConvertForColumn(value, kind);
  } catch (const VbError&) {
    throw HostError(kErrDatabase, "Error converting the value of parameter " + declared.name + ".");
  }
  if (kind == ValueKind::Text && declared.size > 0) {
    // A server cuts a text to the parameter's declared size.
    std::string text = converted.ToString();
    size_t chars = 0, cut = 0;
    for (; cut < text.size(); ++cut) {
      if ((static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) continue;
      if (chars == static_cast<size_t>(declared.size)) break;
      ++chars;
    }
    if (cut < text.size()) converted = Variant(text.substr(0, cut));
  }
  return converted;
}

// The values of the literals the translation took out, as parameters 1, 2, ...
void BindLiterals(sqlite3_stmt* stmt, const std::vector<int64_t>& values) {
  for (size_t i = 0; i < values.size(); ++i) sqlite3_bind_int64(stmt, static_cast<int>(i + 1), values[i]);
}

// The connection's readings are the procedures' for the length of one call.
class ReadingsScope {
 public:
  ReadingsScope(SqliteDatabase& db, ReadRows* readings) : db_(db), previous_(db.Readings()) {
    db_.SetReadings(readings);
  }
  ~ReadingsScope() { db_.SetReadings(previous_); }
  ReadingsScope(const ReadingsScope&) = delete;
  ReadingsScope& operator=(const ReadingsScope&) = delete;

 private:
  SqliteDatabase& db_;
  ReadRows* previous_;
};

}  // namespace

SqliteConnection::SqliteConnection(std::shared_ptr<SqliteDatabase> db, std::string user_id, std::string password,
                                   const ProcedureRegistry& registry, std::shared_ptr<TraceHook> trace)
    : db_(std::move(db)),
      user_id_(std::move(user_id)),
      password_(std::move(password)),
      registry_(registry),
      trace_(trace ? std::move(trace) : std::make_shared<TraceHook>()) {}

SqliteConnection::~SqliteConnection() {
  // The transaction's own destructor rolls back; said here because it is the point.
  if (!unit_) return;
  unit_->Rollback();
  db_->RunAfterTransaction();
}

void SqliteConnection::BeginUnitOfWork() {
  if (unit_depth_++ > 0) return;
  unit_failure_.clear();
  TraceEvent event{"BeginUnitOfWork", ""};
  try {
    unit_ = std::make_unique<Transaction>(*db_, true);
  } catch (const HostError& e) {
    unit_failure_ = e.description;
    Fail(event, e.number, e.description, nullptr);
  }
}

void SqliteConnection::EndUnitOfWork(bool commit) {
  if (unit_depth_ == 0) return;
  if (--unit_depth_ > 0) return;
  std::unique_ptr<Transaction> unit = std::move(unit_);
  unit_failure_.clear();
  if (!unit) return;
  if (!commit) {
    unit->Rollback();
    db_->RunAfterTransaction();
    return;
  }
  TraceEvent event{"EndUnitOfWork", ""};
  try {
    unit->Commit();
  } catch (const HostError& e) {
    unit->Rollback();
    Fail(event, e.number, e.description, nullptr);
  }
  db_->RunAfterTransaction();
}

void SqliteConnection::CheckUnit() {
  if (unit_depth_ == 0) return;
  if (unit_ && sqlite3_get_autocommit(db_->Handle()) != 0) {
    // SQLite ended the transaction itself (a full disk, an I/O error): the unit is lost, and
    // what follows must not be written outside it.
    unit_.reset();
    unit_failure_ = "the database ended the save after an error.";
  }
  if (!unit_) throw HostError(kErrDatabase, "Nothing was saved: " + unit_failure_);
}

void SqliteConnection::Guard(std::string& sent, ParameterizedSql& prepared) const {
  const StatementGuard& guard = StatementGuard::Standard();
  std::string refusal = guard.Refusal(sent, prepared.text);
  if (refusal.empty()) return;
  std::string meant = guard.AsMeant(sent);
  if (meant == sent) throw HostError(kErrDatabase, refusal);
  // AsMeant answers only with a statement the guard lets run.
  sent = std::move(meant);
  prepared = ParameterizeLiterals(TranslateSql(sent));
}

void SqliteConnection::Emit(const TraceEvent& event) const {
  if (*trace_) (*trace_)(event);
}

void SqliteConnection::Fail(TraceEvent& event, int32_t number, const std::string& description,
                            const std::shared_ptr<host::Command>& command) {
  event.error = true;
  event.error_text = description;
  Emit(event);
  if (!error_object_) return;
  try {
    error_object_->Display(number, kSource, description, false, Variant(), Variant(), Variant(), command,
                           event.text);
  } catch (...) {
    // The report is the last thing a failure does; its own failure is not the caller's.
  }
}

std::shared_ptr<host::Recordset> SqliteConnection::OpenRead(const char* operation, const std::string& sql,
                                                            ReadMode mode, bool& error) {
  TraceEvent event{operation, sql};
  try {
    // Texts that differ only in a number (a customer's address list) share one statement.
    std::string meant = sql;
    ParameterizedSql translated = ParameterizeLiterals(TranslateSql(meant));
    Guard(meant, translated);
    RowSet rows;
    {
      SqliteDatabase::ComponentStatements own(*db_);
      StatementLease lease = db_->Prepare(translated.text);
      BindLiterals(lease.get(), translated.values);
      if (!sqlite3_stmt_readonly(lease.get()) || sqlite3_column_count(lease.get()) == 0)
        throw HostError(kErrDatabase, "A read-only recordset cannot run a statement that changes the database.");
      rows = ReadRowSet(*db_, lease);
    }
    Emit(event);
    return std::make_shared<SqliteRecordset>(
        std::move(rows), mode == ReadMode::Forward ? SqliteRecordset::Mode::ForwardOnly : SqliteRecordset::Mode::Static);
  } catch (const HostError& e) {
    error = true;
    Fail(event, e.number, e.description, nullptr);
  } catch (const VbError& e) {
    error = true;
    Fail(event, e.Number(), e.Description(), nullptr);
  }
  return nullptr;
}

std::shared_ptr<host::Recordset> SqliteConnection::OpenReadOnlyRecordset(const std::string& sql, bool& error) {
  return OpenRead("OpenReadOnlyRecordset", sql, ReadMode::Static, error);
}

std::shared_ptr<host::Recordset> SqliteConnection::OpenForwardReadOnlyRecordset(const std::string& sql, bool& error) {
  return OpenRead("OpenForwardReadOnlyRecordset", sql, ReadMode::Forward, error);
}

std::shared_ptr<host::Recordset> SqliteConnection::OpenUpdatableRecordset(const std::string& sql, bool& error) {
  TraceEvent event{"OpenUpdatableRecordset", sql};
  try {
    CheckUnit();
    std::string meant = sql;
    std::string translated = TranslateSql(meant);
    if (FirstWord(translated) != "SELECT") {
      error = true;
      Fail(event, kErrDatabase, "An updatable recordset needs a SELECT statement.", nullptr);
      return nullptr;
    }
    ParameterizedSql guarded = ParameterizeLiterals(translated);
    Guard(meant, guarded);
    if (meant != sql) translated = TranslateSql(meant);
    size_t at = translated.find_first_not_of(" \t\r\n");
    std::string with_rowid = translated.substr(0, at + 6) + " rowid AS kiv__rowid," + translated.substr(at + 6);
    std::shared_ptr<host::Recordset> result;
    try {
      SqliteDatabase::ComponentStatements own(*db_);
      ParameterizedSql parameterized = ParameterizeLiterals(std::move(with_rowid));
      StatementLease lease = db_->Prepare(parameterized.text);
      BindLiterals(lease.get(), parameterized.values);
      const char* table = sqlite3_column_table_name(lease.get(), 0);
      bool one_table = table != nullptr && sqlite3_stmt_readonly(lease.get());
      for (int c = 1; one_table && c < sqlite3_column_count(lease.get()); ++c) {
        const char* other = sqlite3_column_table_name(lease.get(), c);
        one_table = other == nullptr || std::string_view(other) == table;
      }
      if (!one_table) throw HostError(kErrDatabase, "");
      RowSet rows = ReadRowSet(*db_, lease, true);
      result = std::make_shared<SqliteRecordset>(std::move(rows), SqliteRecordset::Mode::Updatable, db_, table);
    } catch (const HostError& e) {
      // A second statement keeps its own message; anything else is a query we cannot write back.
      if (e.description.rfind("Only one statement", 0) == 0) throw;
      throw HostError(kErrDatabase, "An updatable recordset needs a query on one table" +
                                        (e.description.empty() ? std::string(".") : " (" + e.description + ")."));
    }
    Emit(event);
    return result;
  } catch (const HostError& e) {
    error = true;
    Fail(event, e.number, e.description, nullptr);
  }
  return nullptr;
}

void SqliteConnection::ExecuteSQL(const std::string& sql, bool& error, Variant& extra) {
  TraceEvent event{"ExecuteSQL", sql};
  try {
    CheckUnit();
    std::string meant = sql;
    std::string translated = TranslateSql(meant);
    std::string word = FirstWord(translated);
    if (word != "UPDATE" && word != "DELETE" && word != "INSERT" && word != "SELECT" && word != "WITH") {
      error = true;
      Fail(event, kErrDatabase, "Only data statements (UPDATE, DELETE, INSERT) can be run here.", nullptr);
      return;
    }
    ParameterizedSql parameterized = ParameterizeLiterals(std::move(translated));
    Guard(meant, parameterized);
    int changed = 0;
    {
      SqliteDatabase::ComponentStatements own(*db_);
      StatementLease lease = db_->Prepare(parameterized.text);
      BindLiterals(lease.get(), parameterized.values);
      int rc;
      while ((rc = sqlite3_step(lease.get())) == SQLITE_ROW) {
      }
      if (rc != SQLITE_DONE) db_->Fail("Statement failed");
      changed = sqlite3_changes(db_->Handle());
    }
    extra = Variant(static_cast<int32_t>(changed));
    event.outputs.emplace_back("rows", extra);
    Emit(event);
  } catch (const HostError& e) {
    error = true;
    Fail(event, e.number, e.description, nullptr);
  }
}

std::shared_ptr<host::Command> SqliteConnection::CreateCommand(bool& /*error*/) {
  return std::make_shared<SqliteCommand>(registry_);
}

std::shared_ptr<host::Command> SqliteConnection::CreateCommandText(const std::string& text) {
  return std::make_shared<SqliteCommand>(registry_, text);
}

int32_t SqliteConnection::GetNextSequenceNo(const std::string& sequence_name) {
  TraceEvent event{"GetNextSequenceNo", sequence_name};
  try {
    CheckUnit();
    int32_t next = NextSequenceNo(*db_, sequence_name);
    event.outputs.emplace_back("next", Variant(next));
    Emit(event);
    return next;
  } catch (const HostError& e) {
    Fail(event, e.number, e.description, nullptr);
    throw;
  }
}

std::shared_ptr<host::Recordset> SqliteConnection::RunCommand(const char* operation,
                                                              const std::shared_ptr<host::Command>& command,
                                                              bool want_rows, bool& error) {
  auto* cmd = dynamic_cast<SqliteCommand*>(command.get());
  if (cmd == nullptr) {
    TraceEvent event{operation, command ? command->CommandText() : std::string()};
    error = true;
    Fail(event, kErrDatabase, "The command was not created by this connection.", command);
    return nullptr;
  }
  const Procedure* procedure = registry_.Find(cmd->CommandText());
  if (procedure == nullptr && cmd->CommandType() != host::adCmdStoredProc) {
    // A text command: its text is SQL.
    if (want_rows) return OpenRead(operation, cmd->CommandText(), ReadMode::Forward, error);
    Variant ignored;
    ExecuteSQL(cmd->CommandText(), error, ignored);
    return nullptr;
  }
  TraceEvent event{operation, cmd->CommandText(), true, cmd->Params().TakeAssignments()};
  try {
    if (procedure == nullptr) throw HostError(kErrDatabase, "Could not find stored procedure '" + cmd->CommandText() + "'.");
    if (procedure->writes) CheckUnit();
    std::vector<ProcedureParam> declared = ProcedureRegistry::ServerParameters(*procedure);
    std::vector<Variant> values(declared.size());
    SqliteParameters& params = cmd->Params();
    std::vector<int> slot(static_cast<size_t>(params.Count()), -1);
    for (int32_t p = 0; p < params.Count(); ++p) {
      const std::string& name = params.At(static_cast<size_t>(p)).Declared().name;
      // Declared names are unique. A refreshed list holds them in the declared order, so the
      // same position is tried first; a name of another length cannot match.
      auto same = [&](size_t d) {
        return declared[d].name.size() == name.size() && EqualsNoCase(declared[d].name, name);
      };
      size_t d = static_cast<size_t>(p);
      if (d >= declared.size() || !same(d))
        for (d = 0; d < declared.size() && !same(d); ++d) {
        }
      if (d >= declared.size()) continue;
      slot[static_cast<size_t>(p)] = static_cast<int>(d);
      if (declared[d].direction != host::adParamInput && declared[d].direction != host::adParamInputOutput) continue;
      const SqliteParameter& param = params.At(static_cast<size_t>(p));
      if (!param.Assigned()) continue;
      values[d] = ConvertParameter(declared[d], param.Value());
      // An assigned Empty is a value (Null) to the procedure; only a parameter never assigned
      // stays Empty, which some procedures read as "leave the stored value".
      if (param.Assigned() && values[d].IsEmpty()) values[d] = Variant::Null();
    }
    ProcedureCall call(*db_, user_id_, declared, std::move(values));
    call.Return(0);
    {
      ReadingsScope readings(*db_, &read_rows_);
      Transaction transaction(*db_, procedure->writes);
      procedure->body(call);
      transaction.Commit();
    }
    for (int32_t p = 0; p < params.Count(); ++p) {
      int d = slot[static_cast<size_t>(p)];
      if (d < 0 || declared[static_cast<size_t>(d)].direction == host::adParamInput) continue;
      SqliteParameter& parameter = params.At(static_cast<size_t>(p));
      parameter.Store(call.Values()[static_cast<size_t>(d)]);
      event.outputs.emplace_back(parameter.Name(), parameter.Value());
    }
    Emit(event);
    if (!want_rows) return nullptr;
    auto rows = std::make_shared<SqliteRecordset>(std::move(call.Rows()), SqliteRecordset::Mode::ForwardOnly);
    rows->SetFollowing(std::move(call.FollowingRows()));
    return rows;
  } catch (const HostError& e) {
    error = true;
    Fail(event, e.number, e.description, command);
  } catch (const VbError& e) {
    error = true;
    Fail(event, e.Number(), e.Description(), command);
  } catch (const std::exception& e) {
    error = true;
    Fail(event, kErrDatabase, e.what(), command);
  }
  return nullptr;
}

void SqliteConnection::ExecuteCommand(const std::shared_ptr<host::Command>& command, bool& error) {
  RunCommand("ExecuteCommand", command, false, error);
}

std::shared_ptr<host::Recordset> SqliteConnection::cmdOpenForwardReadOnlyRecordset(
    const std::shared_ptr<host::Command>& command, bool& error, Variant& /*extra*/) {
  return RunCommand("cmdOpenForwardReadOnlyRecordset", command, true, error);
}

}  // namespace kiv::refhost

namespace kiv::refhost {

std::string SqliteConnection::ComputerName() {
  // One program is one workstation; several terminals on one database name themselves.
  const char* name = std::getenv("KIVCUST_COMPUTER");
  return name != nullptr && *name != '\0' ? std::string(name) : std::string("WORKSTATION1");
}

}  // namespace kiv::refhost
