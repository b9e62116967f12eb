// Scripted suite services: each records every operation with its arguments in order and
// answers what the test set. Hand them to the application server with
//   host.app->SetReservationService(reservations);   (see ScriptedAppServer)
// and inspect them afterwards:
//   EXPECT_EQ(reservations->Operations(), (std::vector<std::string>{"UnBookReservationByNo"}));
//   EXPECT_EQ(reservations->Calls()[0].args, (std::vector<Variant>{12, 340}));
#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "core/variant.h"
#include "host/suite_services.h"

namespace kiv::test {

//! One operation called on a scripted service, with its arguments in order (a list
//! argument is recorded as its items joined by ",", an object as True when present).
struct ServiceCall {
  std::string operation;
  std::vector<Variant> args;
};

//! What every scripted service shares: the record of calls and the answers of its
//! Boolean operations (true unless set otherwise, per operation or for all).
class ServiceRecorder {
 public:
  const std::vector<ServiceCall>& Calls() const { return calls_; }
  //! The operation names, in call order.
  std::vector<std::string> Operations() const;
  size_t CountOf(const std::string& operation) const;
  //! What a Boolean operation answers; `operation` empty sets the answer of all of them.
  void SetAnswer(const std::string& operation, bool answer);

 protected:
  bool Record(const std::string& operation, std::vector<Variant> args);

 private:
  std::vector<ServiceCall> calls_;
  std::map<std::string, bool> answers_;
  bool default_answer_ = true;
};

class ScriptedReservationService : public host::ReservationService, public ServiceRecorder {
 public:
  bool EditReservations(int32_t customer_no, int32_t household_no) override;
  bool EditReservationByNo(int32_t customer_no, int32_t res_header_no, int32_t res_no) override;
  bool EditRentalReservation(int32_t customer_no, int32_t res_header_no, int32_t res_no,
                             const Variant& read_only) override;
  bool CancelRentalReservation(int32_t res_no) override;
  bool UnBookReservationByNo(int32_t customer_no, int32_t res_no) override;
};

class ScriptedInvoicingService : public host::InvoicingService, public ServiceRecorder {
 public:
  void Setup(int32_t salesorder_no, const std::vector<int32_t>& so_line_nos) override;
  bool InvoiceAndPay(int32_t customer_no, int32_t salesorder_no) override;
};

//! A register: installed and cashed in, control number 1 and register "R1" unless set.
class ScriptedRegister : public host::RegisterService, public ServiceRecorder {
 public:
  bool installed = true;
  bool cashed_in = true;
  int32_t control_no = 1;
  std::string register_id = "R1";
  bool Installed() override;
  bool CashedIn() override;
  int32_t CurrentControlNo() override;
  std::string RegisterId() override;
};

class ScriptedWillCall : public host::WillCallService, public ServiceRecorder {
 public:
  void SetAppServer(std::shared_ptr<host::AppServer> app_server) override;
  bool ShowWillCallScreen(int32_t customer_no, const std::string& register_id, int32_t control_no,
                          int32_t will_call_no, int32_t access_no) override;
  //! The application server it was given last.
  //! Weak: the scripted application server keeps this object, so a strong link would be a cycle.
  std::weak_ptr<host::AppServer> app_server;
};

//! Reports: only the keys defined with Define() are found. PrintReport records the key,
//! the parameter string and the record selection.
class ScriptedReportService : public host::ReportService, public ServiceRecorder {
 public:
  void Define(const std::string& report_key, const std::string& report_name = "report.rpt");
  bool GetClientMapReport(const std::string& report_key, host::ClientReport& report) override;
  host::ReportParameters CreateReportParamFromString(const std::string& parameter_text) override;
  bool PrintReport(const host::ClientReport& report, const host::ReportParameters& parameters) override;

 private:
  std::map<std::string, host::ClientReport> reports_;
};

//! A card as the clerk entered it; every field is the test's to set.
class ScriptedCardObject : public host::CardObject {
 public:
  std::string track1, track2, card_no, exp_date, zip, address, x_card_no, pay_method_id;
  //! The number it was given (0 until then).
  int32_t customer_no = 0;
  std::string Track1() const override { return track1; }
  std::string Track2() const override { return track2; }
  std::string CardNo() const override { return card_no; }
  std::string ExpDate() const override { return exp_date; }
  std::string Zip() const override { return zip; }
  std::string Address() const override { return address; }
  std::string XCardNo() const override { return x_card_no; }
  std::string PayMethodID() const override { return pay_method_id; }
  void SetCustomerNo(int32_t no) override { customer_no = no; }
};

//! The manual card-entry control. EnterCard plays the clerk completing a card.
class ScriptedCardEntry : public host::CardEntryControl, public ServiceRecorder {
 public:
  void Initialize(std::shared_ptr<host::AppServer> app_server, std::shared_ptr<host::DBConnection> db) override;
  void SetCustomerNo(int32_t customer_no) override;
  void SetCustomerName(const std::string& full_name) override;
  void BeginEntry() override;
  void SetCardEnteredHandler(std::function<void(std::shared_ptr<host::CardObject>)> handler) override;
  //! Hands the card to the handler; fails the test when no handler was set.
  void EnterCard(std::shared_ptr<host::CardObject> card);

 private:
  std::function<void(std::shared_ptr<host::CardObject>)> handler_;
};

}  // namespace kiv::test
