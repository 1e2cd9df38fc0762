#include "ui/photo_sources.h"

#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QMimeData>

namespace quarrydex::ui {

namespace {

// Encoded photo formats taken as they are, best first: lossless before lossy.
const QStringList kPhotoFormats = {QStringLiteral("image/png"), QStringLiteral("image/tiff"),
                                   QStringLiteral("image/jpeg"), QStringLiteral("image/heic"),
                                   QStringLiteral("image/heif")};

QByteArray losslessPNG(const QImage& image) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    // Lossless either way; the lightest compression keeps a large bitmap quick to write.
    writer.setCompression(1);
    return writer.write(image) ? png : QByteArray();
}

} // namespace

PhotoSources::PhotoSources(QObject* parent) : QObject(parent) {}

QByteArray PhotoSources::readFile(const QUrl& url) {
    QString path = url.isLocalFile() ? url.toLocalFile() : url.toString();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.readAll();
}

QByteArray PhotoSources::photoFrom(const QMimeData* mime) {
    if (!mime) {
        return {};
    }
    for (const QString& format : kPhotoFormats) {
        if (mime->hasFormat(format)) {
            QByteArray data = mime->data(format);
            if (!data.isEmpty()) {
                return data;
            }
        }
    }
    if (!mime->hasImage()) {
        return {};
    }
    QImage image = qvariant_cast<QImage>(mime->imageData());
    return image.isNull() ? QByteArray() : losslessPNG(image);
}

QByteArray PhotoSources::clipboardImage() {
    return photoFrom(QGuiApplication::clipboard()->mimeData());
}

bool PhotoSources::pasteInto(AppModel* model) {
    const QByteArray photo = clipboardImage();
    if (!model || photo.isEmpty()) {
        return false;
    }
    model->setPhotoAsync(photo);
    return true;
}

QString PhotoSources::imageFormat(const QStringList& formats) {
    for (const QString& format : kPhotoFormats) {
        if (formats.contains(format)) {
            return format;
        }
    }
    for (const QString& format : formats) {
        if (format.startsWith(QLatin1String("image/"))) {
            return format;
        }
    }
    return {};
}

QStringList PhotoSources::nameFilters() {
    return {QStringLiteral("Images (*.jpg *.jpeg *.png *.heic *.heif *.tif *.tiff *.JPG *.JPEG "
                           "*.PNG *.HEIC *.HEIF *.TIF *.TIFF)")};
}

} // namespace quarrydex::ui
