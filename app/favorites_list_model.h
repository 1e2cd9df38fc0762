#pragma once
// The Favorites screen's list: the starred species that the library knows, sorted by name
// (library order). Ids the library no longer has are skipped, never shown as empty rows.
//
// Follows the store's change notices by itself; the library and the store must outlive the
// model. Main thread only.

#include "app/specimen_roles.h"
#include "app/synced_list_model.h"
#include "library/specimen_library.h"
#include "store/stone_store.h"

namespace quarrydex {

struct FavoriteRow {
    const Specimen* key = nullptr;
    bool operator==(const FavoriteRow&) const = default;
};

class FavoritesListModel : public SyncedListModel<FavoriteRow> {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    // The species roles (SpecimenRoles); FavoriteRole is always true.
    enum Role {
        SpecimenIdRole = SpecimenRoles::SpecimenIdRole,
        NameRole = SpecimenRoles::NameRole,
        CategoryTitleRole = SpecimenRoles::CategoryTitleRole,
        HardnessTextRole = SpecimenRoles::HardnessTextRole,
        ColorHexRole = SpecimenRoles::ColorHexRole,
        FavoriteRole = SpecimenRoles::FavoriteRole,
    };
    Q_ENUM(Role)

    FavoritesListModel(const SpecimenLibrary& library, StoneStore& store,
                       QObject* parent = nullptr);
    ~FavoritesListModel() override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;
    // The species id of a row; "" outside the list.
    Q_INVOKABLE QString idAt(int row) const;

Q_SIGNALS:
    void countChanged();

private:
    void refresh();

    const SpecimenLibrary& library_;
    StoneStore& store_;
    StoneStore::ObserverId observer_ = 0;
};

} // namespace quarrydex
