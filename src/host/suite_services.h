// The suite's own services that the activity pages and the card-entry frame call: the
// reservation editor, invoicing, the register, will-call printing, reports and manual
// card entry. The application server hands each out, or none when the suite lacks it.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/variant.h"

namespace kiv::host {

class AppServer;
class DBConnection;

//! The host's reservation screens. Every operation answers true when something changed.
class ReservationService {
 public:
  virtual ~ReservationService() = default;
  //! Opens the reservation editor on the customer's reservations.
  virtual bool EditReservations(int32_t customer_no, int32_t household_no) = 0;
  //! Opens the reservation editor on one reservation header of the customer.
  virtual bool EditReservationByNo(int32_t customer_no, int32_t res_header_no, int32_t res_no) = 0;
  //! Edits a rental reservation; `read_only` is the optional fourth argument (Empty when left out).
  virtual bool EditRentalReservation(int32_t customer_no, int32_t res_header_no, int32_t res_no,
                                     const Variant& read_only) = 0;
  virtual bool CancelRentalReservation(int32_t res_no) = 0;
  //! Unbooks one reservation of the customer.
  virtual bool UnBookReservationByNo(int32_t customer_no, int32_t res_no) = 0;
};

//! The host's invoicing of sales-order lines: Setup hands over what was selected,
//! InvoiceAndPay runs the invoicing and payment screens.
class InvoicingService {
 public:
  virtual ~InvoicingService() = default;
  //! The sales order and its selected line numbers, in selection order.
  virtual void Setup(int32_t salesorder_no, const std::vector<int32_t>& so_line_nos) = 0;
  //! True when the lines were invoiced.
  virtual bool InvoiceAndPay(int32_t customer_no, int32_t salesorder_no) = 0;
};

//! The register of the workstation, needed to print will calls.
class RegisterService {
 public:
  virtual ~RegisterService() = default;
  virtual bool Installed() = 0;
  virtual bool CashedIn() = 0;
  virtual int32_t CurrentControlNo() = 0;
  virtual std::string RegisterId() = 0;
};

//! The will-call print screen; a screen creates one when it has none yet and keeps it.
class WillCallService {
 public:
  virtual ~WillCallService() = default;
  //! The application server the will-call screen works with (its "AppServer" property).
  virtual void SetAppServer(std::shared_ptr<AppServer> app_server) = 0;
  //! Shows the will-call screen for the customer at the register; true when it printed.
  virtual bool ShowWillCallScreen(int32_t customer_no, const std::string& register_id, int32_t control_no,
                                  int32_t will_call_no, int32_t access_no) = 0;
};

//! A report found in the suite's Report Maintenance under a key ("CUST_FORECAST", "CUST_RENT").
struct ClientReport {
  std::string report_key;
  std::string report_name;
  std::string file_name;
};

//! The parameters a report is printed with.
struct ReportParameters {
  //! The parameter string, placeholders ("{{forecast_no}}") already replaced by values.
  std::string parameters;
  //! The record selection ("{kiv_customer_forecast.forecast_no} = 12"); set by the caller.
  std::string record_selection;
};

//! The suite's report printing.
class ReportService {
 public:
  virtual ~ReportService() = default;
  //! Looks the report up by key; false when Report Maintenance does not define it.
  virtual bool GetClientMapReport(const std::string& report_key, ClientReport& report) = 0;
  //! Parameters built from a parameter string whose placeholders the caller has filled.
  virtual ReportParameters CreateReportParamFromString(const std::string& parameter_text) = 0;
  //! Prints the report; false when it could not be printed.
  virtual bool PrintReport(const ClientReport& report, const ReportParameters& parameters) = 0;
};

//! The card just swiped or typed (`KivCC`): what a card on file is stored from.
class CardObject {
 public:
  virtual ~CardObject() = default;
  virtual std::string Track1() const = 0;
  virtual std::string Track2() const = 0;
  virtual std::string CardNo() const = 0;
  virtual std::string ExpDate() const = 0;
  virtual std::string Zip() const = 0;
  virtual std::string Address() const = 0;
  //! The masked card number.
  virtual std::string XCardNo() const = 0;
  virtual std::string PayMethodID() const = 0;
  //! Given the customer's number once the card is stored on file.
  virtual void SetCustomerNo(int32_t customer_no) = 0;
};

//! The manual card-entry control (`KivCC.CCManual`): initialise, set the two customer
//! properties, then begin entry; it reports each card entered through the handler.
class CardEntryControl {
 public:
  virtual ~CardEntryControl() = default;
  virtual void Initialize(std::shared_ptr<AppServer> app_server, std::shared_ptr<DBConnection> db) = 0;
  virtual void SetCustomerNo(int32_t customer_no) = 0;
  virtual void SetCustomerName(const std::string& full_name) = 0;
  virtual void BeginEntry() = 0;
  //! Called with each card the clerk completes.
  virtual void SetCardEnteredHandler(std::function<void(std::shared_ptr<CardObject>)> handler) = 0;
};

}  // namespace kiv::host
