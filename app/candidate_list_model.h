#pragma once
// The ranked candidates of the last identification as a list for the screens, one row per
// candidate, best first. Rows carry everything a result card shows, ready to display.
//
// Owned by the application model, which replaces the rows after every run. Main thread only.

#include "app/specimen_roles.h"
#include "identify/matcher.h"

#include <QAbstractListModel>
#include <functional>
#include <string>
#include <vector>

namespace quarrydex {

class CandidateListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    // The species roles (SpecimenRoles), then the match's own.
    enum Role {
        SpecimenIdRole = SpecimenRoles::SpecimenIdRole,
        NameRole = SpecimenRoles::NameRole,
        CategoryRole = SpecimenRoles::CategoryRole,
        CategoryTitleRole = SpecimenRoles::CategoryTitleRole,
        GroupRole = SpecimenRoles::GroupRole,
        HardnessTextRole = SpecimenRoles::HardnessTextRole,
        ColorHexRole = SpecimenRoles::ColorHexRole,
        FavoriteRole = SpecimenRoles::FavoriteRole,
        RankRole = SpecimenRoles::FirstOwnRole, // 1 for the best candidate
        PercentRole,
        ConfidenceRole, // the share of belief, 0...1
        FitsRole,       // QStringList
        MisfitsRole,    // QStringList
        LusterRole,
        StreakRole,
    };
    Q_ENUM(Role)

    explicit CandidateListModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(candidates_.size()); }
    const std::vector<Candidate>& candidates() const { return candidates_; }

    // Replaces the rows: rows present before and after are updated in place (dataChanged),
    // the rest are inserted or removed, so views keep their position across re-runs.
    void setCandidates(std::vector<Candidate> candidates);
    void clear() { setCandidates({}); }

    // Tells whether a species id is a favourite; without one no row is. Call
    // refreshFavorites() whenever its answers may have changed.
    void setFavoriteTest(std::function<bool(const std::string&)> isFavorite);
    // Announces FavoriteRole of every row as changed.
    void refreshFavorites();

Q_SIGNALS:
    void countChanged();

private:
    std::vector<Candidate> candidates_;
    std::function<bool(const std::string&)> isFavorite_;
};

} // namespace quarrydex
