#pragma once
// Photos of the store as small images for lists and details, decoded off the GUI thread.
//
// "image://thumbnail/<file>" serves a bare photo file name of the store's photo folder;
// "image://thumbnail/@session" serves the photo of the current identification. Anything after
// a "?" is ignored here: views append a revision there so that their own image cache reloads
// a photo that was replaced under the same name.
//
// Decoding runs on the provider's thread pool at the requested size (the size shown; never
// larger than the photo itself, orientation applied). Decoded images are kept in a small
// cache keyed by file name, the file's modification time and size, and the requested size,
// so scrolling back over a list costs nothing. A name that is not a bare file name, a missing
// file or one that is not an image gives an empty image and no error: the views then show
// the species' swatch (an error would also be printed as a warning by every Image).

#include <QByteArray>
#include <QImage>
#include <QQuickAsyncImageProvider>
#include <QSize>
#include <QString>
#include <QThreadPool>

#include <filesystem>
#include <memory>

namespace quarrydex::ui {

class ThumbnailProvider : public QQuickAsyncImageProvider {
public:
    // The name under which the provider is added to an engine ("image://thumbnail/...").
    static constexpr const char* providerName = "thumbnail";
    // The id of the session photo.
    static constexpr const char* sessionId = "@session";

    explicit ThumbnailProvider(std::filesystem::path photosFolder);
    ~ThumbnailProvider() override;

    QQuickImageResponse* requestImageResponse(const QString& id,
                                              const QSize& requestedSize) override;

    // The current identification's photo (JPEG bytes, empty for none). Any thread.
    void setSessionPhoto(const QByteArray& jpeg);

    // The image `bytes` decode to, scaled down to cover `requested` (a zero or negative side
    // follows the other; an empty size keeps the image's own size). Null when the bytes are
    // not an image. Exposed for tests and the benchmark.
    static QImage decode(const QByteArray& bytes, const QSize& requested);

    struct Shared; // the cache and the session photo, shared with running jobs

private:
    std::filesystem::path photosFolder_;
    std::shared_ptr<Shared> shared_;
    QThreadPool pool_;
};

} // namespace quarrydex::ui
