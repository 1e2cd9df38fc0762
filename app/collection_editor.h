#pragma once
// The editor sheet of a collection piece: a working copy of the entry that changes nothing
// until save(). One editor serves the whole window: any screen opens it (by hand, for a new
// piece, for a library species or an identification result, or on an existing piece) and
// the window shows it while isOpen is true.
//
// A chosen or dropped photo is normalised to a JPEG of at most 1600 pixels on a worker
// thread and kept as newPhoto (with a preview file for the sheet); save() normalises it
// once more the same way, writes it as the photo folder's "<entry id>.jpg" (so a replaced
// photo keeps the same file name), then adds or updates the entry.

#include "store/records.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>
#include <QVariantList>
#include <memory>
#include <optional>
#include <string>

class QThread;

namespace quarrydex {

class SpecimenLibrary;
class StoneStore;

class CollectionEditor : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY openChanged)
    Q_PROPERTY(bool isNew READ isNew NOTIFY openChanged)
    // "Add to My Collection" or "Edit Specimen".
    Q_PROPERTY(QString title READ title NOTIFY openChanged)
    // The id of the entry being edited (also of a new one).
    Q_PROPERTY(QString entryId READ entryId NOTIFY openChanged)

    Q_PROPERTY(QString name READ name WRITE setName NOTIFY entryChanged)
    // A library species id; "" for "Not sure / not in library".
    Q_PROPERTY(QString speciesId READ speciesId WRITE setSpeciesId NOTIFY entryChanged)
    // The species' name, or "Not sure / not in library".
    Q_PROPERTY(QString speciesName READ speciesName NOTIFY entryChanged)
    // An acquisition raw value ("found", "bought", "gift", "traded", or an unknown word kept).
    Q_PROPERTY(QString acquisition READ acquisition WRITE setAcquisition NOTIFY entryChanged)
    // The date added as "yyyy-MM-dd" (local); dateValid is false for text that is no date.
    Q_PROPERTY(QString dateText READ dateText WRITE setDateText NOTIFY entryChanged)
    Q_PROPERTY(bool dateValid READ dateValid NOTIFY entryChanged)
    Q_PROPERTY(QString location READ location WRITE setLocation NOTIFY entryChanged)
    Q_PROPERTY(QString notes READ notes WRITE setNotes NOTIFY entryChanged)
    // The match share the piece is saved with (from an identification result).
    Q_PROPERTY(bool hasConfidence READ hasConfidence NOTIFY entryChanged)
    Q_PROPERTY(QString confidenceText READ confidenceText NOTIFY entryChanged)

    // The photo shown: the new one once chosen, else the entry's stored one.
    Q_PROPERTY(bool hasPhoto READ hasPhoto NOTIFY photoChanged)
    Q_PROPERTY(QUrl photoUrl READ photoUrl NOTIFY photoChanged)
    // A photo is being prepared or saved.
    Q_PROPERTY(bool working READ working NOTIFY workingChanged)
    Q_PROPERTY(QString photoError READ photoError NOTIFY photoChanged)

    // [{id, name}]: "Not sure / not in library" (id "") first, then the library by name.
    Q_PROPERTY(QVariantList speciesChoices READ speciesChoices CONSTANT)
    // [{raw, title}] of the four acquisitions in picker order.
    Q_PROPERTY(QVariantList acquisitionChoices READ acquisitionChoices CONSTANT)

public:
    static constexpr int photoMaxPixel = 1600;

    CollectionEditor(StoneStore& store, const SpecimenLibrary& library, QObject* parent = nullptr);
    ~CollectionEditor() override;

    bool isOpen() const { return open_; }
    bool isNew() const { return isNew_; }
    QString title() const;
    QString entryId() const;
    QString name() const;
    void setName(const QString& name);
    QString speciesId() const;
    void setSpeciesId(const QString& id);
    QString speciesName() const;
    QString acquisition() const;
    void setAcquisition(const QString& raw);
    QString dateText() const { return dateText_; }
    void setDateText(const QString& text);
    bool dateValid() const;
    QString location() const;
    void setLocation(const QString& location);
    QString notes() const;
    void setNotes(const QString& notes);
    bool hasConfidence() const { return entry_.confidence.has_value(); }
    QString confidenceText() const;
    bool hasPhoto() const { return !photoUrl_.isEmpty(); }
    QUrl photoUrl() const { return photoUrl_; }
    bool working() const { return worker_ != nullptr; }
    QString photoError() const { return photoError_; }
    QVariantList speciesChoices() const { return speciesChoices_; }
    QVariantList acquisitionChoices() const;
    // The working copy, for C++ callers and tests.
    const CollectionEntry& entry() const { return entry_; }
    // The prepared new photo (JPEG bytes); empty when none was chosen.
    const std::string& newPhoto() const { return newPhoto_; }

    // The choices whose name contains `text` (case folded), names beginning with it first;
    // every choice for an empty text.
    Q_INVOKABLE QVariantList findSpecies(const QString& text) const;

    // A new piece, empty.
    Q_INVOKABLE void openNew();
    // A new piece of a library species: named after it, with the session photo when
    // `photo` holds one (an identification's), and the match share when `confidence` is
    // in 0..1 (from a result; pass -1 otherwise).
    Q_INVOKABLE void openForSpecies(const QString& specimenId, double confidence,
                                    const QByteArray& photo);
    // An existing piece; false when there is none with that id.
    Q_INVOKABLE bool openEdit(const QString& entryId);
    // Reads an image file (a path or file URL, from the open dialog or a drop) and prepares
    // it as the new photo on a worker thread.
    Q_INVOKABLE bool choosePhotoFile(const QUrl& file);
    // The same for image bytes (a paste, a drop of data).
    Q_INVOKABLE bool choosePhotoData(const QByteArray& data);
    // Saves (see above); the sheet closes when done. False when nothing is open or a photo
    // is still being prepared, or the date is not a date.
    Q_INVOKABLE bool save();
    // Closes without changing anything.
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void openChanged();
    void entryChanged();
    void photoChanged();
    void workingChanged();
    // After save() added or updated the entry.
    void saved(const QString& entryId);

private:
    void begin(CollectionEntry entry, bool isNew);
    void close();
    void setPhotoError(const QString& message);
    // Normalises `bytes` (or the file `path`, when given) on a worker and takes the result.
    void preparePhoto(QByteArray bytes, QString path);
    void finishSave(std::optional<std::string> photoFile, QString failure);

    StoneStore& store_;
    const SpecimenLibrary& library_;
    QVariantList speciesChoices_;

    bool open_ = false;
    bool isNew_ = true;
    CollectionEntry entry_;
    QString dateText_;
    std::string newPhoto_;
    QUrl photoUrl_;
    QString photoError_;
    int previewCount_ = 0;
    std::unique_ptr<QTemporaryDir> previews_;
    QThread* worker_ = nullptr;
    int generation_ = 0;  // a photo prepared for an earlier opening is dropped
    bool saving_ = false; // a photo is being written by save(): the sheet cannot be cancelled
};

} // namespace quarrydex
