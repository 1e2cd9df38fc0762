#include "ui/photo_sources.h"

#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>

namespace quarrydex::ui {

PhotoSources::PhotoSources(QObject* parent) : QObject(parent) {}

QByteArray PhotoSources::readFile(const QUrl& url) {
    QString path = url.isLocalFile() ? url.toLocalFile() : url.toString();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.readAll();
}

QByteArray PhotoSources::clipboardImage() {
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime || !mime->hasImage()) {
        return {};
    }
    QImage image = qvariant_cast<QImage>(mime->imageData());
    if (image.isNull()) {
        return {};
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) {
        return {};
    }
    return png;
}

QStringList PhotoSources::nameFilters() {
    return {QStringLiteral("Photos (*.jpg *.jpeg *.png *.heic *.heif *.JPG *.JPEG *.PNG *.HEIC)"),
            QStringLiteral("All files (*)")};
}

} // namespace quarrydex::ui
