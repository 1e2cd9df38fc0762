#include "support/temp_dir.h"
#include "ui/photo_sources.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <gtest/gtest.h>

using quarrydex::ui::PhotoSources;

TEST(UiPhotoSources, a_chosen_file_is_read_whole_and_a_missing_one_gives_nothing) {
    quarrydex::test::TempDir dir;
    quarrydex::test::writeFile(dir / "stone.jpg", std::string("\xFF\xD8\xFF\x00jpeg", 8));
    QUrl url = QUrl::fromLocalFile(QString::fromStdString((dir / "stone.jpg").string()));
    EXPECT_EQ(PhotoSources::readFile(url), QByteArray("\xFF\xD8\xFF\x00jpeg", 8));
    EXPECT_TRUE(PhotoSources::readFile(QUrl::fromLocalFile("/no/such/file.jpg")).isEmpty());
}

namespace {

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

QImage stone() {
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(QColor("#7A5AA8"));
    image.setPixelColor(3, 4, QColor("#10E020"));
    return image;
}

} // namespace

TEST(UiPhotoSources, encoded_photo_data_is_taken_as_it_is_png_first) {
    const QByteArray png = encoded(stone(), "PNG");
    const QByteArray jpeg = encoded(stone(), "JPEG");
    QMimeData both;
    both.setData("image/jpeg", jpeg);
    both.setData("image/png", png);
    both.setText("a stone");
    EXPECT_EQ(PhotoSources::photoFrom(&both), png);

    QMimeData lossy;
    lossy.setData("image/heic", "heic bytes");
    lossy.setData("image/jpeg", jpeg);
    lossy.setData("image/tiff", "tiff bytes");
    EXPECT_EQ(PhotoSources::photoFrom(&lossy), QByteArray("tiff bytes"));
    lossy.removeFormat("image/tiff");
    EXPECT_EQ(PhotoSources::photoFrom(&lossy), jpeg);
    lossy.removeFormat("image/jpeg");
    EXPECT_EQ(PhotoSources::photoFrom(&lossy), QByteArray("heic bytes"));
}

TEST(UiPhotoSources, any_other_readable_image_is_encoded_losslessly_and_text_is_no_photo) {
    QMimeData bitmap;
    bitmap.setImageData(stone());
    const QByteArray png = PhotoSources::photoFrom(&bitmap);
    ASSERT_TRUE(png.startsWith("\x89PNG"));
    EXPECT_EQ(QImage::fromData(png).convertToFormat(QImage::Format_RGB32), stone());

    QMimeData text;
    text.setText("a stone");
    text.setHtml("<b>a stone</b>");
    EXPECT_TRUE(PhotoSources::photoFrom(&text).isEmpty());
    EXPECT_TRUE(PhotoSources::photoFrom(nullptr).isEmpty());

    QGuiApplication::clipboard()->setMimeData(new QMimeData); // empty clipboard
    EXPECT_TRUE(PhotoSources::clipboardImage().isEmpty());
    QGuiApplication::clipboard()->setImage(stone());
    EXPECT_FALSE(PhotoSources::clipboardImage().isEmpty());
    QGuiApplication::clipboard()->clear();
}

TEST(UiPhotoSources, a_drop_gives_its_photo_format_in_the_same_order_and_text_gives_none) {
    EXPECT_EQ(PhotoSources::imageFormat({"text/plain", "image/jpeg", "image/png"}), "image/png");
    EXPECT_EQ(PhotoSources::imageFormat({"image/heic", "image/tiff"}), "image/tiff");
    EXPECT_EQ(PhotoSources::imageFormat({"text/html", "image/bmp"}), "image/bmp");
    EXPECT_EQ(PhotoSources::imageFormat({"text/plain", "text/html"}), "");
    EXPECT_EQ(PhotoSources::imageFormat({}), "");
}

TEST(UiPhotoSources, the_open_dialog_offers_image_files_only) {
    const QStringList filters = PhotoSources::nameFilters();
    ASSERT_EQ(filters.size(), 1);
    for (const char* pattern : {"*.jpg", "*.jpeg", "*.png", "*.heic", "*.tiff"}) {
        EXPECT_TRUE(filters.front().contains(pattern)) << pattern;
    }
    EXPECT_FALSE(filters.front().contains("*)")); // no "All files (*)"
}
