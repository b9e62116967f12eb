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

struct Key {
  const char* section;
  const char* key;
  const char* default_text;
};

// The settings in the order they are read and written, with the default text each read passes.
const std::vector<Key> kKeys = {
    {kPh, "CropWidth", "151"},
    {kPh, "CropHeight", "200"},
    {kPh, "ShowControls", "False"},
    {kPh, "SaveOnlyVisible", "False"},
    {kPh, "EnableRightClickSave", "False"},
    {kPh, "ImageSaveType", "2"},
    {kPh, "ImageDestination", "1"},
    {kPh, "SaveFilePathDefault", "C:\\Program Files\\kiv"},
    {kPh, "OpenFilename", ""},
    {kPh, "SaveFileName", ""},
    {kPh, "JPGCompressionQuality", "2"},
    {kPh, "CameraSource", "0"},
    {kTw, "Source", ""},
    {kTw, "BufferedCapture", "False"},
    {kTw, "ShowInterface", "False"},
    {kTw, "ShowStatus", "False"},
    {kPh, "FormTop", "0"},
    {kPh, "FormLeft", "0"},
};

TEST(CICProperties, LoadAsksEveryKeyInOrderWithItsSectionAndDefault) {
  auto store = std::make_shared<test::ScriptedSettingsStore>();
  CICProperties props(store);
  props.SetCropWidth(9);
  props.SetSource("old");
  props.LoadSettings();

  ASSERT_EQ(store->Gets().size(), kKeys.size());
  for (size_t i = 0; i < kKeys.size(); ++i) {
    SCOPED_TRACE(kKeys[i].key);
    EXPECT_EQ(store->Gets()[i].app, kApp);
    EXPECT_EQ(store->Gets()[i].section, kKeys[i].section);
    EXPECT_EQ(store->Gets()[i].key, kKeys[i].key);
    EXPECT_EQ(store->Gets()[i].value, kKeys[i].default_text);
  }
  // Nothing stored: the defaults replace whatever the object held.
  EXPECT_EQ(props.CropWidth(), 151);
  EXPECT_EQ(props.CropHeight(), 200);
  EXPECT_EQ(props.ImageSaveType(), 2);
  EXPECT_EQ(props.JPGCompressionQuality(), 2);
  EXPECT_EQ(props.SaveFilePathDefault(), "C:\\Program Files\\kiv");
  EXPECT_EQ(props.Source(), "");
  EXPECT_FALSE(props.ShowControls());
  EXPECT_TRUE(store->Saves().empty());
}

TEST(CICProperties, LoadConvertsStoredTextsAndAlwaysSetsTheDestinationToOne) {
  auto store = std::make_shared<test::ScriptedSettingsStore>();
  store->Seed(kApp, kPh, "CropWidth", "320");
  store->Seed(kApp, kPh, "ShowControls", "True");
  store->Seed(kApp, kPh, "ImageDestination", "2");
  store->Seed(kApp, kPh, "SaveFileName", "face.jpg");
  store->Seed(kApp, kPh, "CameraSource", "not a number");
  store->Seed(kApp, kTw, "Source", "Logitech");
  store->Seed(kApp, kTw, "ShowStatus", "-1");
  store->Seed(kApp, kPh, "FormTop", "1250.5twips");
  store->Seed(kApp, kPh, "FormLeft", "");
  store->Seed(kApp, kPh, "CropHeight", "70000");  // does not fit 16 bits

  CICProperties props(store);
  props.SetCameraSource(4);
  props.LoadSettings();
  EXPECT_EQ(props.CropWidth(), 320);
  EXPECT_TRUE(props.ShowControls());
  EXPECT_EQ(props.ImageDestination(), 1);
  EXPECT_EQ(props.SaveFileName(), "face.jpg");
  EXPECT_EQ(props.CameraSource(), 0) << "unreadable text keeps the default";
  EXPECT_EQ(props.CropHeight(), 200) << "an overflowing value keeps the default";
  EXPECT_EQ(props.Source(), "Logitech");
  EXPECT_TRUE(props.ShowStatus());
  EXPECT_DOUBLE_EQ(props.FormTop(), 1250.5);
  EXPECT_DOUBLE_EQ(props.FormLeft(), 0.0);
}

TEST(CICProperties, SaveWritesEveryKeyAsTextAndLoadReadsItBack) {
  auto store = std::make_shared<test::ScriptedSettingsStore>();
  CICProperties props(store);
  props.SetCropWidth(180);
  props.SetShowInterface(true);
  props.SetImageDestination(3);
  props.SetOpenFilename("C:\\in\\a.bmp");
  props.SetFormLeft(-12.25);
  props.SaveSettings();

  ASSERT_EQ(store->Saves().size(), kKeys.size());
  for (size_t i = 0; i < kKeys.size(); ++i) {
    SCOPED_TRACE(kKeys[i].key);
    EXPECT_EQ(store->Saves()[i].app, kApp);
    EXPECT_EQ(store->Saves()[i].section, kKeys[i].section);
    EXPECT_EQ(store->Saves()[i].key, kKeys[i].key);
  }
  EXPECT_EQ(store->Stored(kApp, kPh, "CropWidth"), "180");
  EXPECT_EQ(store->Stored(kApp, kTw, "ShowInterface"), "True");
  EXPECT_EQ(store->Stored(kApp, kTw, "BufferedCapture"), "False");
  EXPECT_EQ(store->Stored(kApp, kPh, "ImageDestination"), "3");
  EXPECT_EQ(store->Stored(kApp, kPh, "FormLeft"), "-12.25");

  CICProperties again(store);
  again.LoadSettings();
  EXPECT_EQ(again.CropWidth(), 180);
  EXPECT_TRUE(again.ShowInterface());
  EXPECT_EQ(again.OpenFilename(), "C:\\in\\a.bmp");
  EXPECT_DOUBLE_EQ(again.FormLeft(), -12.25);
  EXPECT_EQ(again.ImageDestination(), 1);

  CICProperties unstored;  // no store: both operations do nothing and do not fail
  unstored.SetCropWidth(5);
  unstored.SaveSettings();
  unstored.LoadSettings();
  EXPECT_EQ(unstored.CropWidth(), 5);
}

}  // namespace
}  // namespace kiv
