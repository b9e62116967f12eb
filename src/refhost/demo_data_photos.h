// Photographs for part of the demo's persons: a small generated portrait each, so the
// editor shows a picture and the photograph can be exported.
#pragma once
#include <cstdint>
#include <string>

struct sqlite3;

namespace kiv::refhost {

//! A portrait as a 24-bit BMP file of width x height pixels: a head and shoulders in a
//! colour taken from `tone`, on a light background.
std::string DemoPortraitBmp(int width, int height, uint32_t tone);

//! Gives every 40th person (at most 250, so a million-customer demo stays small) a current
//! photograph and sets their has_image flag. Deterministic for a seed.
void AddDemoPhotos(sqlite3* db, uint64_t seed);

}  // namespace kiv::refhost
