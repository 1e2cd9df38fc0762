#pragma once
// The History screen's list: one row per past identification in the store's order (newest
// first), ready to show: the photo file (or, without one, the top species' colour), the top
// species' name or "No match", the confidence level's title, the clue count and the date.
// A search text narrows the rows (top species, level, clues and date); entry() gives the
// detail of one identification.
//
// A clue is one line of the entry's answers, the "Photo color" line included: the same lines
// the detail lists under "Your clues".
//
// Follows the store's change notices by itself; the library and the store must outlive the
// model. Main thread only.

#include "app/synced_list_model.h"
#include "library/specimen_library.h"
#include "store/stone_store.h"

#include <QString>
#include <QVariantMap>

namespace quarrydex {

struct HistoryRow {
    QString key; // the entry's id
    QString photoFile;
    QString topSpecimenId; // "" when no stored result names a species the library knows
    QString topName;       // the top species' name, or "No match"
    QString colorHex;      // the top species' first reference colour, or ""
    QString levelTitle;
    int clueCount = 0;
    double date = 0;    // seconds since 1970
    QString searchText; // lower case, what the search looks in
    bool operator==(const HistoryRow&) const = default;
};

class HistoryListModel : public SyncedListModel<HistoryRow> {
    Q_OBJECT
    // Narrows the rows: case-insensitive containment in the top species' name, the level's
    // title, the clue lines and the date; blanks around it are ignored.
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    // Entries in the store, whatever the search.
    Q_PROPERTY(int totalCount READ totalCount NOTIFY totalCountChanged)
    // Grows with every change of the store, for bindings that call entry().
    Q_PROPERTY(int revision READ revision NOTIFY revisionChanged)

public:
    enum Role {
        EntryIdRole = Qt::UserRole + 1,
        PhotoFileRole,
        TopSpecimenIdRole,
        TopNameRole,
        ColorHexRole,
        LevelTitleRole,
        ClueCountRole,
        CluesTextRole, // "3 clue(s)"
        DateTextRole,
        DateRole, // QDateTime
    };
    Q_ENUM(Role)

    HistoryListModel(const SpecimenLibrary& library, StoneStore& store, QObject* parent = nullptr);
    ~HistoryListModel() override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString query() const { return query_; }
    void setQuery(const QString& query);
    int totalCount() const { return static_cast<int>(store_.history().size()); }
    int revision() const { return revision_; }

    // One identification for its detail screen: {found, entryId, photoFile, dateText,
    // levelTitle, clues: [lines], matches: [{specimenId, name, hardnessText, colorHex,
    // percentText, favorite}]}. Matches list only species the library still knows, in stored
    // order, with the share they had. {found: false} for an unknown id.
    Q_INVOKABLE QVariantMap entry(const QString& entryId) const;
    // Position of an entry among the rows shown; -1 when it is not shown.
    Q_INVOKABLE int indexOf(const QString& entryId) const;
    // The entry id of a row; "" outside the list.
    Q_INVOKABLE QString idAt(int row) const;

    // "23 Nov 2026, 14:05" in local time.
    static QString dateText(double unixSeconds);

Q_SIGNALS:
    void queryChanged();
    void countChanged();
    void totalCountChanged();
    void revisionChanged();

private:
    void rebuild();    // from the store
    void applyQuery(); // the rows shown from all_
    HistoryRow rowFor(const HistoryEntry& entry) const;

    const SpecimenLibrary& library_;
    StoneStore& store_;
    StoneStore::ObserverId observer_ = 0;
    QString query_;
    std::vector<HistoryRow> all_; // every entry, store order
    int revision_ = 0;
    int total_ = 0;
};

} // namespace quarrydex
