#include "ui/ui.h"

namespace kiv::ui {

MsgBoxResult FirstButton(int32_t style) { return BoxButtons(style).front(); }

std::vector<MsgBoxResult> BoxButtons(int32_t style) {
  switch (style & 0xF) {
    case vbOKCancel: return {vbOK, vbCancel};
    case vbAbortRetryIgnore: return {vbAbort, vbRetry, vbIgnore};
    case vbYesNoCancel: return {vbYes, vbNo, vbCancel};
    case vbYesNo: return {vbYes, vbNo};
    case vbRetryCancel: return {vbRetry, vbCancel};
    default: return {vbOK};
  }
}

std::string BoxIconName(int32_t style) {
  switch (style & 0x70) {
    case vbCritical: return "critical";
    case vbQuestion: return "question";
    case vbExclamation: return "exclamation";
    case vbInformation: return "information";
    default: return "";
  }
}

}  // namespace kiv::ui
