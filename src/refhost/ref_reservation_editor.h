// The reference host's own reservation editor: a small modal form showing one reservation's
// status, start date, resource and comment. OK keeps what the clerk entered; Cancel or the
// close box keeps nothing.
#pragma once
#include <string>

#include "refhost/reservation_store.h"
#include "ui/combo_box.h"
#include "ui/command_button.h"
#include "ui/date_picker.h"
#include "ui/form.h"
#include "ui/label.h"
#include "ui/text_box.h"

namespace kiv::refhost {

class RefReservationEditor : public ui::Form {
 public:
  RefReservationEditor();

  //! Shows the values; `title` names the reservation (or a new one).
  void Fill(const ReservationChange& values, const std::string& title);
  //! What is on screen now.
  ReservationChange Values() const;
  //! True once OK was clicked with a date and a status chosen.
  bool Accepted() const { return accepted_; }

  ui::Label& lblReservation;
  ui::ComboBox& cmbStatus;
  ui::DatePicker& dtResStart;
  ui::TextBox& txtResource;
  ui::TextBox& txtComment;
  ui::CommandButton& cmdOK;
  ui::CommandButton& cmdCancel;

 private:
  bool accepted_ = false;
};

}  // namespace kiv::refhost
