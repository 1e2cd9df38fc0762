// The Favorites list: starred species the library knows, by name, following the store.

#include "app/candidate_list_model.h"
#include "app/favorites_list_model.h"
#include "app/library_list_model.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>

using namespace quarrydex;
using Tester = QAbstractItemModelTester;

namespace {

QStringList ids(const FavoritesListModel& model) {
    QStringList out;
    for (int i = 0; i < model.rowCount(); ++i) {
        out << model.data(model.index(i), FavoritesListModel::SpecimenIdRole).toString();
    }
    return out;
}

SpecimenLibrary library() {
    std::vector<Specimen> list;
    for (const auto& [id, name] : std::vector<std::pair<std::string, std::string>>{
             {"zircon", "Zircon"}, {"agate", "Agate"}, {"mica", "Mica"}, {"beryl", "Beryl"}}) {
        list.push_back(test::makeSpecimen(id, name));
    }
    return SpecimenLibrary(std::move(list));
}

} // namespace

class FavoritesListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void starred_species_are_sorted_by_name_and_unknown_ids_skipped() {
        test::TempDir dir;
        SpecimenLibrary lib = library();
        {
            StoneStore store(dir.path());
            for (const char* id : {"zircon", "gone-species", "agate", "mica"}) {
                store.toggleFavorite(id);
            }
        }
        // As after a restart over the same data folder.
        StoneStore store(dir.path());
        FavoritesListModel model(lib, store);
        Tester tester(&model, Tester::FailureReportingMode::Fatal);
        QCOMPARE(ids(model), (QStringList{"agate", "mica", "zircon"}));
        QCOMPARE(model.count(), 3);
        QCOMPARE(model.data(model.index(0), FavoritesListModel::NameRole).toString(),
                 QStringLiteral("Agate"));
        QCOMPARE(model.data(model.index(0), FavoritesListModel::HardnessTextRole).toString(),
                 QStringLiteral("3 Mohs"));
        QVERIFY(model.data(model.index(0), FavoritesListModel::FavoriteRole).toBool());
    }

    // One delegate draws rows from the library, the favourites and the results: a starred
    // species reads the same under every role name the three lists share.
    void a_species_reads_alike_in_the_library_favorites_and_results() {
        test::TempDir dir;
        std::vector<Specimen> list{test::makeSpecimen("agate", "Agate")};
        list[0].category = SpecimenCategory::gemstone;
        list[0].group = "Quartz";
        list[0].colorHex = {"#B5651D", "#FFFFFF"};
        SpecimenLibrary lib(std::move(list));
        StoneStore store(dir.path());
        store.toggleFavorite("agate");
        LibraryListModel library(lib, store);
        FavoritesListModel favorites(lib, store);
        CandidateListModel results;
        results.setFavoriteTest([&](const std::string& id) {
            return std::ranges::find(store.favorites(), id) != store.favorites().end();
        });
        results.setCandidates({{*lib.specimen("agate"), 0.9, {}, {}}});

        const QHash<int, QByteArray> shared = favorites.roleNames();
        QCOMPARE(shared.size(), 8);
        for (const QAbstractListModel* other :
             std::initializer_list<const QAbstractListModel*>{&library, &results}) {
            for (auto [role, name] : shared.asKeyValueRange()) {
                QCOMPARE(other->roleNames().key(name), role);
                QCOMPARE(other->data(other->index(0), role),
                         favorites.data(favorites.index(0), role));
            }
        }
        QCOMPARE(favorites.data(favorites.index(0), favorites.roleNames().key("colorHex")),
                 QVariant(QStringLiteral("#B5651D")));
        QCOMPARE(favorites.data(favorites.index(0), favorites.roleNames().key("favorite")),
                 QVariant(true));
    }

    void starring_and_unstarring_insert_and_remove_one_row_in_place() {
        test::TempDir dir;
        SpecimenLibrary lib = library();
        StoneStore store(dir.path());
        FavoritesListModel model(lib, store);
        Tester tester(&model, Tester::FailureReportingMode::Fatal);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy count(&model, &FavoritesListModel::countChanged);
        QCOMPARE(model.rowCount(), 0);

        store.toggleFavorite("zircon");
        store.toggleFavorite("agate");
        store.toggleFavorite("beryl");
        QCOMPARE(ids(model), (QStringList{"agate", "beryl", "zircon"}));
        QCOMPARE(inserted.count(), 3);
        QCOMPARE(inserted[2][1].toInt(), 1); // beryl goes between agate and zircon

        store.toggleFavorite("beryl");
        QCOMPARE(ids(model), (QStringList{"agate", "zircon"}));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed[0][1].toInt(), 1);
        QCOMPARE(count.count(), 4);

        // A change elsewhere in the store leaves the rows alone.
        CollectionEntry piece;
        piece.name = "Desk stone";
        piece.location = "Garden";
        store.add(piece);
        QCOMPARE(count.count(), 4);
        QCOMPARE(inserted.count(), 3);
    }
};

QTEST_GUILESS_MAIN(FavoritesListModelTest)
#include "favorites_list_model_test.moc"
