#include "app/collection_list_model.h"

#include "app/qt_values.h"

#include "library/specimen_library.h"
#include "samples/sample_set.h"
#include "store/acquisition.h"
#include "store/stone_store.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <cmath>
#include <system_error>
#include <unistd.h>

namespace quarrydex {
namespace fs = std::filesystem;

namespace {

QString dateText(Timestamp t) {
    return QLocale(QLocale::English)
        .toString(toDateTime(t).toLocalTime(), QStringLiteral("d MMM yyyy"));
}

bool isBareName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

} // namespace

CollectionListModel::CollectionListModel(StoneStore& store, const SpecimenLibrary& library,
                                         const SampleSet* samples, QObject* parent)
    : QAbstractListModel(parent), store_(store), library_(library), samples_(samples) {
    // Photos kept for an undo by an earlier run are of no use any more.
    std::error_code ec;
    fs::remove_all(undoFolder(), ec);
    rows_ = filtered();
}

CollectionListModel::~CollectionListModel() = default;

fs::path CollectionListModel::undoFolder() const {
    return store_.root() / ".undo";
}

int CollectionListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QString CollectionListModel::displayName(const std::string& name) {
    return name.empty() ? QStringLiteral("Unnamed specimen") : qs(name);
}

QString CollectionListModel::speciesName(const std::optional<std::string>& id) const {
    const Specimen* specimen = id ? library_.specimen(*id) : nullptr;
    return specimen ? qs(specimen->name) : QString();
}

QString CollectionListModel::colorHex(const std::optional<std::string>& id) const {
    const Specimen* specimen = id ? library_.specimen(*id) : nullptr;
    return specimen && !specimen->colorHex.empty() ? qs(specimen->colorHex.front()) : QString();
}

QString CollectionListModel::photoRevision(const std::optional<std::string>& file) const {
    if (!file || !isBareName(*file)) {
        return {};
    }
    std::error_code ec;
    auto written = fs::last_write_time(store_.photosFolder() / *file, ec);
    return ec ? QString() : QString::number(written.time_since_epoch().count());
}

QVariant CollectionListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const CollectionEntry& entry = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return displayName(entry.name);
    case EntryIdRole:
        return qs(entry.id.text());
    case SpeciesIdRole:
        return entry.specimenID ? qs(*entry.specimenID) : QString();
    case SpeciesNameRole:
        return speciesName(entry.specimenID);
    case PhotoPathRole:
        return entry.photoFile && isBareName(*entry.photoFile)
                   ? qs((store_.photosFolder() / *entry.photoFile).string())
                   : QString();
    case LocationRole:
        return qs(entry.location);
    case DateTextRole:
        return dateText(entry.dateAdded);
    case IsSampleRole:
        return entry.isSample.value_or(false);
    case PhotoFileRole:
        return entry.photoFile && isBareName(*entry.photoFile) ? qs(*entry.photoFile) : QString();
    case ColorHexRole:
        return colorHex(entry.specimenID);
    case PhotoRevisionRole:
        return photoRevision(entry.photoFile);
    default:
        return {};
    }
}

QHash<int, QByteArray> CollectionListModel::roleNames() const {
    return {{EntryIdRole, "entryId"},
            {NameRole, "name"},
            {SpeciesIdRole, "speciesId"},
            {SpeciesNameRole, "speciesName"},
            {PhotoPathRole, "photoPath"},
            {LocationRole, "location"},
            {DateTextRole, "dateText"},
            {IsSampleRole, "isSample"},
            {PhotoFileRole, "photoFile"},
            {ColorHexRole, "colorHex"},
            {PhotoRevisionRole, "photoRevision"}};
}

void CollectionListModel::setQuery(const QString& query) {
    if (query == query_) {
        return;
    }
    query_ = query;
    Q_EMIT queryChanged();
    refresh();
}

int CollectionListModel::totalCount() const {
    return static_cast<int>(store_.collection().size());
}

QString CollectionListModel::countText() const {
    // The count line's fixed wording, "%1 specimens", also for one.
    return QStringLiteral("%1 specimens").arg(count());
}

bool CollectionListModel::matches(const CollectionEntry& entry, const QString& query) const {
    const QStringList words = query.toCaseFolded().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (words.isEmpty()) {
        return true;
    }
    const QString haystack =
        (displayName(entry.name) + QLatin1Char('\n') + speciesName(entry.specimenID) +
         QLatin1Char('\n') + qs(entry.location) + QLatin1Char('\n') + qs(entry.notes))
            .toCaseFolded();
    return std::all_of(words.begin(), words.end(),
                       [&](const QString& word) { return haystack.contains(word); });
}

std::vector<CollectionEntry> CollectionListModel::filtered() const {
    std::vector<CollectionEntry> rows;
    for (const CollectionEntry& entry : store_.collection()) {
        if (matches(entry, query_)) {
            rows.push_back(entry);
        }
    }
    return rows;
}

void CollectionListModel::refresh() {
    std::vector<CollectionEntry> next = filtered();
    const int oldCount = count();
    bool changed = false;

    // Rows equal by id at both ends stay; the middle is replaced.
    std::size_t prefix = 0;
    while (prefix < rows_.size() && prefix < next.size() && rows_[prefix].id == next[prefix].id) {
        ++prefix;
    }
    std::size_t suffix = 0;
    while (suffix < rows_.size() - prefix && suffix < next.size() - prefix &&
           rows_[rows_.size() - 1 - suffix].id == next[next.size() - 1 - suffix].id) {
        ++suffix;
    }
    const std::size_t oldMiddle = rows_.size() - prefix - suffix;
    const std::size_t newMiddle = next.size() - prefix - suffix;
    if (oldMiddle > 0) {
        beginRemoveRows({}, static_cast<int>(prefix), static_cast<int>(prefix + oldMiddle - 1));
        rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(prefix),
                    rows_.begin() + static_cast<std::ptrdiff_t>(prefix + oldMiddle));
        endRemoveRows();
        changed = true;
    }
    if (newMiddle > 0) {
        beginInsertRows({}, static_cast<int>(prefix), static_cast<int>(prefix + newMiddle - 1));
        rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(prefix),
                     next.begin() + static_cast<std::ptrdiff_t>(prefix),
                     next.begin() + static_cast<std::ptrdiff_t>(prefix + newMiddle));
        endInsertRows();
        changed = true;
    }
    // The rows kept may have been edited.
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (!(rows_[i] == next[i])) {
            rows_[i] = next[i];
            QModelIndex at = index(static_cast<int>(i));
            Q_EMIT dataChanged(at, at);
            changed = true;
        }
    }
    if (oldCount != count() || changed) {
        Q_EMIT countChanged();
    }
    ++revision_;
    Q_EMIT revisionChanged();
}

QString CollectionListModel::idAt(int row) const {
    if (row < 0 || row >= count()) {
        return {};
    }
    return qs(rows_[static_cast<std::size_t>(row)].id.text());
}

QVariantMap CollectionListModel::entry(const QString& id) const {
    const std::string wanted = id.toStdString();
    const auto& collection = store_.collection();
    auto found = std::find_if(collection.begin(), collection.end(),
                              [&](const CollectionEntry& e) { return e.id.text() == wanted; });
    QVariantMap map;
    map.insert(QStringLiteral("exists"), found != collection.end());
    if (found == collection.end()) {
        return map;
    }
    const CollectionEntry& e = *found;
    map.insert(QStringLiteral("id"), qs(e.id.text()));
    map.insert(QStringLiteral("name"), displayName(e.name));
    map.insert(QStringLiteral("speciesId"), e.specimenID ? qs(*e.specimenID) : QString());
    map.insert(QStringLiteral("speciesName"), speciesName(e.specimenID));
    map.insert(QStringLiteral("colorHex"), colorHex(e.specimenID));
    map.insert(QStringLiteral("photoFile"),
               e.photoFile && isBareName(*e.photoFile) ? qs(*e.photoFile) : QString());
    map.insert(QStringLiteral("photoRevision"), photoRevision(e.photoFile));
    QString acquired;
    if (std::optional<Acquisition> a = Acquisition::fromRaw(e.acquisition)) {
        acquired = qs(a->title());
    } else if (!e.acquisition.empty()) {
        // A word this version does not know is shown as stored, capitalised.
        acquired = qs(e.acquisition);
        acquired[0] = acquired[0].toUpper();
    }
    map.insert(QStringLiteral("acquisition"), acquired);
    map.insert(QStringLiteral("dateText"), dateText(e.dateAdded));
    map.insert(QStringLiteral("location"), qs(e.location));
    map.insert(QStringLiteral("notes"), qs(e.notes));
    map.insert(QStringLiteral("photoPath"),
               e.photoFile && isBareName(*e.photoFile)
                   ? qs((store_.photosFolder() / *e.photoFile).string())
                   : QString());
    map.insert(QStringLiteral("hasConfidence"), e.confidence.has_value());
    map.insert(QStringLiteral("confidenceText"),
               e.confidence ? QString::number(static_cast<int>(
                                  std::round(std::clamp(*e.confidence, 0.0, 0.95) * 100))) +
                                  QLatin1Char('%')
                            : QString());
    bool isSample = e.isSample.value_or(false);
    map.insert(QStringLiteral("isSample"), isSample);
    QString credit;
    if (isSample && samples_ && e.sampleID) {
        if (const SamplePhoto* photo = samples_->sample(*e.sampleID)) {
            credit = qs(photo->creditLine());
        }
    }
    map.insert(QStringLiteral("creditLine"), credit);
    return map;
}

QString CollectionListModel::undoText() const {
    if (!undo_) {
        return {};
    }
    return QStringLiteral("Deleted “") + displayName(undo_->entry.name) + QStringLiteral("”.");
}

void CollectionListModel::forgetUndo() {
    if (undo_ && undo_->keptPhoto) {
        std::error_code ec;
        fs::remove(*undo_->keptPhoto, ec);
    }
    undo_.reset();
}

bool CollectionListModel::remove(const QString& id) {
    const std::string wanted = id.toStdString();
    const auto& collection = store_.collection();
    auto found = std::find_if(collection.begin(), collection.end(),
                              [&](const CollectionEntry& e) { return e.id.text() == wanted; });
    if (found == collection.end()) {
        return false;
    }
    forgetUndo();
    Undo undo{*found, std::nullopt, std::nullopt};
    if (undo.entry.photoFile && isBareName(*undo.entry.photoFile)) {
        // A second name for the photo file keeps it when the store lets it go; taking it is
        // one link, so nothing slow happens here.
        std::error_code ec;
        fs::create_directories(undoFolder(), ec);
        fs::path kept = undoFolder() / *undo.entry.photoFile;
        fs::remove(kept, ec);
        if (::link((store_.photosFolder() / *undo.entry.photoFile).c_str(), kept.c_str()) == 0) {
            undo.keptPhoto = kept;
        } else {
            undo.photoBytes = store_.photoData(undo.entry.photoFile);
        }
    }
    undo_ = std::move(undo);
    store_.deleteEntry(undo_->entry.id);
    Q_EMIT undoChanged();
    return true;
}

bool CollectionListModel::undoDelete() {
    if (!undo_) {
        return false;
    }
    Undo undo = std::move(*undo_);
    undo_.reset();
    CollectionEntry entry = undo.entry;
    if (entry.photoFile) {
        fs::path photo = store_.photosFolder() / *entry.photoFile;
        bool back = false;
        if (undo.keptPhoto) {
            std::error_code ec;
            fs::create_directories(store_.photosFolder(), ec);
            fs::rename(*undo.keptPhoto, photo, ec);
            back = !ec;
        } else if (undo.photoBytes) {
            if (std::optional<std::string> stored = store_.storePhoto(*undo.photoBytes, entry.id)) {
                entry.photoFile = stored;
                back = true;
            }
        }
        if (!back) {
            std::error_code ec;
            back = fs::exists(photo, ec); // still there (another record shares it)
        }
        if (!back) {
            entry.photoFile.reset();
        }
    }
    // Back into its place by date (the collection is kept newest first).
    store_.merge({std::move(entry)}, {}, {});
    Q_EMIT undoChanged();
    return true;
}

void CollectionListModel::dismissUndo() {
    if (undo_) {
        forgetUndo();
        Q_EMIT undoChanged();
    }
}

} // namespace quarrydex
