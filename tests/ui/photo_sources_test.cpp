#include "support/temp_dir.h"
#include "ui/photo_sources.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QUrl>
#include <gtest/gtest.h>

using quarrydex::ui::PhotoSources;

TEST(UiPhotoSources, text_on_the_clipboard_gives_no_photo) {
    QGuiApplication::clipboard()->setText("a stone");
    EXPECT_TRUE(PhotoSources::clipboardImage().isEmpty());
}

TEST(UiPhotoSources, an_image_on_the_clipboard_comes_back_as_png) {
    QImage image(40, 30, QImage::Format_RGB32);
    image.fill(QColor("#7A5AA8"));
    QGuiApplication::clipboard()->setImage(image);
    QByteArray png = PhotoSources::clipboardImage();
    ASSERT_TRUE(png.startsWith("\x89PNG"));
    QImage back = QImage::fromData(png, "PNG");
    EXPECT_EQ(back.size(), QSize(40, 30));
    EXPECT_EQ(back.pixelColor(10, 10), QColor("#7A5AA8"));
    QGuiApplication::clipboard()->clear();
}

TEST(UiPhotoSources, a_chosen_file_is_read_whole_and_a_missing_one_gives_nothing) {
    quarrydex::test::TempDir dir;
    quarrydex::test::writeFile(dir / "stone.jpg", std::string("\xFF\xD8\xFF\x00jpeg", 8));
    QUrl url = QUrl::fromLocalFile(QString::fromStdString((dir / "stone.jpg").string()));
    EXPECT_EQ(PhotoSources::readFile(url), QByteArray("\xFF\xD8\xFF\x00jpeg", 8));
    EXPECT_TRUE(PhotoSources::readFile(QUrl::fromLocalFile("/no/such/file.jpg")).isEmpty());
}
