#include "ui/camera_preview.h"

#include <QPainter>
#include <QVideoFrame>

namespace quarrydex::ui {

CameraPreview::CameraPreview(QQuickItem* parent) : QQuickPaintedItem(parent) {
    connect(&sink_, &QVideoSink::videoFrameChanged, this, &CameraPreview::takeFrame);
}

void CameraPreview::takeFrame(const QVideoFrame& frame) {
    const bool had = hasFrame();
    frame_ = frame.isValid() ? frame.toImage() : QImage();
    if (had != hasFrame()) {
        Q_EMIT hasFrameChanged();
    }
    update();
}

void CameraPreview::paint(QPainter* painter) {
    if (frame_.isNull()) {
        return;
    }
    const QSizeF fitted = QSizeF(frame_.size()).scaled(size(), Qt::KeepAspectRatio);
    const QRectF target((width() - fitted.width()) / 2, (height() - fitted.height()) / 2,
                        fitted.width(), fitted.height());
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(target, frame_);
}

} // namespace quarrydex::ui
