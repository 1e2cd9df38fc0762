#include "backup/backup_archive.h"
#include "library/specimen_library.h"
#include "store/acquisition.h"
#include "store/stone_store.h"

namespace quarrydex {

std::string BackupCodec::escapeCSV(std::string_view field) {
    if (field.find_first_of(",\"\n") == std::string_view::npos) {
        return std::string(field);
    }
    std::string out = "\"";
    for (char c : field) {
        out += c;
        if (c == '"') {
            out += '"';
        }
    }
    out += '"';
    return out;
}

std::string BackupCodec::csv(const StoneStore& store, const SpecimenLibrary& library) {
    std::string out = "Name,Species,Category,Acquired,Date,Location,Notes\n";
    for (const CollectionEntry& entry : store.collection()) {
        const Specimen* species = entry.specimenID ? library.specimen(*entry.specimenID) : nullptr;
        std::optional<Acquisition> acquisition = Acquisition::fromRaw(entry.acquisition);
        // An acquisition word this version does not know reads as "Found", the default.
        std::string acquired = acquisition ? acquisition->title() : "Found";
        std::string date = entry.dateAdded.utcDate();
        const std::string_view fields[] = {
            entry.name,
            species ? std::string_view(species->name) : std::string_view(),
            species ? info(species->category).singular : std::string_view(),
            acquired,
            date,
            entry.location,
            entry.notes,
        };
        for (std::size_t i = 0; i < std::size(fields); ++i) {
            if (i > 0) {
                out += ',';
            }
            out += escapeCSV(fields[i]);
        }
        out += '\n';
    }
    return out;
}

} // namespace quarrydex
