#pragma once
// Serves the session photo of the application model to Image items as
// "image://sessionphoto/<revision>": the revision in the address makes an Image reload
// whenever the photo changes. Images may ask on a loader thread (asynchronous: true), so the
// provider keeps its own copy of the photo bytes behind a lock, updated on the main thread.

#include <QByteArray>
#include <QMutex>
#include <QQuickImageProvider>

namespace quarrydex {
class AppModel;
}

namespace quarrydex::ui {

class SessionPhotoProvider : public QQuickImageProvider {
public:
    static constexpr const char* name = "sessionphoto";

    // Follows `model`'s photo for as long as both exist.
    explicit SessionPhotoProvider(AppModel* model);

    // The photo decoded, scaled to fit `requestedSize` when one is given; a null image when
    // there has been no photo yet.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;

private:
    QMutex mutex_;
    QByteArray photo_;
};

} // namespace quarrydex::ui
