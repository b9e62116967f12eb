// Reads and writes the photographer's settings, key by key in one fixed order. The
// settings store only knows text, so every value is converted on the way in and out.
#include "records/c_ic_properties.h"

#include "core/variant.h"

namespace kiv {

namespace {

constexpr const char* kApp = "AppData";
constexpr const char* kPhotographer = "Customer\\Photographer";
constexpr const char* kTwain = "Customer\\Photographer\\TWAIN";

std::string BoolText(bool v) { return v ? "True" : "False"; }

class Reader {
 public:
  explicit Reader(host::SettingsStore& store) : store_(store) {}

  int16_t Int(const char* section, const char* key, int16_t def) {
    const std::string text = store_.GetSetting(kApp, section, key, std::to_string(def));
    try {
      return Variant(text).ToInt();
    } catch (const VbError&) {
      return def;
    }
  }
  bool Bool(const char* section, const char* key, bool def) {
    const std::string text = store_.GetSetting(kApp, section, key, BoolText(def));
    try {
      return Variant(text).ToBool();
    } catch (const VbError&) {
      return def;
    }
  }
  std::string Text(const char* section, const char* key, const std::string& def) {
    return store_.GetSetting(kApp, section, key, def);
  }
  //! The window position is kept as text; its leading number counts, as the form stored it.
  double Number(const char* section, const char* key, double def) {
    return Val(store_.GetSetting(kApp, section, key, NumberToText(def)));
  }

 private:
  host::SettingsStore& store_;
};

}  // namespace

void CICProperties::LoadSettings() {
  if (store_ == nullptr) return;
  const CICProperties defaults;
  Reader in(*store_);
  try {
    crop_width_ = in.Int(kPhotographer, "CropWidth", defaults.crop_width_);
    crop_height_ = in.Int(kPhotographer, "CropHeight", defaults.crop_height_);
    show_controls_ = in.Bool(kPhotographer, "ShowControls", defaults.show_controls_);
    save_only_visible_ = in.Bool(kPhotographer, "SaveOnlyVisible", defaults.save_only_visible_);
    enable_right_click_save_ = in.Bool(kPhotographer, "EnableRightClickSave", defaults.enable_right_click_save_);
    image_save_type_ = in.Int(kPhotographer, "ImageSaveType", defaults.image_save_type_);
    image_destination_ = in.Int(kPhotographer, "ImageDestination", defaults.image_destination_);
    save_file_path_default_ = in.Text(kPhotographer, "SaveFilePathDefault", defaults.save_file_path_default_);
    // The capture station only ever saves to the database: whatever was stored for the
    // destination, it is read for form's sake and then forced back.
    image_destination_ = 1;
    open_filename_ = in.Text(kPhotographer, "OpenFilename", defaults.open_filename_);
    save_file_name_ = in.Text(kPhotographer, "SaveFileName", defaults.save_file_name_);
    jpg_compression_quality_ = in.Int(kPhotographer, "JPGCompressionQuality", defaults.jpg_compression_quality_);
    camera_source_ = in.Int(kPhotographer, "CameraSource", defaults.camera_source_);
    source_ = in.Text(kTwain, "Source", defaults.source_);
    buffered_capture_ = in.Bool(kTwain, "BufferedCapture", defaults.buffered_capture_);
    show_interface_ = in.Bool(kTwain, "ShowInterface", defaults.show_interface_);
    show_status_ = in.Bool(kTwain, "ShowStatus", defaults.show_status_);
    form_top_ = in.Number(kPhotographer, "FormTop", defaults.form_top_);
    form_left_ = in.Number(kPhotographer, "FormLeft", defaults.form_left_);
  } catch (...) {
    // A store that fails leaves the remaining settings as they were.
  }
}

void CICProperties::SaveSettings() {
  if (store_ == nullptr) return;
  host::SettingsStore& out = *store_;
  try {
    out.SaveSetting(kApp, kPhotographer, "CropWidth", std::to_string(crop_width_));
    out.SaveSetting(kApp, kPhotographer, "CropHeight", std::to_string(crop_height_));
    out.SaveSetting(kApp, kPhotographer, "ShowControls", BoolText(show_controls_));
    out.SaveSetting(kApp, kPhotographer, "SaveOnlyVisible", BoolText(save_only_visible_));
    out.SaveSetting(kApp, kPhotographer, "EnableRightClickSave", BoolText(enable_right_click_save_));
    out.SaveSetting(kApp, kPhotographer, "ImageSaveType", std::to_string(image_save_type_));
    out.SaveSetting(kApp, kPhotographer, "ImageDestination", std::to_string(image_destination_));
    out.SaveSetting(kApp, kPhotographer, "SaveFilePathDefault", save_file_path_default_);
    out.SaveSetting(kApp, kPhotographer, "OpenFilename", open_filename_);
    out.SaveSetting(kApp, kPhotographer, "SaveFileName", save_file_name_);
    out.SaveSetting(kApp, kPhotographer, "JPGCompressionQuality", std::to_string(jpg_compression_quality_));
    out.SaveSetting(kApp, kPhotographer, "CameraSource", std::to_string(camera_source_));
    out.SaveSetting(kApp, kTwain, "Source", source_);
    out.SaveSetting(kApp, kTwain, "BufferedCapture", BoolText(buffered_capture_));
    out.SaveSetting(kApp, kTwain, "ShowInterface", BoolText(show_interface_));
    out.SaveSetting(kApp, kTwain, "ShowStatus", BoolText(show_status_));
    out.SaveSetting(kApp, kPhotographer, "FormTop", NumberToText(form_top_));
    out.SaveSetting(kApp, kPhotographer, "FormLeft", NumberToText(form_left_));
  } catch (...) {
    // Settings are a convenience: a store that fails must not stop the capture screen.
  }
}

}  // namespace kiv
