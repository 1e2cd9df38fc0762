#pragma once
// Generated photos and sample folders for the tests.

#include "identify/rgb.h"

#include <filesystem>
#include <string>

namespace quarrydex::test {

// A size x size JPEG of one colour.
std::string jpegOf(const RGB& color, int size = 64);

// A samples folder with `count` generated photos and their manifest: sample i is
// "sample-<i>" of species "s<i>", by "Author <i>", with page https://commons.example/sample-<i>.
std::filesystem::path makeSampleFolder(const std::filesystem::path& folder, int count);

} // namespace quarrydex::test
