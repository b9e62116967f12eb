// The photographer's capture settings (camera, crop size, file names, window position),
// kept per user in the host's settings store under "AppData" and the photographer's
// sections. The detail editor's photo capture reads and writes them.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "core/variant.h"
#include "host/settings_store.h"

namespace kiv {

class CICProperties {
 public:
  //! Settings start at their defaults; `store` may be set later with SetSettingsStore.
  explicit CICProperties(std::shared_ptr<host::SettingsStore> store = nullptr) : store_(std::move(store)) {}

  void SetSettingsStore(std::shared_ptr<host::SettingsStore> store) { store_ = std::move(store); }
  const std::shared_ptr<host::SettingsStore>& SettingsStore() const { return store_; }

  //! Reads every setting, each with its default; a stored text that does not convert keeps
  //! the default. "ImageDestination" always ends as 1. Without a store nothing changes.
  void LoadSettings();
  //! Writes every setting back as text, in the order LoadSettings reads them. Without a
  //! store nothing is written; a store that fails stops the writing quietly.
  void SaveSettings();

  int16_t CropWidth() const { return crop_width_; }
  void SetCropWidth(int16_t v) { crop_width_ = v; }
  int16_t CropHeight() const { return crop_height_; }
  void SetCropHeight(int16_t v) { crop_height_ = v; }
  bool ShowControls() const { return show_controls_; }
  void SetShowControls(bool v) { show_controls_ = v; }
  bool SaveOnlyVisible() const { return save_only_visible_; }
  void SetSaveOnlyVisible(bool v) { save_only_visible_ = v; }
  bool EnableRightClickSave() const { return enable_right_click_save_; }
  void SetEnableRightClickSave(bool v) { enable_right_click_save_ = v; }
  int16_t ImageSaveType() const { return image_save_type_; }
  void SetImageSaveType(int16_t v) { image_save_type_ = v; }
  int16_t ImageDestination() const { return image_destination_; }
  void SetImageDestination(int16_t v) { image_destination_ = v; }
  const std::string& SaveFilePathDefault() const { return save_file_path_default_; }
  void SetSaveFilePathDefault(const std::string& v) { save_file_path_default_ = v; }
  const std::string& OpenFilename() const { return open_filename_; }
  void SetOpenFilename(const std::string& v) { open_filename_ = v; }
  const std::string& SaveFileName() const { return save_file_name_; }
  void SetSaveFileName(const std::string& v) { save_file_name_ = v; }
  int16_t JPGCompressionQuality() const { return jpg_compression_quality_; }
  void SetJPGCompressionQuality(int16_t v) { jpg_compression_quality_ = v; }
  int16_t CameraSource() const { return camera_source_; }
  void SetCameraSource(int16_t v) { camera_source_ = v; }
  const std::string& Source() const { return source_; }
  void SetSource(const std::string& v) { source_ = v; }
  bool BufferedCapture() const { return buffered_capture_; }
  void SetBufferedCapture(bool v) { buffered_capture_ = v; }
  bool ShowInterface() const { return show_interface_; }
  void SetShowInterface(bool v) { show_interface_ = v; }
  bool ShowStatus() const { return show_status_; }
  void SetShowStatus(bool v) { show_status_ = v; }
  double FormTop() const { return form_top_; }
  void SetFormTop(double v) { form_top_ = FiniteNumber(v); }
  double FormLeft() const { return form_left_; }
  void SetFormLeft(double v) { form_left_ = FiniteNumber(v); }

 private:
  std::shared_ptr<host::SettingsStore> store_;

  int16_t crop_width_ = 151;
  int16_t crop_height_ = 200;
  bool show_controls_ = false;
  bool save_only_visible_ = false;
  bool enable_right_click_save_ = false;
  int16_t image_save_type_ = 2;
  int16_t image_destination_ = 1;
  std::string save_file_path_default_ = "C:\\Program Files\\kiv";
  std::string open_filename_;
  std::string save_file_name_;
  int16_t jpg_compression_quality_ = 2;
  int16_t camera_source_ = 0;
  std::string source_;
  bool buffered_capture_ = false;
  bool show_interface_ = false;
  bool show_status_ = false;
  double form_top_ = 0;
  double form_left_ = 0;
};

}  // namespace kiv
