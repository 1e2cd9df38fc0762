#include "support/temp_dir.h"
#include "ui/thumbnail_provider.h"

#include <QBuffer>
#include <QImage>
#include <QQuickImageResponse>
#include <QQuickTextureFactory>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <memory>

using quarrydex::test::TempDir;
using quarrydex::ui::ThumbnailProvider;

namespace {

QByteArray jpegOf(QSize size, QColor color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 90);
    return bytes;
}

void writePhoto(const TempDir& dir, const std::string& name, const QByteArray& bytes) {
    quarrydex::test::writeFile(dir / name, bytes.toStdString());
}

// What an Image gets for `id` at `requested`: waits for the decode off the calling thread.
QImage request(ThumbnailProvider& provider, const QString& id, QSize requested) {
    std::unique_ptr<QQuickImageResponse> response(provider.requestImageResponse(id, requested));
    QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
    EXPECT_TRUE(finished.wait(5000)) << id.toStdString();
    EXPECT_TRUE(response->errorString().isEmpty());
    std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
    return factory ? factory->image() : QImage();
}

} // namespace

TEST(UiThumbnailProvider, decodes_at_the_size_that_covers_the_request_and_never_enlarges) {
    const QByteArray wide = jpegOf({400, 200}, QColor("#7A5AA8"));
    EXPECT_EQ(ThumbnailProvider::decode(wide, {50, 50}).size(), QSize(100, 50));
    EXPECT_EQ(ThumbnailProvider::decode(wide, {80, 0}).size(), QSize(80, 40));
    EXPECT_EQ(ThumbnailProvider::decode(wide, {0, 20}).size(), QSize(40, 20));
    EXPECT_EQ(ThumbnailProvider::decode(wide, {}).size(), QSize(400, 200));
    EXPECT_EQ(ThumbnailProvider::decode(wide, {1000, 1000}).size(), QSize(400, 200));

    EXPECT_TRUE(ThumbnailProvider::decode({}, {50, 50}).isNull());
    EXPECT_TRUE(ThumbnailProvider::decode("not a photo at all", {50, 50}).isNull());
}

TEST(UiThumbnailProvider, serves_bare_photo_names_and_gives_an_empty_image_for_anything_else) {
    TempDir outside;
    writePhoto(outside, "secret.jpg", jpegOf({64, 64}, Qt::red));
    TempDir photos;
    writePhoto(photos, "A.jpg", jpegOf({300, 300}, QColor("#4CC79A")));
    writePhoto(photos, "damaged.jpg", "this was a photo once");
    ThumbnailProvider provider(photos.path());

    const QImage a = request(provider, "A.jpg", {60, 60});
    EXPECT_EQ(a.size(), QSize(60, 60));
    EXPECT_NEAR(QColor(a.pixel(30, 30)).green(), 0xC7, 6);
    // A revision after "?" only concerns the view's own cache.
    EXPECT_EQ(request(provider, "A.jpg?7", {60, 60}).size(), QSize(60, 60));

    EXPECT_TRUE(request(provider, "missing.jpg", {60, 60}).isNull());
    EXPECT_TRUE(request(provider, "damaged.jpg", {60, 60}).isNull());
    EXPECT_TRUE(request(provider, "", {60, 60}).isNull());
    const QString escape = QString::fromStdString(
        std::filesystem::relative(outside / "secret.jpg", photos.path()).string());
    EXPECT_TRUE(request(provider, escape, {60, 60}).isNull());
    EXPECT_TRUE(request(provider, "..", {60, 60}).isNull());
}

TEST(UiThumbnailProvider, a_photo_replaced_under_the_same_name_is_decoded_again) {
    TempDir photos;
    writePhoto(photos, "B.jpg", jpegOf({100, 100}, Qt::red));
    ThumbnailProvider provider(photos.path());
    EXPECT_GT(QColor(request(provider, "B.jpg", {40, 40}).pixel(20, 20)).red(), 200);

    // Another size of file (and most likely another time) makes another cache entry.
    writePhoto(photos, "B.jpg", jpegOf({120, 100}, Qt::blue));
    const QImage replaced = request(provider, "B.jpg", {40, 40});
    EXPECT_GT(QColor(replaced.pixel(20, 20)).blue(), 200);
    EXPECT_LT(QColor(replaced.pixel(20, 20)).red(), 60);
}

TEST(UiThumbnailProvider, serves_the_session_photo_and_follows_its_changes) {
    TempDir photos;
    ThumbnailProvider provider(photos.path());
    EXPECT_TRUE(request(provider, "@session", {40, 40}).isNull());
    provider.setSessionPhoto(jpegOf({80, 80}, Qt::green));
    EXPECT_GT(QColor(request(provider, "@session?1", {40, 40}).pixel(5, 5)).green(), 200);
    provider.setSessionPhoto(jpegOf({80, 80}, Qt::blue));
    EXPECT_GT(QColor(request(provider, "@session?2", {40, 40}).pixel(5, 5)).blue(), 200);
    provider.setSessionPhoto({});
    EXPECT_TRUE(request(provider, "@session?3", {40, 40}).isNull());
}
