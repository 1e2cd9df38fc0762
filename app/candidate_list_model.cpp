#include "app/candidate_list_model.h"

#include "app/qt_values.h"

#include <QStringList>
#include <algorithm>
#include <iterator>

namespace quarrydex {

namespace {

QStringList stringList(const std::vector<std::string>& lines) {
    QStringList out;
    out.reserve(static_cast<qsizetype>(lines.size()));
    for (const auto& line : lines) {
        out.append(qs(line));
    }
    return out;
}

} // namespace

CandidateListModel::CandidateListModel(QObject* parent) : QAbstractListModel(parent) {}

int CandidateListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant CandidateListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const Candidate& c = candidates_[static_cast<std::size_t>(index.row())];
    const Specimen& s = c.specimen;
    switch (role) {
    case RankRole:
        return index.row() + 1;
    case PercentRole:
        return c.displayPercent();
    case ConfidenceRole:
        return c.confidence;
    case FitsRole:
        return stringList(c.fits);
    case MisfitsRole:
        return stringList(c.misfits);
    case LusterRole:
        return qs(s.luster);
    case StreakRole:
        return qs(s.streak);
    case FavoriteRole:
        return isFavorite_ && isFavorite_(s.id);
    default:
        return SpecimenRoles::data(s, role);
    }
}

QHash<int, QByteArray> CandidateListModel::roleNames() const {
    QHash<int, QByteArray> names = SpecimenRoles::names();
    names.insert({
        {RankRole, "rank"},
        {PercentRole, "percent"},
        {ConfidenceRole, "confidence"},
        {FitsRole, "fits"},
        {MisfitsRole, "misfits"},
        {LusterRole, "luster"},
        {StreakRole, "streak"},
    });
    return names;
}

void CandidateListModel::setCandidates(std::vector<Candidate> candidates) {
    const int before = count();
    const int after = static_cast<int>(candidates.size());
    if (after < before) {
        beginRemoveRows(QModelIndex(), after, before - 1);
        candidates_.erase(candidates_.begin() + after, candidates_.end());
        endRemoveRows();
    }
    const int common = std::min(before, after);
    for (int row = 0; row < common; ++row) {
        candidates_[static_cast<std::size_t>(row)] =
            std::move(candidates[static_cast<std::size_t>(row)]);
    }
    if (common > 0) {
        Q_EMIT dataChanged(index(0), index(common - 1));
    }
    if (after > before) {
        beginInsertRows(QModelIndex(), before, after - 1);
        candidates_.insert(candidates_.end(), std::make_move_iterator(candidates.begin() + before),
                           std::make_move_iterator(candidates.end()));
        endInsertRows();
    }
    if (after != before) {
        Q_EMIT countChanged();
    }
}

void CandidateListModel::setFavoriteTest(std::function<bool(const std::string&)> isFavorite) {
    isFavorite_ = std::move(isFavorite);
    refreshFavorites();
}

void CandidateListModel::refreshFavorites() {
    if (count() > 0) {
        Q_EMIT dataChanged(index(0), index(count() - 1), {FavoriteRole});
    }
}

} // namespace quarrydex
