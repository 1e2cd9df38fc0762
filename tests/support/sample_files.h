#pragma once
// Generated photos and sample folders for the tests.

#include "identify/rgb.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace quarrydex::test {

// A size x size JPEG of one colour.
std::string jpegOf(const RGB& color, int size = 64);

// A small PNG whose header declares width x height pixels (with a valid checksum), as a
// decompression bomb does: refused before any pixel is decoded.
std::string pngDeclaring(std::uint32_t width, std::uint32_t height);

// A samples folder with `count` generated photos and their manifest: sample i is
// "sample-<i>" of species "s<i>", by "Author <i>", with page https://commons.example/sample-<i>.
std::filesystem::path makeSampleFolder(const std::filesystem::path& folder, int count);

} // namespace quarrydex::test
