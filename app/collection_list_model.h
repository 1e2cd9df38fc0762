#pragma once
// The user's collection as the list screen shows it: one row per piece in the store's order
// (newest first), narrowed by a search, with the last deleted piece kept for one undo.
//
// The search matches the piece's name (or "Unnamed specimen"), its species' name, where it
// was found and its notes; case is folded and each word of the query must occur somewhere
// (in any of those texts, in any order). The rows follow the store: refresh() (called on
// every store change notice) works out the smallest change (rows removed, inserted or
// changed) so a view keeps its place.

#include "store/records.h"

#include <QAbstractListModel>
#include <QString>
#include <QVariantMap>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quarrydex {

class SampleSet;
class SpecimenLibrary;
class StoneStore;

class CollectionListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    // Rows shown (after the search) and pieces in the store.
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int totalCount READ totalCount NOTIFY countChanged)
    // "12 specimens" (the wording stays for one): the rows shown.
    Q_PROPERTY(QString countText READ countText NOTIFY countChanged)
    // Grows with every change of the collection, for bindings that call entry().
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged)
    // The last deleted piece can be brought back (with its photo).
    Q_PROPERTY(bool canUndoDelete READ canUndoDelete NOTIFY undoChanged)
    // "Deleted “Big amethyst”." while an undo is possible; "" otherwise.
    Q_PROPERTY(QString undoText READ undoText NOTIFY undoChanged)

public:
    enum Role {
        EntryIdRole = Qt::UserRole + 1,
        NameRole,        // the name, or "Unnamed specimen"
        SpeciesIdRole,   // "" for none
        SpeciesNameRole, // "" for none or an id the library lacks
        PhotoPathRole,   // absolute path of the photo file; "" for none
        LocationRole,
        DateTextRole, // "18 Oct 2026"
        IsSampleRole,
        PhotoFileRole,     // the bare file name in the photo folder; "" for none
        ColorHexRole,      // the species' first reference colour "#RRGGBB"; "" for none
        PhotoRevisionRole, // changes when the photo file is replaced under the same name
    };

    // `samples` may be null (no sample set). All must outlive the model.
    CollectionListModel(StoneStore& store, const SpecimenLibrary& library, const SampleSet* samples,
                        QObject* parent = nullptr);
    ~CollectionListModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString query() const { return query_; }
    void setQuery(const QString& query);
    int count() const { return static_cast<int>(rows_.size()); }
    int totalCount() const;
    QString countText() const;
    int revision() const { return revision_; }
    bool canUndoDelete() const { return undo_.has_value(); }
    QString undoText() const;

    // The display name of a piece: its name, or "Unnamed specimen" when empty.
    static QString displayName(const std::string& name);
    // Whether a piece matches a search (see above); an empty query matches everything.
    bool matches(const CollectionEntry& entry, const QString& query) const;

    // The id of the piece in a row; "" outside the rows.
    Q_INVOKABLE QString idAt(int row) const;
    // One piece for the detail screen: {exists: false} when no piece has that id, else
    // {exists, id, name, speciesId, speciesName, colorHex, acquisition (title), dateText,
    // location, notes, photoFile, photoRevision, photoPath, hasConfidence, confidenceText,
    // isSample, creditLine}.
    Q_INVOKABLE QVariantMap entry(const QString& id) const;
    // Deletes the piece (no question asked); it can be brought back with undoDelete().
    Q_INVOKABLE bool remove(const QString& id);
    // Brings the last deleted piece back with its photo. False when there is none.
    Q_INVOKABLE bool undoDelete();
    // Forgets the undo (the notice timed out).
    Q_INVOKABLE void dismissUndo();

    // Re-reads the store's collection.
    void refresh();

Q_SIGNALS:
    void queryChanged();
    void countChanged();
    void revisionChanged();
    void undoChanged();

private:
    struct Undo {
        CollectionEntry entry;
        std::optional<std::filesystem::path> keptPhoto; // a link to the photo file
        std::optional<std::string> photoBytes;          // when no link could be made
    };

    std::vector<CollectionEntry> filtered() const;
    QString speciesName(const std::optional<std::string>& id) const;
    QString colorHex(const std::optional<std::string>& id) const;
    QString photoRevision(const std::optional<std::string>& file) const;
    std::filesystem::path undoFolder() const;
    void forgetUndo();

    StoneStore& store_;
    const SpecimenLibrary& library_;
    const SampleSet* samples_;
    QString query_;
    std::vector<CollectionEntry> rows_;
    int revision_ = 0;
    std::optional<Undo> undo_;
};

} // namespace quarrydex
