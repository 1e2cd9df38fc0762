#include "app/collection_editor.h"

#include "app/qt_values.h"

#include "identify/image_tools.h"
#include "library/specimen_library.h"
#include "store/acquisition.h"
#include "store/atomic_file.h"
#include "store/stone_store.h"

#include <QDateTime>
#include <QFile>
#include <QThread>
#include <QVariantMap>
#include <algorithm>
#include <cmath>

namespace quarrydex {

namespace {

const QString kNotSure = QStringLiteral("Not sure / not in library");
const QString kNotAPhoto =
    QStringLiteral("That file couldn't be opened as a photo. Try a JPEG, HEIC or PNG.");

Timestamp fromDateTime(const QDateTime& when) {
    return Timestamp::fromUnix(static_cast<double>(when.toMSecsSinceEpoch()) / 1000.0);
}

const QString kDateFormat = QStringLiteral("yyyy-MM-dd");

} // namespace

CollectionEditor::CollectionEditor(StoneStore& store, const SpecimenLibrary& library,
                                   QObject* parent)
    : QObject(parent), store_(store), library_(library) {
    speciesChoices_.append(
        QVariantMap{{QStringLiteral("id"), QString()}, {QStringLiteral("name"), kNotSure}});
    // The library keeps its species sorted by name.
    for (const Specimen& specimen : library_.specimens()) {
        speciesChoices_.append(QVariantMap{{QStringLiteral("id"), qs(specimen.id)},
                                           {QStringLiteral("name"), qs(specimen.name)}});
    }
}

CollectionEditor::~CollectionEditor() {
    if (worker_) {
        worker_->wait();
        delete worker_;
    }
}

QString CollectionEditor::title() const {
    return isNew_ ? QStringLiteral("Add to My Collection") : QStringLiteral("Edit Specimen");
}

QString CollectionEditor::entryId() const {
    return open_ ? qs(entry_.id.text()) : QString();
}

QString CollectionEditor::name() const {
    return qs(entry_.name);
}

void CollectionEditor::setName(const QString& name) {
    if (name != this->name()) {
        entry_.name = name.toStdString();
        Q_EMIT entryChanged();
    }
}

QString CollectionEditor::speciesId() const {
    return entry_.specimenID ? qs(*entry_.specimenID) : QString();
}

void CollectionEditor::setSpeciesId(const QString& id) {
    std::optional<std::string> next;
    if (!id.isEmpty() && library_.specimen(id.toStdString())) {
        next = id.toStdString();
    }
    if (next != entry_.specimenID) {
        entry_.specimenID = next;
        Q_EMIT entryChanged();
    }
}

QString CollectionEditor::speciesName() const {
    const Specimen* specimen = entry_.specimenID ? library_.specimen(*entry_.specimenID) : nullptr;
    return specimen ? qs(specimen->name) : kNotSure;
}

QString CollectionEditor::acquisition() const {
    return qs(entry_.acquisition);
}

void CollectionEditor::setAcquisition(const QString& raw) {
    if (!Acquisition::fromRaw(raw.toStdString()) || raw == acquisition()) {
        return;
    }
    entry_.acquisition = raw.toStdString();
    Q_EMIT entryChanged();
}

void CollectionEditor::setDateText(const QString& text) {
    if (text != dateText_) {
        dateText_ = text;
        Q_EMIT entryChanged();
    }
}

bool CollectionEditor::dateValid() const {
    return QDate::fromString(dateText_.trimmed(), kDateFormat).isValid();
}

QString CollectionEditor::location() const {
    return qs(entry_.location);
}

void CollectionEditor::setLocation(const QString& location) {
    if (location != this->location()) {
        entry_.location = location.toStdString();
        Q_EMIT entryChanged();
    }
}

QString CollectionEditor::notes() const {
    return qs(entry_.notes);
}

void CollectionEditor::setNotes(const QString& notes) {
    if (notes != this->notes()) {
        entry_.notes = notes.toStdString();
        Q_EMIT entryChanged();
    }
}

QString CollectionEditor::confidenceText() const {
    if (!entry_.confidence) {
        return {};
    }
    return QString::number(
               static_cast<int>(std::round(std::clamp(*entry_.confidence, 0.0, 0.95) * 100))) +
           QLatin1Char('%');
}

QVariantList CollectionEditor::acquisitionChoices() const {
    QVariantList list;
    for (Acquisition a : Acquisition::allCases()) {
        list.append(QVariantMap{{QStringLiteral("raw"), qs(std::string(a.rawValue()))},
                                {QStringLiteral("title"), qs(a.title())}});
    }
    return list;
}

QVariantList CollectionEditor::findSpecies(const QString& text) const {
    const QString wanted = text.trimmed().toCaseFolded();
    if (wanted.isEmpty()) {
        return speciesChoices_;
    }
    QVariantList starts;
    QVariantList contains;
    for (const QVariant& choice : speciesChoices_) {
        const QString name = choice.toMap().value(QStringLiteral("name")).toString().toCaseFolded();
        if (name.startsWith(wanted)) {
            starts.append(choice);
        } else if (name.contains(wanted)) {
            contains.append(choice);
        }
    }
    return starts + contains;
}

void CollectionEditor::begin(CollectionEntry entry, bool isNew) {
    ++generation_;
    entry_ = std::move(entry);
    isNew_ = isNew;
    open_ = true;
    dateText_ = toDateTime(entry_.dateAdded).toLocalTime().toString(kDateFormat);
    newPhoto_.clear();
    photoError_.clear();
    photoUrl_ = entry_.photoFile && !entry_.photoFile->empty() &&
                        entry_.photoFile->find('/') == std::string::npos
                    ? QUrl::fromLocalFile(qs((store_.photosFolder() / *entry_.photoFile).string()))
                    : QUrl();
    Q_EMIT openChanged();
    Q_EMIT entryChanged();
    Q_EMIT photoChanged();
}

void CollectionEditor::openNew() {
    begin(CollectionEntry{}, true);
}

void CollectionEditor::openForSpecies(const QString& specimenId, double confidence,
                                      const QByteArray& photo) {
    CollectionEntry entry;
    if (const Specimen* specimen = library_.specimen(specimenId.toStdString())) {
        entry.specimenID = specimen->id;
        entry.name = specimen->name;
    }
    if (confidence >= 0 && confidence <= 1) {
        entry.confidence = confidence;
    }
    begin(std::move(entry), true);
    if (!photo.isEmpty()) {
        preparePhoto(photo, {});
    }
}

bool CollectionEditor::openEdit(const QString& entryId) {
    const std::string wanted = entryId.toStdString();
    for (const CollectionEntry& entry : store_.collection()) {
        if (entry.id.text() == wanted) {
            begin(entry, false);
            return true;
        }
    }
    return false;
}

void CollectionEditor::setPhotoError(const QString& message) {
    photoError_ = message;
    Q_EMIT photoChanged();
}

bool CollectionEditor::choosePhotoFile(const QUrl& file) {
    if (!open_ || worker_) {
        return false;
    }
    const QString path = file.isLocalFile() ? file.toLocalFile() : file.toString();
    if (path.isEmpty()) {
        setPhotoError(kNotAPhoto);
        return false;
    }
    preparePhoto({}, path);
    return true;
}

bool CollectionEditor::choosePhotoData(const QByteArray& data) {
    if (!open_ || worker_) {
        return false;
    }
    preparePhoto(data, {});
    return true;
}

void CollectionEditor::preparePhoto(QByteArray bytes, QString path) {
    if (!previews_) {
        previews_ = std::make_unique<QTemporaryDir>();
    }
    const QString preview =
        previews_->filePath(QStringLiteral("preview-%1.jpg").arg(++previewCount_));
    auto result = std::make_shared<std::optional<std::string>>();
    worker_ = QThread::create([bytes = std::move(bytes), path, preview, result] {
        QByteArray data = bytes;
        if (!path.isEmpty()) {
            QFile in(path);
            if (!in.open(QIODevice::ReadOnly)) {
                return;
            }
            data = in.readAll();
        }
        std::optional<std::string> jpeg = ImageTools::normalizedJPEG(
            std::string_view(data.constData(), static_cast<std::size_t>(data.size())),
            photoMaxPixel);
        if (!jpeg) {
            return;
        }
        QFile out(preview);
        if (out.open(QIODevice::WriteOnly) &&
            out.write(jpeg->data(), static_cast<qint64>(jpeg->size())) ==
                static_cast<qint64>(jpeg->size())) {
            out.close();
        }
        *result = std::move(jpeg);
    });
    const int generation = generation_;
    connect(worker_, &QThread::finished, this, [this, result, preview, generation] {
        worker_->wait();
        delete worker_;
        worker_ = nullptr;
        Q_EMIT workingChanged();
        if (generation != generation_ || !open_) {
            return; // the sheet was closed or opened on something else meanwhile
        }
        if (!*result) {
            setPhotoError(kNotAPhoto);
            return;
        }
        newPhoto_ = std::move(**result);
        photoError_.clear();
        photoUrl_ = QUrl::fromLocalFile(preview);
        Q_EMIT photoChanged();
    });
    worker_->start();
    Q_EMIT workingChanged();
}

bool CollectionEditor::save() {
    if (!open_ || worker_ || !dateValid()) {
        return false;
    }
    // The date: unchanged text keeps the exact moment; a new day keeps the time of day.
    const QDateTime before = toDateTime(entry_.dateAdded).toLocalTime();
    const QDate day = QDate::fromString(dateText_.trimmed(), kDateFormat);
    if (day != before.date()) {
        entry_.dateAdded = fromDateTime(QDateTime(day, before.time()));
    }
    if (newPhoto_.empty()) {
        finishSave(std::nullopt, {});
        return true;
    }
    auto name = std::make_shared<std::optional<std::string>>();
    auto failure = std::make_shared<QString>();
    const std::filesystem::path target = store_.photosFolder() / (entry_.id.text() + ".jpg");
    worker_ = QThread::create([photo = newPhoto_, target, name, failure] {
        // Normalised once more, as every stored photo is; the result is the file's content.
        std::optional<std::string> jpeg = ImageTools::normalizedJPEG(photo, photoMaxPixel);
        if (!jpeg) {
            return; // saved without a photo
        }
        std::error_code ec;
        std::filesystem::create_directories(target.parent_path(), ec);
        Status written = AtomicFile::write(target, *jpeg);
        if (!written) {
            *failure = QStringLiteral("Couldn't save the photo: ") + qs(written.error());
            return;
        }
        *name = target.filename().string();
    });
    const int generation = generation_;
    connect(worker_, &QThread::finished, this, [this, name, failure, generation] {
        worker_->wait();
        delete worker_;
        worker_ = nullptr;
        saving_ = false;
        Q_EMIT workingChanged();
        if (generation == generation_ && open_) {
            finishSave(*name, *failure);
        }
    });
    saving_ = true;
    worker_->start();
    Q_EMIT workingChanged();
    return true;
}

void CollectionEditor::finishSave(std::optional<std::string> photoFile, QString failure) {
    if (!failure.isEmpty()) {
        // The sheet stays open with everything typed, so nothing is lost.
        setPhotoError(failure);
        return;
    }
    if (photoFile) {
        entry_.photoFile = photoFile;
    }
    const QString id = qs(entry_.id.text());
    if (isNew_) {
        store_.add(entry_);
    } else {
        store_.update(entry_);
    }
    close();
    Q_EMIT saved(id);
}

void CollectionEditor::cancel() {
    if (saving_) {
        return; // the photo is being written; the sheet closes when the save is done
    }
    close();
}

void CollectionEditor::close() {
    if (!open_) {
        return;
    }
    ++generation_;
    open_ = false;
    newPhoto_.clear();
    photoUrl_.clear();
    photoError_.clear();
    Q_EMIT openChanged();
    Q_EMIT photoChanged();
}

} // namespace quarrydex
