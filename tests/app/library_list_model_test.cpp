// The Library screen's list: search and category filter in library order, the counts around
// it, the sentence for a search that finds nothing, and stars that follow the store. Every
// change is checked by QAbstractItemModelTester in fatal mode.

#include "app/library_list_model.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace quarrydex;
using Tester = QAbstractItemModelTester;

namespace {

// Five species over three categories; Quartz and Amethyst share "Brazil".
SpecimenLibrary fieldLibrary() {
    std::vector<Specimen> list;
    Specimen quartz = test::makeSpecimen("quartz", "Quartz");
    quartz.formula = "SiO2";
    quartz.localities = {"Arkansas", "Brazil"};
    Specimen amethyst = test::makeSpecimen("amethyst", "Amethyst");
    amethyst.category = SpecimenCategory::gemstone;
    amethyst.colors = {"purple", "violet"};
    amethyst.localities = {"Brazil", "Uruguay"};
    amethyst.birthstone = "February";
    Specimen basalt = test::makeSpecimen("basalt", "Basalt");
    basalt.category = SpecimenCategory::rock;
    basalt.group = "Volcanic rock";
    basalt.summary = "A dark volcanic rock that only this summary calls columnar.";
    Specimen granite = test::makeSpecimen("granite", "Granite");
    granite.category = SpecimenCategory::rock;
    granite.colors = {"pink", "grey"};
    Specimen calcite = test::makeSpecimen("calcite", "Calcite");
    calcite.formula = "CaCO3";
    calcite.hardnessMin = 3;
    calcite.hardnessMax = 3;
    calcite.colorHex = {"#F4EEDC", "#FFFFFF"};
    for (Specimen* s : {&quartz, &amethyst, &basalt, &granite, &calcite}) {
        list.push_back(*s);
    }
    return SpecimenLibrary(std::move(list));
}

QStringList names(const LibraryListModel& model) {
    QStringList out;
    for (int i = 0; i < model.rowCount(); ++i) {
        out << model.data(model.index(i), LibraryListModel::NameRole).toString();
    }
    return out;
}

struct Fixture {
    test::TempDir dir;
    SpecimenLibrary library = fieldLibrary();
    StoneStore store{dir.path()};
    LibraryListModel model{library, store};
    Tester tester{&model, Tester::FailureReportingMode::Fatal};
};

} // namespace

class LibraryListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void lists_every_species_in_name_order_with_what_a_row_shows() {
        Fixture f;
        QCOMPARE(names(f.model),
                 (QStringList{"Amethyst", "Basalt", "Calcite", "Granite", "Quartz"}));
        QCOMPARE(f.model.countText(), QStringLiteral("5 species"));
        const QModelIndex calcite = f.model.index(2);
        QCOMPARE(f.model.data(calcite, LibraryListModel::SpecimenIdRole).toString(),
                 QStringLiteral("calcite"));
        QCOMPARE(f.model.data(calcite, LibraryListModel::HardnessTextRole).toString(),
                 QStringLiteral("3 Mohs"));
        QCOMPARE(f.model.data(calcite, LibraryListModel::ColorHexRole).toString(),
                 QStringLiteral("#F4EEDC"));
        QCOMPARE(f.model.data(calcite, LibraryListModel::CategoryTitleRole).toString(),
                 QStringLiteral("Mineral"));
        QCOMPARE(f.model.data(calcite, LibraryListModel::FavoriteRole).toBool(), false);
        QCOMPARE(f.model.roleNames().value(LibraryListModel::FavoriteRole), QByteArray("favorite"));
    }

    void search_and_category_narrow_the_list_and_counts_add_up() {
        Fixture f;
        QSignalSpy count(&f.model, &LibraryListModel::countChanged);
        f.model.setQuery(QStringLiteral("  BRAZIL\t"));
        QCOMPARE(names(f.model), (QStringList{"Amethyst", "Quartz"}));
        QCOMPARE(f.model.countText(), QStringLiteral("2 species"));
        QCOMPARE(count.count(), 1);

        f.model.setCategory(QStringLiteral("gemstone"));
        QCOMPARE(f.model.categoryIndex(), 2);
        QCOMPARE(names(f.model), QStringList{"Amethyst"});
        QCOMPARE(f.model.countText(), QStringLiteral("1 species"));

        // A month finds its birthstone; a word only a summary holds finds nothing.
        f.model.setCategoryIndex(0);
        QCOMPARE(f.model.category(), QString());
        f.model.setQuery(QStringLiteral("february"));
        QCOMPARE(names(f.model), QStringList{"Amethyst"});
        f.model.setQuery(QStringLiteral("columnar"));
        QCOMPARE(f.model.rowCount(), 0);
        f.model.setQuery(QStringLiteral("caco3"));
        QCOMPARE(names(f.model), QStringList{"Calcite"});

        const QVariantList categories = f.model.categories();
        QCOMPARE(categories.size(), 6);
        QCOMPARE(categories[0].toMap()["label"].toString(), QStringLiteral("All (5)"));
        QStringList labels;
        int sum = 0;
        for (int i = 1; i < categories.size(); ++i) {
            labels << categories[i].toMap()["label"].toString();
            sum += categories[i].toMap()["count"].toInt();
        }
        QCOMPARE(labels, (QStringList{"Minerals (2)", "Gemstones (1)", "Rocks (2)", "Fossils (0)",
                                      "Meteorites (0)"}));
        QCOMPARE(sum, categories[0].toMap()["count"].toInt());

        f.model.setCategoryIndex(3);
        f.model.setQuery({});
        QCOMPARE(names(f.model), (QStringList{"Basalt", "Granite"}));
        f.model.setCategory(QStringLiteral("crystal")); // unknown: all
        QCOMPARE(f.model.rowCount(), 5);
    }

    void a_search_that_finds_nothing_gives_the_sentence_and_clearing_it_brings_the_list_back() {
        Fixture f;
        QSignalSpy count(&f.model, &LibraryListModel::countChanged);
        f.model.setQuery(QStringLiteral("unobtainium"));
        QVERIFY(f.model.narrowed());
        QCOMPARE(f.model.rowCount(), 0);
        QCOMPARE(f.model.countText(), QStringLiteral("0 species"));
        QCOMPARE(f.model.emptyMessage(),
                 QStringLiteral(u"Nothing matches \u201Cunobtainium\u201D. Try a color, a place or "
                                u"a formula."));
        // Still nothing, another query: the sentence follows.
        f.model.setQuery(QStringLiteral("unobtainiumx"));
        QVERIFY(f.model.emptyMessage().contains(QStringLiteral(u"\u201Cunobtainiumx\u201D")));
        QCOMPARE(count.count(), 2);

        f.model.setQuery({});
        QCOMPARE(f.model.rowCount(), 5);
        QCOMPARE(f.model.emptyMessage(), QString());
        // Blanks alone are no search.
        f.model.setQuery(QStringLiteral("   "));
        QCOMPARE(f.model.rowCount(), 5);
        QCOMPARE(f.model.emptyMessage(), QString());
        QVERIFY(!f.model.narrowed());
        f.model.setCategory(QStringLiteral("rock"));
        QVERIFY(f.model.narrowed());
    }

    void typing_keeps_the_rows_that_still_match_instead_of_resetting() {
        Fixture f;
        QSignalSpy reset(&f.model, &QAbstractItemModel::modelReset);
        QSignalSpy removed(&f.model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy inserted(&f.model, &QAbstractItemModel::rowsInserted);
        for (const char* typed : {"g", "gr", "gra", "gr", "g", ""}) {
            f.model.setQuery(QString::fromLatin1(typed));
        }
        QCOMPARE(reset.count(), 0);
        QVERIFY(removed.count() > 0);
        QVERIFY(inserted.count() > 0);
        QCOMPARE(names(f.model),
                 (QStringList{"Amethyst", "Basalt", "Calcite", "Granite", "Quartz"}));
        QCOMPARE(f.model.indexOf(QStringLiteral("granite")), 3);
        QCOMPARE(f.model.indexOf(QStringLiteral("nothing")), -1);
    }

    void stars_follow_the_store_in_place() {
        Fixture f;
        f.model.setQuery(QStringLiteral("a"));
        const int row = f.model.indexOf(QStringLiteral("calcite"));
        QVERIFY(row >= 0);
        QSignalSpy changed(&f.model, &QAbstractItemModel::dataChanged);
        QSignalSpy inserted(&f.model, &QAbstractItemModel::rowsInserted);
        f.store.toggleFavorite("calcite");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].value<QModelIndex>().row(), row);
        QVERIFY(f.model.data(f.model.index(row), LibraryListModel::FavoriteRole).toBool());
        f.store.toggleFavorite("calcite");
        QVERIFY(!f.model.data(f.model.index(row), LibraryListModel::FavoriteRole).toBool());
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(f.model.query(), QStringLiteral("a")); // the search is kept
    }

    void the_stone_of_the_day_is_the_library_pick_and_an_empty_library_lists_nothing() {
        Fixture f;
        const auto pick = f.library.specimenOfTheDay();
        QVERIFY(pick);
        QCOMPARE(f.model.stoneOfTheDay()["specimenId"].toString(),
                 QString::fromStdString(pick->id));
        QCOMPARE(f.model.stoneOfTheDay()["name"].toString(), QString::fromStdString(pick->name));

        test::TempDir dir;
        SpecimenLibrary empty;
        StoneStore store(dir.path());
        store.toggleFavorite("quartz");
        LibraryListModel model(empty, store);
        Tester tester(&model, Tester::FailureReportingMode::Fatal);
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(model.stoneOfTheDay().isEmpty());
        QCOMPARE(model.categories()[0].toMap()["label"].toString(), QStringLiteral("All (0)"));
        QCOMPARE(model.emptyMessage(), QString());
        model.setQuery(QStringLiteral("quartz"));
        QVERIFY(model.emptyMessage().startsWith(QStringLiteral("Nothing matches")));
    }
};

QTEST_GUILESS_MAIN(LibraryListModelTest)
#include "library_list_model_test.moc"
