#include "identify/image_tools.h"
#include "support/sample_files.h"

#include <gtest/gtest.h>
#include <lcms2.h> // colour profiles and conversions, to make tagged test photos

using namespace quarrydex;
using vips::VImage;

namespace {

// solid() rounds each component to a byte, so a colour comes back within half a step.
constexpr double tolerance = 0.5 / 255.0 + 1e-9;

// A width x height RGB image, left half one colour and right half another.
VImage halves(int width, int height, std::vector<double> left, std::vector<double> right) {
    ImageTools::initialize();
    VImage l = VImage::black(width / 2, height).new_from_image(left);
    VImage r = VImage::black(width - width / 2, height).new_from_image(right);
    return l.join(r, VIPS_DIRECTION_HORIZONTAL)
        .cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
}

// The bytes of a saved image; releases the blob.
std::string bytesOf(VipsBlob* blob) {
    std::size_t n = 0;
    const void* data = vips_blob_get(blob, &n);
    std::string out(static_cast<const char*>(data), n);
    vips_area_unref(VIPS_AREA(blob));
    return out;
}

std::string jpeg(const VImage& image, int orientation = 0) {
    VImage tagged = image.copy();
    if (orientation) {
        tagged.set("orientation", orientation);
    }
    return bytesOf(tagged.jpegsave_buffer(VImage::option()->set("Q", 90)));
}

void expectColor(std::optional<RGB> got, RGB want, double tol = tolerance) {
    ASSERT_TRUE(got);
    EXPECT_NEAR(got->r, want.r, tol);
    EXPECT_NEAR(got->g, want.g, tol);
    EXPECT_NEAR(got->b, want.b, tol);
}

} // namespace

TEST(CenterColor, a_solid_image_reads_back_as_its_colour_unless_below_five_pixels) {
    for (RGB c : {RGB{0.3, 0.3, 0.3}, RGB{1, 0.5, 0}, RGB{0.2, 0.6, 0.9}}) {
        expectColor(ImageTools::averageCenterColor(*ImageTools::solid(c, 64)), c);
    }
    EXPECT_FALSE(ImageTools::averageCenterColor(Image(halves(4, 100, {9, 9, 9}, {9, 9, 9}))));
    EXPECT_FALSE(ImageTools::averageCenterColor(Image(halves(100, 4, {9, 9, 9}, {9, 9, 9}))));
}

TEST(CenterColor, only_the_middle_quarter_counts) {
    // 5 x 5: the crop is the 2 x 2 block at (1, 1), here two red and two blue pixels.
    std::vector<unsigned char> px(5 * 5 * 3, 0);
    auto set = [&](int x, int y, unsigned char r, unsigned char b) {
        px[(y * 5 + x) * 3] = r;
        px[(y * 5 + x) * 3 + 2] = b;
    };
    set(1, 1, 255, 0);
    set(2, 1, 0, 255);
    set(1, 2, 255, 0);
    set(2, 2, 0, 255);
    VImage img = VImage::new_from_memory(px.data(), px.size(), 5, 5, 3, VIPS_FORMAT_UCHAR)
                     .copy_memory()
                     .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    // Exactly the mean: no pull toward the block's top-left pixel.
    expectColor(ImageTools::averageCenterColor(Image(img)), RGB{0.5, 0, 0.5}, 1e-12);

    // 9 x 6: the crop is 4 x 3 at (2, 1); left half red, right half blue, and one column of
    // the crop's right half white.
    VImage wide = halves(8, 6, {255, 0, 0}, {0, 0, 255})
                      .join(VImage::black(1, 6).new_from_image({0, 0, 255}).cast(VIPS_FORMAT_UCHAR),
                            VIPS_DIRECTION_HORIZONTAL)
                      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    wide = wide.copy_memory();
    wide.draw_rect({255, 255, 255}, 5, 0, 1, 6);
    // Crop columns 2..5: red, red, blue, white.
    expectColor(ImageTools::averageCenterColor(Image(wide)), RGB{0.75, 0.25, 0.5}, 1e-12);
}

TEST(CenterColor, transparent_parts_count_as_black) {
    std::vector<unsigned char> px(8 * 8 * 4, 0);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            unsigned char* p = &px[(y * 8 + x) * 4];
            p[0] = 200;
            p[1] = 100;
            p[3] = x < 4 ? 255 : 51; // right half at 20%
        }
    }
    VImage img = VImage::new_from_memory(px.data(), px.size(), 8, 8, 4, VIPS_FORMAT_UCHAR)
                     .copy_memory()
                     .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    // Crop columns 2..5: two opaque, two at 20%.
    expectColor(ImageTools::averageCenterColor(Image(img)),
                RGB{200 * 0.6 / 255, 100 * 0.6 / 255, 0}, 1e-12);
}

// The frame header of a JPEG patched to claim width x height pixels; the data that follows
// is for the real, smaller size, so decoding it ends early.
std::string claimingSize(std::string bytes, int width, int height) {
    std::size_t sof = bytes.find("\xFF\xC0", 2);
    if (sof == std::string::npos) {
        sof = bytes.find("\xFF\xC2", 2); // progressive
    }
    EXPECT_NE(sof, std::string::npos);
    bytes[sof + 5] = static_cast<char>(height >> 8);
    bytes[sof + 6] = static_cast<char>(height & 0xFF);
    bytes[sof + 7] = static_cast<char>(width >> 8);
    bytes[sof + 8] = static_cast<char>(width & 0xFF);
    return bytes;
}

PhotoFailure failureOf(std::string_view bytes, int maxPixel) {
    Result<Image, PhotoFailure> image = ImageTools::load(bytes, maxPixel);
    EXPECT_FALSE(image) << "decoded as " << image->width() << " x " << image->height();
    return image ? PhotoFailure::notAnImage : image.error();
}

bool isTooLarge(std::string_view bytes, int maxPixel) {
    Result<Image, PhotoFailure> image = ImageTools::load(bytes, maxPixel);
    return !image && image.error() == PhotoFailure::tooLarge;
}

TEST(Decoding, untrusted_bytes_give_no_image) {
    std::string good = jpeg(halves(64, 48, {200, 10, 10}, {10, 10, 200}));
    EXPECT_TRUE(ImageTools::decode(good, 100));
    EXPECT_EQ(failureOf("", 100), PhotoFailure::notAnImage);
    EXPECT_EQ(failureOf("definitely not an image", 100), PhotoFailure::notAnImage);
    EXPECT_EQ(failureOf(good.substr(0, good.size() / 2), 100), PhotoFailure::notAnImage);
    EXPECT_EQ(failureOf(good, 0), PhotoFailure::notAnImage);
    std::string garbage(4096, '\0');
    for (std::size_t i = 0; i < garbage.size(); ++i) {
        garbage[i] = static_cast<char>((i * 7919) % 251);
    }
    EXPECT_EQ(failureOf(garbage, 100), PhotoFailure::notAnImage);
    EXPECT_FALSE(ImageTools::decode(garbage, 100));
}

// What counts is how many pixels would be decoded: a JPEG shrinks by up to 8 while it is
// decoded, other formats do not, and a progressive JPEG holds its whole size in memory.
TEST(Decoding, images_that_would_decode_more_than_100_megapixels_are_too_large) {
    EXPECT_TRUE(isTooLarge(test::pngDeclaring(100000, 100000), 1600));
    EXPECT_TRUE(isTooLarge(test::pngDeclaring(10001, 10000), 1600));
    EXPECT_FALSE(isTooLarge(test::pngDeclaring(10000, 10000), 1600)) << "100 MP are allowed";

    // 12000 x 9000 (108 MP) decodes at 1/4 for 1600 pixels; at full size it would decode
    // every pixel. (The data is for 16 x 16, so what decodes is mostly grey.)
    std::string small = jpeg(halves(16, 16, {1, 2, 3}, {4, 5, 6}));
    EXPECT_FALSE(isTooLarge(claimingSize(small, 12000, 9000), 1600));
    EXPECT_TRUE(isTooLarge(claimingSize(small, 12000, 9000), 12000));

    std::string progressive =
        bytesOf(halves(16, 16, {1, 2, 3}, {4, 5, 6})
                    .jpegsave_buffer(VImage::option()->set("interlace", true)));
    EXPECT_TRUE(isTooLarge(claimingSize(progressive, 16384, 15626), 1600)) << "over 256 MP";
    EXPECT_FALSE(isTooLarge(claimingSize(progressive, 4000, 3000), 1600));
}

// A phone's 200-megapixel photos and more: decoded at 1/8, about 4 megapixels.
TEST(Decoding, a_256_megapixel_jpeg_decodes_to_the_size_asked_for) {
    VImage huge = VImage::black(16384, 15625, VImage::option()->set("bands", 3))
                      .new_from_image({200, 60, 40})
                      .cast(VIPS_FORMAT_UCHAR)
                      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    std::string bytes = bytesOf(huge.jpegsave_buffer(VImage::option()->set("Q", 50)));
    Result<Image, PhotoFailure> image = ImageTools::load(bytes, 1600);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width(), 1600);
    EXPECT_EQ(image->height(), 1526);
    expectColor(ImageTools::averageCenterColor(*image), RGB{200 / 255.0, 60 / 255.0, 40 / 255.0},
                2.5 / 255);
}

TEST(Decoding, the_orientation_tag_is_applied) {
    // Stored 40 x 20, left red and right blue, tagged "rotate 90 clockwise to view".
    std::string bytes = jpeg(halves(40, 20, {230, 20, 20}, {20, 20, 230}), 6);
    auto image = ImageTools::decode(bytes, 1600);
    ASSERT_TRUE(image);
    EXPECT_EQ(image->width(), 20);
    EXPECT_EQ(image->height(), 40);
    RGB top = image->pixel(10, 5), bottom = image->pixel(10, 35);
    EXPECT_GT(top.r, 0.7);
    EXPECT_GT(bottom.b, 0.7);

    // Normalising keeps it upright and drops the tag.
    auto normalized = ImageTools::normalizedJPEG(bytes);
    ASSERT_TRUE(normalized);
    auto again = ImageTools::decode(*normalized, 1600);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->width(), 20);
    EXPECT_EQ(again->height(), 40);
}

TEST(Decoding, heif_photos_decode_from_the_primary_image) {
    VImage image = halves(64, 32, {230, 20, 20}, {20, 20, 230});
    std::string heif;
    try {
        heif = bytesOf(image.heifsave_buffer(
            VImage::option()->set("compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1)->set("Q", 90)));
    } catch (const vips::VError&) {
        GTEST_SKIP() << "this libheif has no encoder to make a test file";
    }
    auto decoded = ImageTools::decode(heif, 1600);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->width(), 64);
    EXPECT_EQ(decoded->height(), 32);
    EXPECT_GT(decoded->pixel(8, 16).r, 0.7);
    EXPECT_GT(decoded->pixel(56, 16).b, 0.7);
    auto small = ImageTools::decode(heif, 16);
    ASSERT_TRUE(small);
    EXPECT_EQ(small->width(), 16);
    EXPECT_FALSE(ImageTools::decode(heif.substr(0, heif.size() / 2), 1600));
}

namespace {

// An RGB colour profile with D65 white, the given primaries and either the sRGB tone
// curve or a pure gamma, as the profile's bytes.
std::string rgbProfile(cmsCIExyYTRIPLE primaries, double gamma) {
    cmsCIExyY white{0.3127, 0.3290, 1.0};
    // The sRGB curve: parametric type 4 (gamma 2.4 with a linear toe).
    const double srgb[] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    cmsToneCurve* curve =
        gamma > 0 ? cmsBuildGamma(nullptr, gamma) : cmsBuildParametricToneCurve(nullptr, 4, srgb);
    cmsToneCurve* curves[3] = {curve, curve, curve};
    cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves);
    cmsFreeToneCurve(curve);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

// Display P3, as phones tag their photos: P3 primaries, D65, the sRGB curve.
std::string displayP3() {
    return rgbProfile({{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}}, 0);
}

// Adobe RGB (1998), as cameras offer it: wider greens, gamma 563/256.
std::string adobeRGB() {
    return rgbProfile({{0.64, 0.33, 1}, {0.21, 0.71, 1}, {0.15, 0.06, 1}}, 563.0 / 256);
}

// The 8-bit values that show the sRGB colour `srgb` in the space of `profile`.
std::vector<double> inProfile(const std::string& profile, RGB srgb) {
    cmsHPROFILE from = cmsCreate_sRGBProfile();
    cmsHPROFILE to = cmsOpenProfileFromMem(profile.data(), profile.size());
    cmsHTRANSFORM t =
        cmsCreateTransform(from, TYPE_RGB_DBL, to, TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC, 0);
    double in[3] = {srgb.r, srgb.g, srgb.b};
    unsigned char out[3];
    cmsDoTransform(t, in, out, 1);
    cmsDeleteTransform(t);
    cmsCloseProfile(from);
    cmsCloseProfile(to);
    return {double(out[0]), double(out[1]), double(out[2])};
}

// A solid 64 x 64 image of the given pixel values, tagged with `profile` when it has one.
VImage tagged(std::vector<double> values, const std::string& profile) {
    VImage image = halves(64, 64, values, values);
    if (!profile.empty()) {
        vips_image_set_blob_copy(image.get_image(), VIPS_META_ICC_NAME, profile.data(),
                                 profile.size());
    }
    return image;
}

std::string jpegKeepingProfile(const VImage& image) {
    return bytesOf(image.jpegsave_buffer(VImage::option()->set("Q", 95)));
}

} // namespace

// A red that a phone stores in Display P3 must read as the same red in sRGB, or the matcher
// compares the wrong colour; untagged pixels are sRGB as they are.
TEST(ColourProfiles, tagged_photos_are_converted_to_srgb_before_the_colour_is_read) {
    const RGB red{0.8, 0.2, 0.2};
    const std::pair<const char*, std::string> profiles[] = {{"Display P3", displayP3()},
                                                            {"Adobe RGB", adobeRGB()}};
    for (const auto& [name, profile] : profiles) {
        std::vector<double> values = inProfile(profile, red);
        for (const std::string& bytes : {jpegKeepingProfile(tagged(values, profile)),
                                         bytesOf(tagged(values, profile).pngsave_buffer())}) {
            auto image = ImageTools::decode(bytes, 1600);
            ASSERT_TRUE(image) << name;
            SCOPED_TRACE(name);
            expectColor(ImageTools::averageCenterColor(*image), red, 2.5 / 255);
        }
        // The same numbers without the profile are taken as sRGB.
        auto untagged = ImageTools::decode(jpegKeepingProfile(tagged(values, "")), 1600);
        ASSERT_TRUE(untagged);
        expectColor(ImageTools::averageCenterColor(*untagged),
                    RGB{values[0] / 255, values[1] / 255, values[2] / 255}, 2.5 / 255);
    }
}

TEST(ColourProfiles, stored_photos_are_srgb_without_a_profile) {
    const RGB red{0.8, 0.2, 0.2};
    std::string p3 = jpegKeepingProfile(tagged(inProfile(displayP3(), red), displayP3()));
    auto stored = ImageTools::normalizedJPEG(p3);
    ASSERT_TRUE(stored);
    VImage header = VImage::new_from_buffer(stored->data(), stored->size(), "");
    EXPECT_EQ(header.get_typeof(VIPS_META_ICC_NAME), 0u) << "no profile is kept";
    auto image = ImageTools::decode(*stored, 1600);
    ASSERT_TRUE(image);
    // Two lossy encodings: within a few steps, far closer than the 15 steps the profile
    // makes.
    expectColor(ImageTools::averageCenterColor(*image), red, 4.0 / 255);
}

TEST(ColourProfiles, a_profile_that_cannot_be_used_is_ignored) {
    const std::vector<double> values{200, 50, 50};
    std::string damaged = displayP3().substr(0, 200);
    std::string cmykProfileOnRGB(128, '\0');
    for (const std::string& profile : {damaged, cmykProfileOnRGB}) {
        auto image = ImageTools::decode(jpegKeepingProfile(tagged(values, profile)), 1600);
        ASSERT_TRUE(image);
        expectColor(ImageTools::averageCenterColor(*image),
                    RGB{200 / 255.0, 50 / 255.0, 50 / 255.0}, 2.5 / 255);
    }
}
