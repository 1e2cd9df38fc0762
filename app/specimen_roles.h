#pragma once
// The roles every list of species shares, numbered alike in each, so that one delegate reads a
// row the same way from the library, the favourites and the identification results.

#include "library/specimen.h"

#include <QByteArray>
#include <QHash>
#include <QVariant>

namespace quarrydex {

struct SpecimenRoles {
    enum Role {
        SpecimenIdRole = Qt::UserRole + 1,
        NameRole,
        CategoryRole,      // raw value, e.g. "mineral"
        CategoryTitleRole, // singular title, e.g. "Mineral"
        GroupRole,
        HardnessTextRole,
        ColorHexRole, // the species' first reference colour, "" when it has none
        FavoriteRole, // the species is among the user's favourites; each list answers it
        FirstOwnRole, // where a list's own roles begin
    };

    // A shared role's value for `specimen` (Qt::DisplayRole gives the name); an invalid
    // QVariant for FavoriteRole and for any role not shared.
    static QVariant data(const Specimen& specimen, int role);
    static QHash<int, QByteArray> names();
};

} // namespace quarrydex
