#pragma once
// The camera's live picture in the sheet: a plain Qt Quick item that draws the latest frame of
// its video sink, scaled to fit. Drawn here rather than with Qt Multimedia's QML VideoOutput so
// that the window's QML needs no Qt Multimedia QML module. Main thread only.

#include <QImage>
#include <QQuickPaintedItem>
#include <QVideoSink>
#include <QtQml/qqmlregistration.h>

namespace quarrydex::ui {

class CameraPreview : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    // Hand this to CameraController.videoOutput.
    Q_PROPERTY(QObject* videoSink READ videoSink CONSTANT)
    Q_PROPERTY(bool hasFrame READ hasFrame NOTIFY hasFrameChanged)

public:
    explicit CameraPreview(QQuickItem* parent = nullptr);

    QObject* videoSink() { return &sink_; }
    bool hasFrame() const { return !frame_.isNull(); }
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void hasFrameChanged();

private:
    void takeFrame(const QVideoFrame& frame);

    QVideoSink sink_;
    QImage frame_;
};

} // namespace quarrydex::ui
