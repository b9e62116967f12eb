// The connection's rules on real SQL: one statement per call, no writes through a read,
// typed fields, write-back through updatable recordsets, sequences and the trace.
#include "refhost/sqlite_connection.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "temp_database.h"

namespace kiv::refhost::testing {
namespace {

class SqliteConnectionTest : public TempDatabase {
 protected:
  void SetUp() override {
    TempDatabase::SetUp();
    db_->Execute("INSERT INTO kiv_zip_code (zip, City, State) VALUES ('05401', 'BURLINGTON', 'VT')");
    db_->Execute("INSERT INTO kiv_customer (customer_no, last_name, first_name, customer_type) VALUES "
                 "(1, 'O''BRIEN', 'PAT', 'P'), (2, 'SMITH', 'ANN', 'P')");
  }
  int ErrorLogRows() { return static_cast<int>(Count("kiv_error_log")); }
};

TEST_F(SqliteConnectionTest, ReadPathsRefuseSecondStatementsAndWrites) {
  const std::string refused[] = {
      // Text after the closing quote of the component's statement.
      "SELECT * FROM kiv_zip_code WHERE zip = ''; DROP TABLE kiv_customer",
      "DELETE FROM kiv_customer",
      "UPDATE kiv_customer SET last_name = 'X'",
      "INSERT INTO kiv_zip_code (zip) VALUES ('1') RETURNING zip",
      "BEGIN",
  };
  int reports = 0;
  for (const auto& sql : refused) {
    for (bool forward : {true, false}) {
      bool error = false;
      auto rs = forward ? conn_->OpenForwardReadOnlyRecordset(sql, error) : conn_->OpenReadOnlyRecordset(sql, error);
      EXPECT_TRUE(error) << sql;
      EXPECT_EQ(rs, nullptr) << sql;
      EXPECT_EQ(server_->Errors()->Reports(), ++reports) << "each refusal is shown: " << sql;
    }
  }
  EXPECT_EQ(Count("kiv_customer"), 2);
  EXPECT_EQ(Count("kiv_zip_code"), 1);
  EXPECT_EQ(ErrorLogRows(), reports);
}

TEST_F(SqliteConnectionTest, QuotedTextInAReadIsHarmless) {
  // A text typed with quotes at the end of the component's own statement is one value.
  for (const char* sql : {"SELECT * FROM kiv_zip_code WHERE zip = 'x' OR '1'='1'",
                          "SELECT * FROM kiv_zip_code WHERE zip = '1'; DELETE FROM kiv_customer; --'"}) {
    auto rs = Query(sql);
    ASSERT_NE(rs, nullptr) << sql;
    EXPECT_TRUE(rs->Eof()) << "no postal code is spelled so: " << sql;
  }
  std::shared_ptr<host::Recordset> rs;
  // Anywhere else the quote ends the literal early: refused, nothing written.
  rs = Query("SELECT * FROM kiv_customer WHERE last_name = 'O'BRIEN' AND first_name = 'X'");
  EXPECT_EQ(rs, nullptr);
  EXPECT_EQ(Count("kiv_customer"), 2);
}

TEST_F(SqliteConnectionTest, ExecuteSqlRunsOneDataStatement) {
  bool error = false;
  Variant changed;
  conn_->ExecuteSQL("UPDATE kiv_customer SET household_no = 1, household_primary = True WHERE customer_no = 1", error,
                    changed);
  EXPECT_FALSE(error);
  EXPECT_EQ(changed.ToLong(), 1);
  EXPECT_EQ(NzLong(Scalar("SELECT household_primary FROM kiv_customer WHERE customer_no = 1")), 1);

  for (const char* sql : {"UPDATE kiv_customer SET last_name = 'A' WHERE customer_no = 2; DELETE FROM kiv_customer",
                          "DROP TABLE kiv_customer", "ATTACH DATABASE '/tmp/x.db' AS x", "PRAGMA user_version = 9"}) {
    error = false;
    conn_->ExecuteSQL(sql, error, changed);
    EXPECT_TRUE(error) << sql;
  }
  EXPECT_EQ(NzString(Scalar("SELECT last_name FROM kiv_customer WHERE customer_no = 2")), "SMITH");
  EXPECT_EQ(Count("kiv_customer"), 2);
}

TEST_F(SqliteConnectionTest, FieldsReportTypesFromDeclaredColumns) {
  db_->Execute("INSERT INTO kiv_customer_profile (CUSTOMER_NO, PREFERRED_LIFT, VIP_GUEST, LAST_LESSON_DATE, "
               "SEASON_PASS_CREDIT, BOOT_SOLE_LENGTH, SKI_LENGTH_CM, NEWSLETTER, WAIVER_SIGNED) "
               "VALUES (1, 'GONDOLA', 1, '2020-02-03 00:00:00', 12.5, 7, 170.5, 1, 1)");
  db_->Execute("INSERT INTO kiv_images (customer_no, image_no, image_blob) VALUES (1, 1, x'0102')");
  struct Expect {
    const char* column;
    int32_t type, size, precision, scale;
    bool is_long;
  };
  const Expect expected[] = {
      {"CUSTOMER_NO", 3, 4, 10, 0, false},         {"PREFERRED_LIFT", 200, 30, 0, 0, false},
      {"VIP_GUEST", 131, 19, 1, 0, false},         {"LAST_LESSON_DATE", 135, 16, 23, 3, false},
      {"SEASON_PASS_CREDIT", 6, 8, 19, 4, false},  {"BOOT_SOLE_LENGTH", 3, 4, 10, 0, false},
      {"SKI_LENGTH_CM", 131, 19, 5, 1, false},     {"NEWSLETTER", 11, 2, 1, 0, false},
      {"WAIVER_SIGNED", 3, 1, 3, 0, false},
  };
  auto rs = Query("SELECT * FROM kiv_customer_profile");
  ASSERT_NE(rs, nullptr);
  for (const auto& e : expected) {
    auto& f = rs->FieldByName(e.column);
    EXPECT_EQ(f.Type(), e.type) << e.column;
    EXPECT_EQ(f.DefinedSize(), e.size) << e.column;
    EXPECT_EQ(f.Precision(), e.precision) << e.column;
    EXPECT_EQ(f.NumericScale(), e.scale) << e.column;
    EXPECT_EQ((f.Attributes() & host::adFldLong) != 0, e.is_long) << e.column;
  }
  EXPECT_EQ(rs->FieldByName("LAST_LESSON_DATE").Value().ToDate(), Date::FromParts(2020, 2, 3));
  EXPECT_EQ(rs->FieldByName("SEASON_PASS_CREDIT").Value().Type(), VarType::Currency);
  EXPECT_EQ(rs->FieldByName("NEWSLETTER").Value().Type(), VarType::Boolean);
  EXPECT_EQ(rs->FieldByName("BOOT_SOLE_LENGTH").Value().Type(), VarType::Long);

  rs = Query("SELECT c.comment_note, c.Gender, c.Locked, c.preloaded, i.image_blob FROM kiv_customer c "
             "JOIN kiv_images i ON i.customer_no = c.customer_no");
  ASSERT_NE(rs, nullptr);
  EXPECT_EQ(rs->FieldByName("comment_note").Type(), 201);
  EXPECT_NE(rs->FieldByName("comment_note").Attributes() & host::adFldLong, 0);
  EXPECT_EQ(rs->FieldByName("gender").Type(), 129);
  EXPECT_EQ(rs->FieldByName("preloaded").Type(), 2);
  EXPECT_EQ(rs->FieldByName("preloaded").Value().Type(), VarType::Integer);
  EXPECT_EQ(rs->FieldByName("IMAGE_BLOB").Type(), 205);
  EXPECT_EQ(rs->FieldByName("image_blob").ActualSize(), 2);
  EXPECT_EQ(rs->FieldByName("Locked").Value().Type(), VarType::Null);
  EXPECT_THROW(rs->FieldByName("no_such_column"), HostError);
}

TEST_F(SqliteConnectionTest, UpdatableRecordsetAddsChangesAndDeletesRows) {
  bool error = false;
  auto rs = conn_->OpenUpdatableRecordset("SELECT * FROM kiv_customer_rel WHERE child_customer_no = 2", error);
  ASSERT_FALSE(error);
  ASSERT_TRUE(rs->Eof());
  rs->AddNew();
  rs->FieldByName("parent_customer_no").SetValue(Variant(int32_t{1}));
  rs->FieldByName("child_customer_no").SetValue(Variant("2"));  // converted to the column's type
  rs->FieldByName("rel_type_id").SetValue(Variant("EMPLOYEE"));
  rs->Update();
  rs->Close();
  EXPECT_EQ(NzLong(Scalar("SELECT parent_customer_no FROM kiv_customer_rel WHERE child_customer_no = 2")), 1);

  rs = conn_->OpenUpdatableRecordset("SELECT * FROM kiv_customer_rel WHERE child_customer_no = 2", error);
  ASSERT_FALSE(rs->Eof());
  rs->FieldByName("rel_type_id").SetValue(Variant("SPOUSE"));
  rs->Update();
  EXPECT_EQ(NzString(Scalar("SELECT rel_type_id FROM kiv_customer_rel")), "SPOUSE");
  rs->Delete();
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(Count("kiv_customer_rel"), 0);

  // Defaults of columns not assigned come back after the insert.
  rs = conn_->OpenUpdatableRecordset("SELECT * FROM kiv_customer_setting WHERE customer_no = 2", error);
  rs->AddNew();
  rs->FieldByName("CUSTOMER_NO").SetValue(Variant(int32_t{2}));
  rs->FieldByName("guest_shoe_size").SetValue(Variant(9.5));
  rs->Update();
  EXPECT_EQ(rs->FieldByName("guest_shoe_size").Value().ToDouble(), 9.5);
  EXPECT_EQ(NzDouble(Scalar("SELECT guest_shoe_size FROM kiv_customer_setting WHERE customer_no = 2")), 9.5);
}

TEST_F(SqliteConnectionTest, UpdatableRecordsetRefusesWhatItCannotWriteBack) {
  bool error = false;
  auto rs = conn_->OpenUpdatableRecordset(
      "SELECT * FROM kiv_customer c JOIN kiv_customer_address a ON a.customer_no = c.customer_no", error);
  EXPECT_TRUE(error);
  error = false;
  rs = conn_->OpenUpdatableRecordset("DELETE FROM kiv_customer", error);
  EXPECT_TRUE(error);
  error = false;
  // An account id typed with a quote, as the account screen concatenates it: one value.
  rs = conn_->OpenUpdatableRecordset("SELECT * FROM kiv_account WHERE account_id = 'A'; DELETE FROM kiv_customer; --'",
                                     error);
  ASSERT_FALSE(error);
  EXPECT_TRUE(rs->Eof());
  EXPECT_EQ(Count("kiv_customer"), 2);

  error = false;
  rs = conn_->OpenUpdatableRecordset("SELECT * FROM kiv_customer WHERE customer_no = 2", error);
  ASSERT_FALSE(error);
  EXPECT_THROW(rs->FieldByName("customer_type").SetValue(Variant("TOO LONG")), HostError);
  EXPECT_THROW(rs->FieldByName("DOB").SetValue(Variant("not a date")), HostError);

  auto read = Query("SELECT * FROM kiv_customer");
  EXPECT_THROW(read->AddNew(), HostError);
  EXPECT_THROW(read->FieldByName("last_name").SetValue(Variant("X")), HostError);
}

TEST_F(SqliteConnectionTest, LongColumnsMoveInChunks) {
  Bytes photo(2500);
  for (size_t i = 0; i < photo.size(); ++i) photo[i] = static_cast<uint8_t>(i * 7);
  bool error = false;
  auto rs = conn_->OpenUpdatableRecordset(
      "SELECT customer_no, image_no, image_path, image_type, current_photo, image_blob FROM kiv_images WHERE "
      "customer_no = 1",
      error);
  ASSERT_FALSE(error);
  rs->AddNew();
  rs->FieldByName("customer_no").SetValue(Variant(int32_t{1}));
  rs->FieldByName("image_no").SetValue(Variant(int32_t{1}));
  auto& blob = rs->FieldByName("image_blob");
  blob.AppendChunk(Variant(Bytes{}));
  blob.AppendChunk(Variant(Bytes(photo.begin(), photo.begin() + 452)));
  blob.AppendChunk(Variant(Bytes(photo.begin() + 452, photo.begin() + 1476)));
  blob.AppendChunk(Variant(Bytes(photo.begin() + 1476, photo.end())));
  rs->FieldByName("current_photo").SetValue(Variant(true));
  rs->Update();
  rs->Close();

  auto read = conn_->OpenReadOnlyRecordset(
      "SELECT customer_no, image_no, image_blob FROM kiv_images WHERE customer_no = 1 AND current_photo <> 0", error);
  ASSERT_FALSE(error);
  ASSERT_FALSE(read->Eof());
  auto& field = read->FieldByName("image_blob");
  EXPECT_EQ(field.ActualSize(), 2500);
  Bytes back;
  for (int32_t size : {452, 1024, 1024}) {
    Bytes chunk = field.GetChunk(size).ToBytes();
    EXPECT_EQ(chunk.size(), static_cast<size_t>(size));
    back.insert(back.end(), chunk.begin(), chunk.end());
  }
  EXPECT_TRUE(field.GetChunk(1024).IsNull());
  EXPECT_EQ(back, photo);

  // Text columns take chunks of text; the first chunk after positioning replaces the value.
  rs = conn_->OpenUpdatableRecordset("SELECT customer_no, comment_note FROM kiv_customer WHERE customer_no = 2", error);
  auto& note = rs->FieldByName("comment_note");
  note.AppendChunk(Variant("old"));
  rs->Update();
  note.AppendChunk(Variant("new "));
  note.AppendChunk(Variant("text"));
  rs->Update();
  EXPECT_EQ(NzString(Scalar("SELECT comment_note FROM kiv_customer WHERE customer_no = 2")), "new text");
  EXPECT_EQ(note.GetChunk(4).ToString(), "new ");
  EXPECT_EQ(note.GetChunk(100).ToString(), "text");
}

TEST_F(SqliteConnectionTest, SequencesNeverRepeatAndStartAboveExistingKeys) {
  db_->Execute("INSERT INTO kiv_address (address_no) VALUES (41)");
  EXPECT_EQ(conn_->GetNextSequenceNo("seq_address_no"), 42);
  EXPECT_EQ(conn_->GetNextSequenceNo("seq_address_no"), 43);
  EXPECT_EQ(conn_->GetNextSequenceNo("seq_forecast_no"), 1);
  EXPECT_EQ(conn_->GetNextSequenceNo("seq_brand_new"), 1);
  EXPECT_EQ(conn_->GetNextSequenceNo("seq_brand_new"), 2);
  // A second connection on the same file continues the same sequence.
  auto other = RefHost::Open(path_)->SignIn("CLERK")->GetConnection("");
  EXPECT_EQ(other->GetNextSequenceNo("seq_address_no"), 44);
}

TEST_F(SqliteConnectionTest, TraceShowsTheComponentsTextAndParametersInOrder) {
  std::vector<TraceEvent> events;
  host_->SetTrace([&](const TraceEvent& e) { events.push_back(e); });
  Query("SELECT TOP 1 country_id, fiscal_year FROM kiv_system_parm with(nolock)");
  auto command = Procedure("KiV_SP_GetCustomer", {{"@customer_no", Variant(int32_t{2})}});
  auto rs = Rows(command);
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[0].text, "SELECT TOP 1 country_id, fiscal_year FROM kiv_system_parm with(nolock)");
  EXPECT_EQ(events[1].text, "KiV_SP_GetCustomer");
  ASSERT_EQ(events[1].inputs.size(), 1u);
  EXPECT_EQ(events[1].inputs[0].first, "@customer_no");
  EXPECT_EQ(FormatTraceLine(events[1]), "KiV_SP_GetCustomer @customer_no=2 -> @RETURN_VALUE=0");

  // A failure is traced, and so is its report to the error object, as a host call.
  Query("SELECT nothing FROM nowhere");
  ASSERT_EQ(events.size(), 4u);
  EXPECT_TRUE(events[2].error);
  EXPECT_FALSE(events[2].is_host);
  EXPECT_TRUE(events[3].is_host);
  EXPECT_EQ(events[3].text, "ErrorObject.Display");
  host_->SetTrace(nullptr);
  Query("SELECT 1");
  EXPECT_EQ(events.size(), 4u);
}

TEST(TraceLine, CardNumbersTrackDataAndPasswordsNeverReachATraceLine) {
  TraceEvent event("ExecuteCommand", "KIV_SP_CUSTOMER_InsertCreditCard", true,
                   {{"@card_no", Variant("4111 1111 1111 1111")},
                    {"@track_1", Variant("%B4111111111111111^SMITH/ANN^29121010000?")},
                    {"@track_2", Variant(";4111111111111111=29121010000?")},
                    {"@x_card_no", Variant("XXXXXXXXXXXX1111")},
                    {"@kiv_password", Variant("sesame")},
                    {"@zip", Variant("")}});
  const std::string line = FormatTraceLine(event);
  EXPECT_EQ(line.find("41111111"), std::string::npos) << line;
  EXPECT_EQ(line.find("sesame"), std::string::npos) << line;
  EXPECT_EQ(line,
            "KIV_SP_CUSTOMER_InsertCreditCard @card_no=\"XXXXXXXXXXXX1111\" @track_1=<track data withheld> "
            "@track_2=<track data withheld> @x_card_no=\"XXXXXXXXXXXX1111\" @kiv_password=<withheld> @zip=\"\"");
}

TEST(TraceLine, LineBreaksAndControlCharactersCannotStartALineOfTheirOwn) {
  TraceEvent event("ExecuteCommand", "KIV_SP_X\r\nDELETE FROM kiv_customer", true,
                   {{"@comment_note", Variant("first\nDELETE FROM kiv_customer -- \\n\t\x01")}});
  event.error = true;
  event.error_text = "refused\nDROP TABLE kiv_user";
  const std::string line = FormatTraceLine(event);
  EXPECT_EQ(line.find_first_of("\r\n\t\x01"), std::string::npos) << line;
  EXPECT_EQ(line,
            "KIV_SP_X\\r\\nDELETE FROM kiv_customer @comment_note=\"first\\nDELETE FROM kiv_customer -- "
            "\\\\n\\t\\x01\" !! refused\\nDROP TABLE kiv_user");
  EXPECT_EQ(EscapeTraceText("plain 'text' and \"quotes\""), "plain 'text' and \"quotes\"");
}

TEST_F(SqliteConnectionTest, TextsDifferingOnlyInANumberShareOneStatement) {
  auto statements = [&] {
    int n = 0;
    for (sqlite3_stmt* s = sqlite3_next_stmt(db_->Handle(), nullptr); s != nullptr; s = sqlite3_next_stmt(db_->Handle(), s))
      ++n;
    return n;
  };
  std::vector<TraceEvent> events;
  host_->SetTrace([&](const TraceEvent& e) { events.push_back(e); });
  auto rs = Query("SELECT last_name FROM kiv_customer WHERE customer_no = 1");
  ASSERT_NE(rs, nullptr);
  EXPECT_EQ(rs->FieldByName("last_name").Value().ToString(), "O'BRIEN");
  const int prepared = statements();
  rs = Query("SELECT last_name FROM kiv_customer WHERE customer_no = 2");
  ASSERT_NE(rs, nullptr);
  EXPECT_EQ(rs->FieldByName("last_name").Value().ToString(), "SMITH");
  EXPECT_EQ(rs->FieldByName("last_name").Type(), host::adVarChar);
  EXPECT_EQ(statements(), prepared) << "the second text reuses the first one's statement";
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[1].text, "SELECT last_name FROM kiv_customer WHERE customer_no = 2");
  host_->SetTrace(nullptr);

  // A number compared with a text column still compares as text; a written negative keeps its sign.
  db_->Execute("INSERT INTO kiv_zip_code (zip, City, State) VALUES ('12345', 'ALBANY', 'NY')");
  rs = Query("SELECT City FROM kiv_zip_code WHERE zip = 12345");
  ASSERT_NE(rs, nullptr);
  ASSERT_FALSE(rs->Eof());
  EXPECT_EQ(rs->FieldByName("City").Value().ToString(), "ALBANY");
  bool error = false;
  Variant changed;
  conn_->ExecuteSQL("UPDATE kiv_customer SET household_no = -7 WHERE customer_no = 2", error, changed);
  EXPECT_FALSE(error);
  EXPECT_EQ(changed.ToLong(), 1);
  EXPECT_EQ(NzLong(Scalar("SELECT household_no FROM kiv_customer WHERE customer_no = 2")), -7);
}

}  // namespace
}  // namespace kiv::refhost::testing
