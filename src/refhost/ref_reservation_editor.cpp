// The reservation editor form of the reference host.
#include "refhost/ref_reservation_editor.h"

#include "ui/ui.h"

namespace kiv::refhost {

RefReservationEditor::RefReservationEditor()
    : ui::Form("frmRefReservation"),
      lblReservation(Add<ui::Label>("lblReservation")),
      cmbStatus(Add<ui::ComboBox>("cmbStatus", ui::vbComboDropdownList)),
      dtResStart(Add<ui::DatePicker>("dtResStart")),
      txtResource(Add<ui::TextBox>("txtResource")),
      txtComment(Add<ui::TextBox>("txtComment")),
      cmdOK(Add<ui::CommandButton>("cmdOK", "OK")),
      cmdCancel(Add<ui::CommandButton>("cmdCancel", "Cancel")) {
  SetCaption("Reservation");
  cmbStatus.AddItem("Booked", "BOOKED");
  cmbStatus.AddItem("UnBooked", "OPEN");
  cmbStatus.AddItem("Cancelled", "CANCELLED");
  txtResource.SetMaxLength(60);
  cmdOK.SetDefault(true);
  cmdCancel.SetCancel(true);
  cmdOK.on_click = [this] {
    if (cmbStatus.ListIndex() < 0 || !dtResStart.HasValue()) {
      ui().MsgBox("Choose a status and a start date.", ui::vbInformation, "Reservation");
      return;
    }
    accepted_ = true;
    Hide();
  };
  cmdCancel.on_click = [this] { Hide(); };
}

void RefReservationEditor::Fill(const ReservationChange& values, const std::string& title) {
  accepted_ = false;
  lblReservation.SetCaption(title);
  cmbStatus.SetListIndex(cmbStatus.FindKey(values.status_id));
  if (values.res_start.IsNull() || values.res_start.IsEmpty()) dtResStart.SetValue(std::nullopt, false);
  else dtResStart.SetValue(NzDate(values.res_start), false);
  txtResource.SetText(values.resource_description);
  txtComment.SetText(values.comment_note);
}

ReservationChange RefReservationEditor::Values() const {
  ReservationChange v;
  v.status_id = cmbStatus.SelectedKey();
  if (dtResStart.HasValue()) v.res_start = Variant(*dtResStart.Value());
  v.resource_description = txtResource.Text();
  v.comment_note = txtComment.Text();
  return v;
}

}  // namespace kiv::refhost
