#include "ui/camera_controller.h"

#include <QBuffer>
#include <QCamera>
#include <QCameraDevice>
#include <QFutureWatcher>
#include <QImage>
#include <QImageCapture>
#include <QMediaDevices>
#include <QPromise>
#include <QThreadPool>

namespace quarrydex::ui {

const QString CameraController::startingText = QStringLiteral(u"Starting camera\u2026");
const QString CameraController::holdText =
    QStringLiteral("Hold the specimen close to the camera, in good light.");
const QString CameraController::noCameraText =
    QStringLiteral("No camera found. Choose or drop a photo instead.");

namespace {

constexpr int kJpegQuality = 92;

QByteArray jpegOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, "JPEG", kJpegQuality) ? bytes : QByteArray();
}

} // namespace

CameraController::CameraController(QObject* parent) : QObject(parent) {
    connect(&session_, &QMediaCaptureSession::videoOutputChanged, this,
            &CameraController::videoOutputChanged);
}

CameraController::~CameraController() {
    stop();
}

QObject* CameraController::videoOutput() const {
    return session_.videoOutput();
}

void CameraController::setVideoOutput(QObject* output) {
    session_.setVideoOutput(output);
}

void CameraController::start() {
    stop();
    setStatus(startingText);
    const QCameraDevice device = QMediaDevices::defaultVideoInput();
    if (device.isNull()) {
        setStatus(noCameraText);
        return;
    }
    camera_ = std::make_unique<QCamera>(device);
    imageCapture_ = std::make_unique<QImageCapture>();
    imageCapture_->setQuality(QImageCapture::VeryHighQuality);
    connect(camera_.get(), &QCamera::errorOccurred, this,
            [this](QCamera::Error, const QString& text) { failed(text); });
    connect(camera_.get(), &QCamera::activeChanged, this, &CameraController::refreshReady);
    connect(imageCapture_.get(), &QImageCapture::readyForCaptureChanged, this,
            &CameraController::refreshReady);
    connect(imageCapture_.get(), &QImageCapture::imageCaptured, this,
            [this](int, const QImage& image) { encode(image); });
    connect(imageCapture_.get(), &QImageCapture::errorOccurred, this,
            [this](int, QImageCapture::Error, const QString&) {
                setStatus(QStringLiteral("The photo couldn't be taken. Try again."));
            });
    session_.setCamera(camera_.get());
    session_.setImageCapture(imageCapture_.get());
    camera_->start();
    refreshReady();
}

void CameraController::capture() {
    if (ready_) {
        imageCapture_->capture();
    }
}

void CameraController::stop() {
    ++encoding_;
    if (camera_) {
        camera_->stop();
        session_.setCamera(nullptr);
        session_.setImageCapture(nullptr);
        camera_.reset();
        imageCapture_.reset();
    }
    refreshReady();
}

void CameraController::setStatus(const QString& status) {
    if (status_ != status) {
        status_ = status;
        Q_EMIT statusChanged();
    }
}

void CameraController::refreshReady() {
    const bool ready = camera_ && camera_->isActive() && camera_->error() == QCamera::NoError &&
                       imageCapture_->isReadyForCapture();
    if (ready == ready_) {
        return;
    }
    ready_ = ready;
    if (ready_) {
        setStatus(holdText);
    }
    Q_EMIT readyChanged();
}

void CameraController::failed(const QString& detail) {
    QString text = QStringLiteral("The camera couldn't be started");
    if (!detail.trimmed().isEmpty()) {
        text += QStringLiteral(" (") + detail.trimmed() + QStringLiteral(")");
    }
    setStatus(text + QStringLiteral(". Choose or drop a photo instead."));
    if (ready_) {
        ready_ = false;
        Q_EMIT readyChanged();
    }
}

void CameraController::encode(const QImage& image) {
    if (image.isNull()) {
        return; // a failed capture delivers nothing
    }
    const int generation = ++encoding_;
    auto promise = std::make_shared<QPromise<QByteArray>>();
    auto* watcher = new QFutureWatcher<QByteArray>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        const QByteArray photo = watcher->result();
        if (generation == encoding_ && !photo.isEmpty()) {
            Q_EMIT photoCaptured(photo);
        }
    });
    watcher->setFuture(promise->future());
    promise->start();
    QThreadPool::globalInstance()->start([promise, image] {
        promise->addResult(jpegOf(image));
        promise->finish();
    });
}

} // namespace quarrydex::ui
