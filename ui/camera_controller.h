#pragma once
// The built-in camera for the "Take a Photo" sheet: starts the default camera, says in
// `status` what it is doing or why it can't, and hands one captured photo over as encoded
// image bytes (photoCaptured). Every problem becomes the status text; nothing is raised.
//
// The sheet shows the live preview by giving its video item to `videoOutput`. Main thread
// only; the captured frame is encoded on a worker thread and delivered back here.

#include <QByteArray>
#include <QMediaCaptureSession>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QCamera;
class QImage;
class QImageCapture;

namespace quarrydex::ui {

class CameraController : public QObject {
    Q_OBJECT
    QML_ELEMENT

    // Shown under the preview.
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    // True while the camera runs and can take a photo.
    Q_PROPERTY(bool ready READ ready NOTIFY readyChanged)
    // A video item (VideoOutput) that shows the preview; null for none.
    Q_PROPERTY(QObject* videoOutput READ videoOutput WRITE setVideoOutput NOTIFY videoOutputChanged)

public:
    static const QString startingText;
    static const QString holdText;
    static const QString noCameraText;

    explicit CameraController(QObject* parent = nullptr);
    ~CameraController() override;

    QString status() const { return status_; }
    bool ready() const { return ready_; }
    QObject* videoOutput() const;
    void setVideoOutput(QObject* output);

    // Starts the default camera (again, if it ran); without one, says so.
    Q_INVOKABLE void start();
    // Takes one photo; photoCaptured follows unless the capture fails.
    Q_INVOKABLE void capture();
    // Stops the camera and releases it.
    Q_INVOKABLE void stop();

Q_SIGNALS:
    void statusChanged();
    void readyChanged();
    void videoOutputChanged();
    void photoCaptured(const QByteArray& photo);

private:
    void setStatus(const QString& status);
    void refreshReady();
    void failed(const QString& detail);
    void encode(const QImage& image);

    QMediaCaptureSession session_;
    std::unique_ptr<QCamera> camera_;
    std::unique_ptr<QImageCapture> imageCapture_;
    QString status_ = startingText;
    bool ready_ = false;
    int encoding_ = 0; // generation of the photo being encoded; a stop drops it
};

} // namespace quarrydex::ui
