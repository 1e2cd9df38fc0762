#include "app/favorites_list_model.h"

#include <algorithm>

namespace quarrydex {

namespace {

QString qs(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

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
    const Specimen& s = *row->key;
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return qs(s.name);
    case SpecimenIdRole:
        return qs(s.id);
    case CategoryTitleRole:
        return qs(info(s.category).singular);
    case HardnessTextRole:
        return qs(s.hardnessText());
    case ColorHexRole:
        return s.colorHex.empty() ? QString() : qs(s.colorHex.front());
    case FavoriteRole:
        return true;
    default:
        return {};
    }
}

QHash<int, QByteArray> FavoritesListModel::roleNames() const {
    return {
        {SpecimenIdRole, "specimenId"},       {NameRole, "name"},
        {CategoryTitleRole, "categoryTitle"}, {HardnessTextRole, "hardnessText"},
        {ColorHexRole, "colorHex"},           {FavoriteRole, "favorite"},
    };
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
