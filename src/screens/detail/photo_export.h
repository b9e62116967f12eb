// Tools / Export Photograph of the detail editor: the customer's current photograph written
// as an image file into a folder the clerk picks with the folder chooser.
#pragma once
#include <cstdint>
#include <string>

#include "records/photo.h"

namespace kiv {

class frmCustomerDetail;

//! "customer_<number>.<ext>", the extension from the picture's format (jpg, png, gif, bmp).
std::string PhotoExportFileName(int32_t customer_no, PhotoFormat format);

//! The export command: a saved customer with a photograph, a folder chosen, the file
//! written (asking before it replaces one); every outcome ends with a message.
void ExportPhotograph(frmCustomerDetail& screen);

}  // namespace kiv
