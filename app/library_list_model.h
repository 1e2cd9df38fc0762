#pragma once
// The Library screen's list: the species that match the search text within the chosen
// category, in library order (by name), each with its favourite star, plus what the screen
// shows around the list: the category choices with their counts, the count line, the
// sentence for a search that finds nothing, and the stone of the day.
//
// Reads the library (shared, read-only) and the store's favourites; follows the store's
// change notices by itself. Both must outlive the model. Main thread only.

#include "app/specimen_roles.h"
#include "app/synced_list_model.h"
#include "library/specimen_library.h"
#include "store/stone_store.h"

#include <QString>
#include <QTimer>
#include <QVariantList>
#include <QVariantMap>

#include <optional>

namespace quarrydex {

struct LibraryRow {
    const Specimen* key = nullptr; // a species of the library; also the row's identity
    bool favorite = false;
    bool operator==(const LibraryRow&) const = default;
};

class LibraryListModel : public SyncedListModel<LibraryRow> {
    Q_OBJECT
    // The search text as typed; trimmed and case-folded by the search itself.
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    // Raw value of the chosen category; "" for all.
    Q_PROPERTY(QString category READ category WRITE setCategory NOTIFY categoryChanged)
    // The same choice as a position in `categories` (0 is all).
    Q_PROPERTY(int categoryIndex READ categoryIndex WRITE setCategoryIndex NOTIFY categoryChanged)
    // [{raw, label, symbol, count}]: "All (N)" first, then each category as "Minerals (N)".
    Q_PROPERTY(QVariantList categories READ categories CONSTANT)
    // True while a search text or a category narrows the list (the screen then puts the
    // stone of the day away).
    Q_PROPERTY(bool narrowed READ narrowed NOTIFY narrowedChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    // "12 species" (also "1 species").
    Q_PROPERTY(QString countText READ countText NOTIFY countChanged)
    // The sentence shown instead of an empty list for a search that finds nothing; "" otherwise.
    Q_PROPERTY(QString emptyMessage READ emptyMessage NOTIFY countChanged)
    // {specimenId, name, categoryTitle, group, summary, colorHex, hardnessText} of today's
    // species; empty when the library is. Changes at local midnight.
    Q_PROPERTY(QVariantMap stoneOfTheDay READ stoneOfTheDay NOTIFY stoneOfTheDayChanged)

public:
    // The species roles (SpecimenRoles), each row's favourite star among them.
    enum Role {
        SpecimenIdRole = SpecimenRoles::SpecimenIdRole,
        NameRole = SpecimenRoles::NameRole,
        CategoryTitleRole = SpecimenRoles::CategoryTitleRole,
        GroupRole = SpecimenRoles::GroupRole,
        HardnessTextRole = SpecimenRoles::HardnessTextRole,
        ColorHexRole = SpecimenRoles::ColorHexRole,
        FavoriteRole = SpecimenRoles::FavoriteRole,
    };
    Q_ENUM(Role)

    LibraryListModel(const SpecimenLibrary& library, StoneStore& store, QObject* parent = nullptr);
    ~LibraryListModel() override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString query() const { return query_; }
    void setQuery(const QString& query);
    QString category() const;
    void setCategory(const QString& raw);
    int categoryIndex() const;
    void setCategoryIndex(int index);
    QVariantList categories() const;
    bool narrowed() const { return category_.has_value() || !query_.trimmed().isEmpty(); }
    QString countText() const;
    QString emptyMessage() const;
    QVariantMap stoneOfTheDay() const { return stoneOfTheDay_; }

    // Position of a species in the list; -1 when it is not listed.
    Q_INVOKABLE int indexOf(const QString& specimenId) const;
    // The species id of a row; "" outside the list.
    Q_INVOKABLE QString idAt(int row) const;

Q_SIGNALS:
    void queryChanged();
    void categoryChanged();
    void narrowedChanged();
    void countChanged();
    void stoneOfTheDayChanged();

private:
    void refresh();
    void refreshStoneOfTheDay();

    const SpecimenLibrary& library_;
    StoneStore& store_;
    StoneStore::ObserverId observer_ = 0;
    QString query_;
    std::optional<SpecimenCategory> category_;
    QString shownMessage_; // emptyMessage() as last announced
    QVariantMap stoneOfTheDay_;
    QTimer midnight_;
};

} // namespace quarrydex
