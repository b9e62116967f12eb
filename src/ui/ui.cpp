#include "ui/ui.h"

namespace kiv::ui {

MsgBoxResult FirstButton(int32_t style) {
  switch (style & 0xF) {
    case vbOKOnly:
    case vbOKCancel:
      return vbOK;
    case vbAbortRetryIgnore:
      return vbAbort;
    case vbYesNoCancel:
    case vbYesNo:
      return vbYes;
    case vbRetryCancel:
      return vbRetry;
    default:
      return vbOK;
  }
}

}  // namespace kiv::ui
