#include "ui/session_photo_provider.h"

#include "app/app_model.h"

#include <QBuffer>
#include <QImageReader>
#include <QMutexLocker>

namespace quarrydex::ui {

SessionPhotoProvider::SessionPhotoProvider(AppModel* model)
    : QQuickImageProvider(QQuickImageProvider::Image) {
    // A cleared photo keeps the last one: an Image still loading it gets it, and no Image
    // asks for it any more.
    auto update = [this, model] {
        if (model->hasPhoto()) {
            QMutexLocker lock(&mutex_);
            photo_ = model->photoData();
        }
    };
    update();
    connect(model, &AppModel::photoDataChanged, this, update);
}

QImage SessionPhotoProvider::requestImage(const QString&, QSize* size, const QSize& requestedSize) {
    QByteArray photo;
    {
        QMutexLocker lock(&mutex_);
        photo = photo_;
    }
    QBuffer buffer(&photo);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize full = reader.size();
    if (full.isValid() && requestedSize.isValid() && !requestedSize.isEmpty()) {
        reader.setScaledSize(full.scaled(requestedSize, Qt::KeepAspectRatio));
    }
    QImage image = reader.read();
    if (size) {
        *size = image.size();
    }
    return image;
}

} // namespace quarrydex::ui
