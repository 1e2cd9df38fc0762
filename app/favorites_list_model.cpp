#include "app/favorites_list_model.h"

#include "app/qt_values.h"

#include <algorithm>

namespace quarrydex {

FavoritesListModel::FavoritesListModel(const SpecimenLibrary& library, StoneStore& store,
                                       QObject* parent)
    : SyncedListModel<FavoriteRow>(parent), library_(library), store_(store) {
    refresh();
    observer_ = store_.observe([this] { refresh(); });
}

FavoritesListModel::~FavoritesListModel() {
    store_.unobserve(observer_);
}

QVariant FavoritesListModel::data(const QModelIndex& index, int role) const {
    const FavoriteRow* row = rowAt(index);
    if (!row) {
        return {};
    }
    return role == FavoriteRole ? QVariant(true) : SpecimenRoles::data(*row->key, role);
}

QHash<int, QByteArray> FavoritesListModel::roleNames() const {
    return SpecimenRoles::names();
}

void FavoritesListModel::refresh() {
    std::vector<FavoriteRow> next;
    for (const std::string& id : store_.favorites()) {
        if (const Specimen* s = library_.specimen(id)) {
            next.push_back({s});
        }
    }
    // The library's own order is by name; its records live in one array.
    const Specimen* first = library_.specimens().data();
    std::sort(next.begin(), next.end(), [first](const FavoriteRow& a, const FavoriteRow& b) {
        return (a.key - first) < (b.key - first);
    });
    next.erase(std::unique(next.begin(), next.end()), next.end());
    const int before = count();
    replaceRows(std::move(next));
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

QString FavoritesListModel::idAt(int row) const {
    const auto* r = rowAt(index(row));
    return r ? qs(r->key->id) : QString();
}

} // namespace quarrydex
