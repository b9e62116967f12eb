// The custom-field part of the profile page: every site column of the customer profile
// table as one row of grdMaster, typed from the column's database type, edited in the Value
// column by a clerk with the profile right, and written back as one row update.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/variant.h"
#include "host/field.h"
#include "screens/detail/detail_page.h"

namespace kiv {

class CustomFieldsPage : public DetailPage {
 public:
  enum Column : int { kColFieldName = 0, kColFieldDesc, kColDataType, kColValue };
  static constexpr const char* kFormatString = "FieldName|Field Desc|Data Type|Value";
  static constexpr const char* kProcedure = "KIV_SP_CUSTOMER_GetProfiles";
  static constexpr const char* kSaveSql = "Select * FROM kiv_customer_profile";
  static constexpr const char* kTrueFalseList = "True|False";
  static constexpr const char* kInvalidTitle = "Invalid Profile Value";

  //! One site column as read, with the text the clerk gave it.
  struct CustomField {
    std::string name;
    std::string description;
    std::string type_name;
    int32_t type = 0;
    int32_t defined_size = 0;
    int32_t precision = 0;
    int32_t scale = 0;
    //! The value as read (or as last saved).
    Variant value;
    //! The value column's text: the formatted value, or what the clerk typed.
    std::string text;
    bool edited = false;
  };

  int TabIndex() const override;
  DetailSaveSlot SaveSlot() const override { return DetailSaveSlot::kCustomFields; }
  void Activate(frmCustomerDetail& screen) override;
  void Load(frmCustomerDetail& screen) override;
  bool Save(frmCustomerDetail& screen) override;
  bool Dirty() const override { return dirty_; }
  void Reset() override;
  RefreshConfirmation RefreshQuestion() const override;

  //! CUSTOMER_NO, CREATED_BY, CREATE_DATE, MODIFIED_BY, MODIFIED_DATE, in any case.
  static bool IsSystemColumn(const std::string& name);
  //! "SKI_LEVEL_CODE" -> "Ski Level Code": blanks for "_", each word's first letter upper
  //! case and the rest lower case.
  static std::string Description(const std::string& name);
  //! The Data Type a column shows, from its type code, precision, scale and, for an integer,
  //! the size of the value read ("True/False" for a one-byte integer).
  static std::string DataTypeName(int32_t type, int32_t precision, int32_t scale, int32_t actual_size);
  static std::string DataTypeName(host::Field& field);
  //! The value as the Value column shows it for that Data Type; Null shows empty.
  static std::string ValueText(const std::string& type_name, const Variant& value);
  //! Empty when `text` fits the field; otherwise the message that names the field and the
  //! type it expects. An empty text always fits (it stores Null); a text for a character
  //! column always fits (it is cut on saving).
  static std::string Refusal(const CustomField& field, const std::string& text);
  //! The value the save writes for the field's text: Null for an empty text, true or false
  //! for a True/False field (1 or 0 on an integer column), the text cut to the defined size
  //! for a character column, the number or date for the others. Call only after Refusal
  //! found nothing.
  static Variant StoredValue(const CustomField& field, const std::string& text);

  const std::vector<CustomField>& Fields() const { return fields_; }

 private:
  bool Showing(const frmCustomerDetail& screen) const;
  void Render(frmCustomerDetail& screen) const;
  int FieldAt(const frmCustomerDetail& screen, int grid_row) const;
  bool WriteRow(frmCustomerDetail& screen);

  std::vector<CustomField> fields_;
  bool dirty_ = false;
};

}  // namespace kiv
