#pragma once
// A list model over a vector of rows that takes a new list of rows with as few changes as it
// can: rows whose key is in both lists stay where they are (dataChanged when their content
// differs), the others are removed and inserted in runs. Views then keep their current row
// and scroll position across a search keystroke or a store change. Only when rows present in
// both lists changed their order is the model reset.
//
// `Row` needs a public `key` member of a hashable type, unique within one list, and ==.
// Main thread only.

#include <QAbstractListModel>

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quarrydex {

template <class Row> class SyncedListModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    int count() const { return static_cast<int>(rows_.size()); }
    const std::vector<Row>& rows() const { return rows_; }

protected:
    // The row of a valid index of this model, else null.
    const Row* rowAt(const QModelIndex& index) const {
        if (!index.isValid() || index.model() != this || index.column() != 0 || index.row() < 0 ||
            index.row() >= count()) {
            return nullptr;
        }
        return &rows_[static_cast<std::size_t>(index.row())];
    }

    void replaceRows(std::vector<Row> next) {
        using Key = decltype(Row::key);
        std::unordered_set<Key> nextKeys;
        nextKeys.reserve(next.size());
        for (const Row& row : next) {
            nextKeys.insert(row.key);
        }
        std::unordered_map<Key, std::size_t> oldPosition;
        oldPosition.reserve(rows_.size());
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            oldPosition.emplace(rows_[i].key, i);
        }
        // Rows kept must keep their order; otherwise start over.
        std::size_t last = 0;
        bool first = true;
        for (const Row& row : next) {
            auto it = oldPosition.find(row.key);
            if (it == oldPosition.end()) {
                continue;
            }
            if (!first && it->second < last) {
                beginResetModel();
                rows_ = std::move(next);
                endResetModel();
                return;
            }
            last = it->second;
            first = false;
        }

        // Remove the rows that are gone, in runs, from the end so indexes stay valid.
        for (std::size_t end = rows_.size(); end > 0;) {
            if (nextKeys.count(rows_[end - 1].key)) {
                --end;
                continue;
            }
            std::size_t begin = end - 1;
            while (begin > 0 && !nextKeys.count(rows_[begin - 1].key)) {
                --begin;
            }
            beginRemoveRows({}, static_cast<int>(begin), static_cast<int>(end - 1));
            rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(begin),
                        rows_.begin() + static_cast<std::ptrdiff_t>(end));
            endRemoveRows();
            end = begin;
        }

        // Now the rows are a subsequence of `next`: insert the new ones in runs and update the
        // kept ones in place.
        std::size_t i = 0;
        for (std::size_t j = 0; j < next.size();) {
            if (i < rows_.size() && rows_[i].key == next[j].key) {
                if (!(rows_[i] == next[j])) {
                    rows_[i] = std::move(next[j]);
                    const QModelIndex changed = index(static_cast<int>(i));
                    Q_EMIT dataChanged(changed, changed);
                }
                ++i;
                ++j;
                continue;
            }
            std::size_t runEnd = j;
            while (runEnd < next.size() &&
                   (i >= rows_.size() || rows_[i].key != next[runEnd].key)) {
                ++runEnd;
            }
            beginInsertRows({}, static_cast<int>(i), static_cast<int>(i + (runEnd - j) - 1));
            rows_.insert(
                rows_.begin() + static_cast<std::ptrdiff_t>(i),
                std::make_move_iterator(next.begin() + static_cast<std::ptrdiff_t>(j)),
                std::make_move_iterator(next.begin() + static_cast<std::ptrdiff_t>(runEnd)));
            endInsertRows();
            i += runEnd - j;
            j = runEnd;
        }
    }

    std::vector<Row> rows_;
};

} // namespace quarrydex
