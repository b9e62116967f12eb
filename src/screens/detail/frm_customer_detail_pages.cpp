// The detail editor's page frame: tabCustomer switches pages by index, the page buttons
// and the two shared grids are handed to the active page, each page's list is read once
// per filling, Refresh reloads the active page, and dirty pages save in the fixed order.
#include "screens/detail/frm_customer_detail.h"

#include <cassert>
#include <iterator>

namespace kiv {

void frmCustomerDetail::RegisterPage(std::unique_ptr<DetailPage> page) {
  if (!page) return;
  pages_.push_back(std::move(page));
  page_loaded_.push_back(false);
}

bool frmCustomerDetail::PageLoaded(const DetailPage& page) const {
  for (size_t i = 0; i < pages_.size(); ++i)
    if (pages_[i].get() == &page) return page_loaded_[i];
  return false;
}

void frmCustomerDetail::ResetPages() {
  for (size_t i = 0; i < pages_.size(); ++i) {
    page_loaded_[i] = false;
    pages_[i]->Reset();
  }
}

void frmCustomerDetail::OnCustomerTabClick() {
  const int index = tabCustomer.SelectedIndex();
  if (hide_forecasts_ && index == kTabForecasts) {
    // A clerk without the forecast right stays where he was.
    tabCustomer.SetSelectedIndex(active_tab_ > 0 && active_tab_ != kTabForecasts ? active_tab_ : kTabGeneral);
    return;
  }
  ShowPage(index);
}

void frmCustomerDetail::ShowPage(int tab_index) {
  for (auto& page : pages_)
    if (page->TabIndex() == active_tab_ && active_tab_ != tab_index) page->Deactivate(*this);
  active_tab_ = tab_index;
  picGeneral.SetVisible(tab_index == kTabGeneral);
  for (ui::CommandButton* b : {&cmdButton1, &cmdButton2, &cmdButton3, &cmdEmployeerLookup, &cmdEmployerClear}) {
    b->SetCaption("");
    b->SetVisible(false);
    b->SetEnabled(true);
  }
  // The grids belong to whichever page is shown: nothing of the last page's layout or
  // handlers may carry over.
  for (ui::Grid* g : {&grdMaster, &grdDetail}) {
    g->Reset();
    g->SetVisible(false);
    g->on_before_edit = nullptr;
    g->on_validate_edit = nullptr;
    g->on_after_edit = nullptr;
    g->on_row_col_change = nullptr;
    g->on_sel_change = nullptr;
    g->on_before_collapse = nullptr;
    g->on_after_collapse = nullptr;
    g->on_click = nullptr;
    g->on_dbl_click = nullptr;
    g->on_key_down = nullptr;
    g->on_key_press = nullptr;
  }
  for (size_t i = 0; i < pages_.size(); ++i) {
    if (pages_[i]->TabIndex() != tab_index) continue;
    pages_[i]->Activate(*this);
    if (page_loaded_[i]) continue;
    page_loaded_[i] = true;
    pages_[i]->Load(*this);
  }
}

void frmCustomerDetail::ShowPageButtons(std::initializer_list<const char*> captions, bool enabled) {
  ui::CommandButton* const buttons[] = {&cmdButton1, &cmdButton2, &cmdButton3};
  assert(captions.size() <= std::size(buttons) && "a page has three buttons at most");
  size_t i = 0;
  for (const char* caption : captions) {
    buttons[i]->SetCaption(caption);
    buttons[i]->SetVisible(true);
    buttons[i]->SetEnabled(enabled);
    ++i;
  }
}

void frmCustomerDetail::PageButtonClicked(int which) {
  for (auto& page : pages_)
    if (page->TabIndex() == active_tab_) page->ButtonClicked(*this, which);
}

void frmCustomerDetail::RefreshPage() {
  std::vector<size_t> on_tab;
  for (size_t i = 0; i < pages_.size(); ++i)
    if (pages_[i]->TabIndex() == active_tab_) on_tab.push_back(i);
  for (size_t i : on_tab) {
    if (!pages_[i]->Dirty()) continue;
    const RefreshConfirmation question = pages_[i]->RefreshQuestion();
    if (question.prompt.empty()) continue;
    if (ui().MsgBox(question.prompt, ui::vbYesNo | ui::vbQuestion | ui::vbDefaultButton2, question.title) != ui::vbYes)
      return;
    break;
  }
  for (size_t i : on_tab) {
    if (!pages_[i]->ReloadsOnRefresh()) continue;
    page_loaded_[i] = false;
    pages_[i]->Load(*this);
    page_loaded_[i] = true;
  }
}

bool frmCustomerDetail::SavePages(bool stop_after_failed_relationships) {
  static constexpr DetailSaveSlot kOrder[] = {DetailSaveSlot::kForecasts,      DetailSaveSlot::kRelationships,
                                              DetailSaveSlot::kCustomFields,   DetailSaveSlot::kRentalSettings,
                                              DetailSaveSlot::kEmployer,       DetailSaveSlot::kGroupMemberships};
  for (DetailSaveSlot slot : kOrder) {
    if (slot == DetailSaveSlot::kRentalSettings && rental_changed_) SaveRentalSettings();
    for (auto& page : pages_) {
      if (page->SaveSlot() != slot || !page->Dirty()) continue;
      const bool saved = page->Save(*this);
      if (!saved && slot == DetailSaveSlot::kRelationships && stop_after_failed_relationships) return false;
    }
  }
  return true;
}

}  // namespace kiv
