#include "ui/thumbnail_provider.h"

#include <QBuffer>
#include <QCache>
#include <QFile>
#include <QImageReader>
#include <QMutex>
#include <QMutexLocker>
#include <QRunnable>

#include <algorithm>
#include <system_error>
#include <utility>

namespace quarrydex::ui {

namespace {

// Decoded thumbnails kept for scrolling back, in kilobytes: 300 history rows at twice the
// row height on a high-density screen fit several times over.
constexpr qsizetype cacheKilobytes = 48 * 1024;

bool isBareFileName(const QString& name) {
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           !name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('\\'));
}

// The size to decode at: the photo scaled down so that it covers `requested`, keeping its
// proportions. Never larger than the photo.
QSize coverSize(const QSize& photo, const QSize& requested) {
    if (!photo.isValid() || photo.isEmpty()) {
        return {};
    }
    const int w = requested.width() > 0 ? requested.width() : 0;
    const int h = requested.height() > 0 ? requested.height() : 0;
    if (w == 0 && h == 0) {
        return photo;
    }
    const double scaleW = w > 0 ? double(w) / photo.width() : 0;
    const double scaleH = h > 0 ? double(h) / photo.height() : 0;
    const double scale = std::max(scaleW, scaleH);
    if (scale >= 1) {
        return photo;
    }
    return QSize(std::max(1, qRound(photo.width() * scale)),
                 std::max(1, qRound(photo.height() * scale)));
}

} // namespace

struct ThumbnailProvider::Shared {
    QMutex mutex;
    QCache<QString, QImage> cache{cacheKilobytes};
    QByteArray sessionPhoto;
    quint64 sessionRevision = 0;
};

namespace {

// One decode on the thread pool. It reports through a queued signal, so a response that Qt
// has already thrown away (a cancelled request) simply never hears of it.
class ThumbnailJob : public QObject, public QRunnable {
    Q_OBJECT

public:
    ThumbnailJob(std::shared_ptr<ThumbnailProvider::Shared> shared, std::filesystem::path folder,
                 QString id, QSize requested)
        : shared_(std::move(shared)), folder_(std::move(folder)), id_(std::move(id)),
          requested_(requested) {}

    void run() override { Q_EMIT done(load()); }

Q_SIGNALS:
    void done(const QImage& image);

private:
    QImage load() {
        const QString size =
            QString::number(requested_.width()) + 'x' + QString::number(requested_.height());
        if (id_ == QLatin1String(ThumbnailProvider::sessionId)) {
            QByteArray bytes;
            quint64 revision = 0;
            {
                QMutexLocker lock(&shared_->mutex);
                bytes = shared_->sessionPhoto;
                revision = shared_->sessionRevision;
            }
            return cached(id_ + '@' + QString::number(revision) + '@' + size,
                          [&] { return ThumbnailProvider::decode(bytes, requested_); });
        }
        if (!isBareFileName(id_)) {
            return {};
        }
        const std::filesystem::path file = folder_ / id_.toStdString();
        std::error_code error;
        const auto modified = std::filesystem::last_write_time(file, error);
        const auto bytes = error ? 0 : std::filesystem::file_size(file, error);
        if (error) {
            return {};
        }
        const QString key = id_ + '@' + QString::number(modified.time_since_epoch().count()) + '@' +
                            QString::number(bytes) + '@' + size;
        return cached(key, [&] {
            QFile in(QString::fromStdString(file.string()));
            if (!in.open(QIODevice::ReadOnly)) {
                return QImage();
            }
            return ThumbnailProvider::decode(in.readAll(), requested_);
        });
    }

    template <class Decode> QImage cached(const QString& key, Decode decode) {
        {
            QMutexLocker lock(&shared_->mutex);
            if (const QImage* hit = shared_->cache.object(key)) {
                return *hit;
            }
        }
        QImage image = decode();
        if (!image.isNull()) {
            QMutexLocker lock(&shared_->mutex);
            const qsizetype kilobytes = std::max<qsizetype>(1, image.sizeInBytes() / 1024);
            shared_->cache.insert(key, new QImage(image), kilobytes);
        }
        return image;
    }

    std::shared_ptr<ThumbnailProvider::Shared> shared_;
    std::filesystem::path folder_;
    QString id_;
    QSize requested_;
};

class ThumbnailResponse : public QQuickImageResponse {
    Q_OBJECT

public:
    QQuickTextureFactory* textureFactory() const override {
        return QQuickTextureFactory::textureFactoryForImage(image_);
    }

    void take(const QImage& image) {
        image_ = image;
        Q_EMIT finished();
    }

private:
    QImage image_;
};

} // namespace

ThumbnailProvider::ThumbnailProvider(std::filesystem::path photosFolder)
    : photosFolder_(std::move(photosFolder)), shared_(std::make_shared<Shared>()) {
    // Two decoders keep a list filling quickly without taking every core of a small machine.
    pool_.setMaxThreadCount(2);
}

ThumbnailProvider::~ThumbnailProvider() {
    pool_.clear();
    pool_.waitForDone();
}

QQuickImageResponse* ThumbnailProvider::requestImageResponse(const QString& id,
                                                             const QSize& requestedSize) {
    const QString file = id.section(QLatin1Char('?'), 0, 0);
    auto* response = new ThumbnailResponse;
    auto* job = new ThumbnailJob(shared_, photosFolder_, file, requestedSize);
    QObject::connect(job, &ThumbnailJob::done, response, &ThumbnailResponse::take);
    pool_.start(job);
    return response;
}

void ThumbnailProvider::setSessionPhoto(const QByteArray& jpeg) {
    QMutexLocker lock(&shared_->mutex);
    shared_->sessionPhoto = jpeg;
    ++shared_->sessionRevision;
}

QImage ThumbnailProvider::decode(const QByteArray& bytes, const QSize& requested) {
    if (bytes.isEmpty()) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    QSize photo = reader.size();
    // The scaled size applies before the orientation is; a quarter turn swaps the sides.
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize wanted = turned ? requested.transposed() : requested;
    if (photo.isValid()) {
        reader.setScaledSize(coverSize(photo, wanted));
    }
    QImage image = reader.read();
    if (image.isNull()) {
        return {};
    }
    if (!photo.isValid()) {
        // A format that cannot tell its size up front: scale after decoding.
        const QSize target = coverSize(image.size(), requested);
        if (target != image.size()) {
            image = image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        }
    }
    return image;
}

} // namespace quarrydex::ui

#include "thumbnail_provider.moc"
