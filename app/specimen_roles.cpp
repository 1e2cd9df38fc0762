#include "app/specimen_roles.h"

#include "app/qt_values.h"

namespace quarrydex {

QVariant SpecimenRoles::data(const Specimen& s, int role) {
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return qs(s.name);
    case SpecimenIdRole:
        return qs(s.id);
    case CategoryRole:
        return qs(info(s.category).rawValue);
    case CategoryTitleRole:
        return qs(info(s.category).singular);
    case GroupRole:
        return qs(s.group);
    case HardnessTextRole:
        return qs(s.hardnessText());
    case ColorHexRole:
        return s.colorHex.empty() ? QString() : qs(s.colorHex.front());
    default:
        return {};
    }
}

QHash<int, QByteArray> SpecimenRoles::names() {
    return {
        {SpecimenIdRole, "specimenId"}, {NameRole, "name"},
        {CategoryRole, "category"},     {CategoryTitleRole, "categoryTitle"},
        {GroupRole, "group"},           {HardnessTextRole, "hardnessText"},
        {ColorHexRole, "colorHex"},     {FavoriteRole, "favorite"},
    };
}

} // namespace quarrydex
