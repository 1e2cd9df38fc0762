#include "app/history_list_model.h"

#include "app/qt_values.h"

#include "identify/matcher.h"

#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <QVariantList>

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace quarrydex {

namespace {

QString firstColor(const Specimen& s) {
    return s.colorHex.empty() ? QString() : qs(s.colorHex.front());
}

// The share a result had, as the identify screen showed it: a whole percentage, never above 95.
QString percentText(double confidence) {
    const double share = std::clamp(confidence, 0.0, 0.95);
    return QString::number(static_cast<int>(std::round(share * 100))) + QLatin1Char('%');
}

} // namespace

HistoryListModel::HistoryListModel(const SpecimenLibrary& library, StoneStore& store,
                                   QObject* parent)
    : SyncedListModel<HistoryRow>(parent), library_(library), store_(store) {
    rebuild();
    observer_ = store_.observe([this] { rebuild(); });
}

HistoryListModel::~HistoryListModel() {
    store_.unobserve(observer_);
}

QString HistoryListModel::dateText(double unixSeconds) {
    const QDateTime when = QDateTime::fromMSecsSinceEpoch(
        static_cast<qint64>(std::llround(unixSeconds * 1000)), Qt::LocalTime);
    return QLocale::c().toString(when, QStringLiteral("d MMM yyyy, HH:mm"));
}

QVariant HistoryListModel::data(const QModelIndex& index, int role) const {
    const HistoryRow* row = rowAt(index);
    if (!row) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case TopNameRole:
        return row->topName;
    case EntryIdRole:
        return row->key;
    case PhotoFileRole:
        return row->photoFile;
    case TopSpecimenIdRole:
        return row->topSpecimenId;
    case ColorHexRole:
        return row->colorHex;
    case LevelTitleRole:
        return row->levelTitle;
    case ClueCountRole:
        return row->clueCount;
    case CluesTextRole:
        return QStringLiteral("%1 clue(s)").arg(row->clueCount);
    case DateTextRole:
        return dateText(row->date);
    case DateRole:
        return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::llround(row->date * 1000)));
    default:
        return {};
    }
}

QHash<int, QByteArray> HistoryListModel::roleNames() const {
    return {
        {EntryIdRole, "entryId"},
        {PhotoFileRole, "photoFile"},
        {TopSpecimenIdRole, "topSpecimenId"},
        {TopNameRole, "topName"},
        {ColorHexRole, "colorHex"},
        {LevelTitleRole, "levelTitle"},
        {ClueCountRole, "clueCount"},
        {CluesTextRole, "cluesText"},
        {DateTextRole, "dateText"},
        {DateRole, "date"},
    };
}

void HistoryListModel::setQuery(const QString& query) {
    if (query == query_) {
        return;
    }
    query_ = query;
    applyQuery();
    Q_EMIT queryChanged();
}

HistoryRow HistoryListModel::rowFor(const HistoryEntry& entry) const {
    HistoryRow row;
    row.key = qs(entry.id.text());
    row.photoFile = entry.photoFile ? qs(*entry.photoFile) : QString();
    row.topName = QStringLiteral("No match");
    for (const HistoryEntry::Result& result : entry.results) {
        if (const Specimen* s = library_.specimen(result.specimenID)) {
            row.topSpecimenId = qs(s->id);
            row.topName = qs(s->name);
            row.colorHex = firstColor(*s);
            break;
        }
    }
    if (auto level = confidenceLevelFromRaw(entry.level)) {
        row.levelTitle = qs(title(*level));
    }
    row.clueCount = static_cast<int>(entry.answers.size());
    row.date = entry.date.unixSeconds();

    QStringList words{row.topName, row.levelTitle, dateText(row.date)};
    for (const std::string& line : entry.answers) {
        words.append(qs(line));
    }
    row.searchText = words.join(QLatin1Char('\n')).toLower();
    return row;
}

void HistoryListModel::rebuild() {
    // Most store changes (a star, a collection piece) leave the history as it was.
    if (store_.history() == shownHistory_) {
        ++revision_;
        Q_EMIT revisionChanged();
        return;
    }
    shownHistory_ = store_.history();
    std::vector<HistoryRow> next;
    next.reserve(store_.history().size());
    std::unordered_set<QString> seen;
    for (const HistoryEntry& entry : store_.history()) {
        HistoryRow row = rowFor(entry);
        // Ids are unique in a healthy store; a duplicate (a hand-edited file) is shown once.
        if (seen.insert(row.key).second) {
            next.push_back(std::move(row));
        }
    }
    all_ = std::move(next);
    applyQuery();
    if (totalCount() != total_) {
        total_ = totalCount();
        Q_EMIT totalCountChanged();
    }
    ++revision_;
    Q_EMIT revisionChanged();
}

void HistoryListModel::applyQuery() {
    const QString needle = query_.trimmed().toLower();
    std::vector<HistoryRow> shown;
    shown.reserve(all_.size());
    for (const HistoryRow& row : all_) {
        if (needle.isEmpty() || row.searchText.contains(needle)) {
            shown.push_back(row);
        }
    }
    const int before = count();
    replaceRows(std::move(shown));
    if (count() != before) {
        Q_EMIT countChanged();
    }
}

int HistoryListModel::indexOf(const QString& entryId) const {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (rows_[i].key == entryId) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

QString HistoryListModel::idAt(int row) const {
    const HistoryRow* r = rowAt(index(row));
    return r ? r->key : QString();
}

QVariantMap HistoryListModel::entry(const QString& entryId) const {
    const auto& history = store_.history();
    const std::string id = entryId.toStdString();
    auto it = std::find_if(history.begin(), history.end(),
                           [&](const HistoryEntry& e) { return e.id.text() == id; });
    if (it == history.end()) {
        return {{QStringLiteral("found"), false}};
    }
    const std::unordered_set<std::string> favorites(store_.favorites().begin(),
                                                    store_.favorites().end());
    QStringList clues;
    for (const std::string& line : it->answers) {
        clues.append(qs(line));
    }
    QVariantList matches;
    for (const HistoryEntry::Result& result : it->results) {
        const Specimen* s = library_.specimen(result.specimenID);
        if (!s) {
            continue;
        }
        matches.append(QVariantMap{{QStringLiteral("specimenId"), qs(s->id)},
                                   {QStringLiteral("name"), qs(s->name)},
                                   {QStringLiteral("hardnessText"), qs(s->hardnessText())},
                                   {QStringLiteral("colorHex"), firstColor(*s)},
                                   {QStringLiteral("percentText"), percentText(result.confidence)},
                                   {QStringLiteral("favorite"), favorites.count(s->id) > 0}});
    }
    const HistoryRow row = rowFor(*it);
    return {{QStringLiteral("found"), true},
            {QStringLiteral("entryId"), row.key},
            {QStringLiteral("photoFile"), row.photoFile},
            {QStringLiteral("colorHex"), row.colorHex},
            {QStringLiteral("topName"), row.topName},
            {QStringLiteral("dateText"), dateText(row.date)},
            {QStringLiteral("levelTitle"), row.levelTitle},
            {QStringLiteral("clues"), clues},
            {QStringLiteral("matches"), matches}};
}

} // namespace quarrydex
