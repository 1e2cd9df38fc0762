#include "app/library_list_model.h"

#include "app/qt_values.h"

#include <QDateTime>

#include <unordered_set>

namespace quarrydex {

namespace {

// Once past local midnight the stone of the day is picked again (a second late, so the date
// has surely turned).
int millisecondsToNextDay() {
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime next(now.date().addDays(1), QTime(0, 0));
    return static_cast<int>(std::min<qint64>(now.msecsTo(next) + 1000, 24LL * 3600 * 1000));
}

} // namespace

LibraryListModel::LibraryListModel(const SpecimenLibrary& library, StoneStore& store,
                                   QObject* parent)
    : SyncedListModel<LibraryRow>(parent), library_(library), store_(store) {
    refresh();
    refreshStoneOfTheDay();
    observer_ = store_.observe([this] { refresh(); });
    midnight_.setSingleShot(true);
    connect(&midnight_, &QTimer::timeout, this, &LibraryListModel::refreshStoneOfTheDay);
}

LibraryListModel::~LibraryListModel() {
    store_.unobserve(observer_);
}

QVariant LibraryListModel::data(const QModelIndex& index, int role) const {
    const LibraryRow* row = rowAt(index);
    if (!row) {
        return {};
    }
    return role == FavoriteRole ? QVariant(row->favorite) : SpecimenRoles::data(*row->key, role);
}

QHash<int, QByteArray> LibraryListModel::roleNames() const {
    return SpecimenRoles::names();
}

void LibraryListModel::setQuery(const QString& query) {
    if (query == query_) {
        return;
    }
    const bool wasNarrowed = narrowed();
    query_ = query;
    refresh();
    Q_EMIT queryChanged();
    if (narrowed() != wasNarrowed) {
        Q_EMIT narrowedChanged();
    }
}

QString LibraryListModel::category() const {
    return category_ ? qs(info(*category_).rawValue) : QString();
}

void LibraryListModel::setCategory(const QString& raw) {
    std::optional<SpecimenCategory> next = specimenCategoryFromRaw(raw.toStdString());
    if (next == category_) {
        return;
    }
    const bool wasNarrowed = narrowed();
    category_ = next;
    refresh();
    Q_EMIT categoryChanged();
    if (narrowed() != wasNarrowed) {
        Q_EMIT narrowedChanged();
    }
}

int LibraryListModel::categoryIndex() const {
    return category_ ? static_cast<int>(*category_) + 1 : 0;
}

void LibraryListModel::setCategoryIndex(int index) {
    const auto& all = allSpecimenCategories();
    setCategory(index >= 1 && index <= static_cast<int>(all.size())
                    ? qs(all[static_cast<std::size_t>(index - 1)].rawValue)
                    : QString());
}

QVariantList LibraryListModel::categories() const {
    const int total = static_cast<int>(library_.specimens().size());
    QVariantList out{QVariantMap{{QStringLiteral("raw"), QString()},
                                 {QStringLiteral("label"), QStringLiteral("All (%1)").arg(total)},
                                 {QStringLiteral("symbol"), QStringLiteral("books.vertical")},
                                 {QStringLiteral("count"), total}}};
    for (const SpecimenCategoryInfo& c : allSpecimenCategories()) {
        const int n = library_.count(c.category);
        out.append(
            QVariantMap{{QStringLiteral("raw"), qs(c.rawValue)},
                        {QStringLiteral("label"), qs(c.title) + QStringLiteral(" (%1)").arg(n)},
                        {QStringLiteral("symbol"), qs(c.symbol)},
                        {QStringLiteral("count"), n}});
    }
    return out;
}

QString LibraryListModel::countText() const {
    return QStringLiteral("%1 species").arg(count());
}

QString LibraryListModel::emptyMessage() const {
    if (count() > 0 || query_.trimmed().isEmpty()) {
        return {};
    }
    return QStringLiteral("Nothing matches \u201C") + query_ +
           QStringLiteral("\u201D. Try a color, a place or a formula.");
}

int LibraryListModel::indexOf(const QString& specimenId) const {
    const std::string id = specimenId.toStdString();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (rows_[i].key->id == id) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void LibraryListModel::refresh() {
    const std::unordered_set<std::string> favorites(store_.favorites().begin(),
                                                    store_.favorites().end());
    std::vector<LibraryRow> next;
    for (const Specimen& match : library_.search(query_.toStdString(), category_)) {
        // search() hands out copies; rows point at the library's own record.
        if (const Specimen* s = library_.specimen(match.id)) {
            next.push_back({s, favorites.count(s->id) > 0});
        }
    }
    const int before = count();
    replaceRows(std::move(next));
    QString message = emptyMessage();
    if (count() != before || message != shownMessage_) {
        shownMessage_ = std::move(message);
        Q_EMIT countChanged();
    }
}

void LibraryListModel::refreshStoneOfTheDay() {
    QVariantMap next;
    if (auto pick = library_.specimenOfTheDay()) {
        next = {{QStringLiteral("specimenId"), qs(pick->id)},
                {QStringLiteral("name"), qs(pick->name)},
                {QStringLiteral("categoryTitle"), qs(info(pick->category).singular)},
                {QStringLiteral("group"), qs(pick->group)},
                {QStringLiteral("summary"), qs(pick->summary)},
                {QStringLiteral("colorHex"),
                 pick->colorHex.empty() ? QString() : qs(pick->colorHex.front())},
                {QStringLiteral("hardnessText"), qs(pick->hardnessText())}};
    }
    if (next != stoneOfTheDay_) {
        stoneOfTheDay_ = next;
        Q_EMIT stoneOfTheDayChanged();
    }
    midnight_.start(millisecondsToNextDay());
}

QString LibraryListModel::idAt(int row) const {
    const auto* r = rowAt(index(row));
    return r ? qs(r->key->id) : QString();
}

} // namespace quarrydex
