// The photographer's settings: every key in its section with its default, the stored
// destination that never takes effect, and the text conversions both ways.
#include "records/c_ic_properties.h"

#include <gtest/gtest.h>

#include "support/scripted_services.h"

namespace kiv {
namespace {

constexpr const char* kApp = "AppData";
constexpr const char* kPh = "Customer\\Photographer";
constexpr const char* kTw = "Customer\\Photographer\\TWAIN";

// The settings in the order they are read and written, with the default text each read passes.
const std::vector<std::tuple<const char*, const char*, const char*>> kKeys = {
    {kPh, "CropWidth", "151"},     {kPh, "CropHeight", "200"},       {kPh, "ShowControls", "False"},
    {kPh, "SaveOnlyVisible", "False"}, {kPh, "EnableRightClickSave", "False"}, {kPh, "ImageSaveType", "2"},
    {kPh, "ImageDestination", "1"}, {kPh, "SaveFilePathDefault", "C:\\Program Files\\kiv"},
    {kPh, "OpenFilename", ""},     {kPh, "SaveFileName", ""},        {kPh, "JPGCompressionQuality", "2"},
    {kPh, "CameraSource", "0"},    {kTw, "Source", ""},              {kTw, "BufferedCapture", "False"},
    {kTw, "ShowInterface", "False"}, {kTw, "ShowStatus", "False"},   {kPh, "FormTop", "0"},
    {kPh, "FormLeft", "0"},
};

TEST(CICProperties, LoadAndSaveGoThroughEveryKeyInOrderWithItsSectionAndDefault) {
  auto store = std::make_shared<test::ScriptedSettingsStore>();
  CICProperties props(store);
  props.SetCropWidth(9);
  props.LoadSettings();
  EXPECT_EQ(props.CropWidth(), 151) << "nothing stored: the default replaces the value held";
  props.SaveSettings();

  ASSERT_EQ(store->Gets().size(), kKeys.size());
  ASSERT_EQ(store->Saves().size(), kKeys.size());
  for (size_t i = 0; i < kKeys.size(); ++i) {
    const auto& [section, key, default_text] = kKeys[i];
    SCOPED_TRACE(key);
    for (const test::SettingCall& call : {store->Gets()[i], store->Saves()[i]}) {
      EXPECT_EQ(call.app, kApp);
      EXPECT_EQ(call.section, section);
      EXPECT_EQ(call.key, key);
      EXPECT_EQ(call.value, default_text);  // saved defaults read back as the defaults
    }
  }
}

TEST(CICProperties, LoadConvertsStoredTextsAndAlwaysSetsTheDestinationToOne) {
  auto store = std::make_shared<test::ScriptedSettingsStore>();
  const std::vector<std::tuple<const char*, const char*, const char*>> stored = {
      {kPh, "CropWidth", "320"},       {kPh, "ShowControls", "True"},    {kPh, "ImageDestination", "2"},
      {kPh, "SaveFileName", "face.jpg"}, {kPh, "CameraSource", "webcam"}, {kPh, "CropHeight", "70000"},
      {kTw, "ShowStatus", "-1"},       {kPh, "FormTop", "1250.5twips"}, {kPh, "FormLeft", ""}};
  for (const auto& [section, key, text] : stored) store->Seed(kApp, section, key, text);

  CICProperties props(store);
  props.SetCameraSource(4);
  props.LoadSettings();
  EXPECT_EQ(props.CropWidth(), 320);
  EXPECT_TRUE(props.ShowControls());
  EXPECT_EQ(props.ImageDestination(), 1);
  EXPECT_EQ(props.SaveFileName(), "face.jpg");
  EXPECT_EQ(props.CameraSource(), 0) << "unreadable text keeps the default";
  EXPECT_EQ(props.CropHeight(), 200) << "a value beyond 16 bits keeps the default";
  EXPECT_TRUE(props.ShowStatus());
  EXPECT_DOUBLE_EQ(props.FormTop(), 1250.5);
  EXPECT_DOUBLE_EQ(props.FormLeft(), 0.0);

  props.SaveSettings();
  EXPECT_EQ(store->Stored(kApp, kTw, "ShowStatus"), "True");
  EXPECT_EQ(store->Stored(kApp, kPh, "FormTop"), "1250.5");
}

}  // namespace
}  // namespace kiv
