// The History list: rows newest first with what a row shows, deletion and clearing, the
// search, and the detail of one identification. Checked by QAbstractItemModelTester (fatal).

#include "app/app_model.h"
#include "app/history_list_model.h"
#include "samples/sample_set.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace quarrydex;
using Tester = QAbstractItemModelTester;

namespace {

SpecimenLibrary library() {
    std::vector<Specimen> list;
    Specimen amethyst = test::makeSpecimen("amethyst", "Amethyst");
    amethyst.colorHex = {"#7B3FA0"};
    list.push_back(amethyst);
    list.push_back(test::makeSpecimen("fluorite", "Fluorite"));
    list.push_back(test::makeSpecimen("calcite", "Calcite"));
    return SpecimenLibrary(std::move(list));
}

// 2026-11-23 14:05:00 UTC (the tests run with TZ=UTC).
constexpr double kNoonish = 1795442700;

HistoryEntry entry(std::vector<HistoryEntry::Result> results, std::vector<std::string> answers,
                   double unixSeconds, std::string level = "likely") {
    HistoryEntry e;
    e.date = Timestamp::fromUnix(unixSeconds);
    e.results = std::move(results);
    e.answers = std::move(answers);
    e.level = std::move(level);
    return e;
}

QVariant role(const HistoryListModel& model, int row, int role) {
    return model.data(model.index(row), role);
}

QStringList tops(const HistoryListModel& model) {
    QStringList out;
    for (int i = 0; i < model.rowCount(); ++i) {
        out << role(model, i, HistoryListModel::TopNameRole).toString();
    }
    return out;
}

} // namespace

class HistoryListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rows_show_the_top_species_level_clues_and_date_newest_first() {
        test::TempDir dir;
        SpecimenLibrary lib = library();
        StoneStore store(dir.path());
        HistoryListModel model(lib, store);
        Tester tester(&model, Tester::FailureReportingMode::Fatal);

        HistoryEntry first =
            entry({{"amethyst", 0.62}, {"fluorite", 0.2}},
                  {"Photo color", "Color: Purple", "Streak: White"}, kNoonish, "strong");
        first.photoFile = "AAAAAAAA-0000-4000-8000-000000000001.jpg";
        store.addHistory(first);
        // A species that is gone is skipped: the next known one is the top.
        store.addHistory(entry({{"gone", 0.5}, {"calcite", 0.3}}, {"Fizz: Fizzes"}, kNoonish + 60));
        store.addHistory(entry({}, {}, kNoonish + 120, "roughGuess"));
        store.addHistory(entry({{"gone", 0.5}}, {"Heft: Heavy"}, kNoonish + 180));

        QCOMPARE(tops(model), (QStringList{"No match", "No match", "Calcite", "Amethyst"}));
        QCOMPARE(role(model, 3, HistoryListModel::LevelTitleRole).toString(),
                 QStringLiteral("Strong match"));
        QCOMPARE(role(model, 3, HistoryListModel::CluesTextRole).toString(),
                 QStringLiteral("3 clue(s)"));
        QCOMPARE(role(model, 3, HistoryListModel::ClueCountRole).toInt(), 3);
        QCOMPARE(role(model, 1, HistoryListModel::CluesTextRole).toString(),
                 QStringLiteral("0 clue(s)"));
        QCOMPARE(role(model, 3, HistoryListModel::DateTextRole).toString(),
                 QStringLiteral("23 Nov 2026, 14:05"));
        QCOMPARE(role(model, 3, HistoryListModel::PhotoFileRole).toString(),
                 QString::fromStdString(*first.photoFile));
        QCOMPARE(role(model, 3, HistoryListModel::ColorHexRole).toString(),
                 QStringLiteral("#7B3FA0"));
        QCOMPARE(role(model, 3, HistoryListModel::EntryIdRole).toString(),
                 QString::fromStdString(first.id.text()));
        QCOMPARE(role(model, 0, HistoryListModel::PhotoFileRole).toString(), QString());
        QCOMPARE(role(model, 0, HistoryListModel::TopSpecimenIdRole).toString(), QString());
        QCOMPARE(model.totalCount(), 4);
    }

    void rerunning_a_session_updates_its_row_in_place_and_the_search_narrows_rows() {
        test::TempDir dir;
        SpecimenLibrary lib = library();
        StoneStore store(dir.path());
        HistoryListModel model(lib, store);
        Tester tester(&model, Tester::FailureReportingMode::Fatal);
        HistoryEntry session = entry({{"amethyst", 0.4}}, {"Color: Purple"}, kNoonish);
        store.addHistory(session);
        store.addHistory(entry({{"calcite", 0.7}}, {"Fizz: Fizzes"}, kNoonish + 60));

        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        session.results = {{"fluorite", 0.5}};
        store.addHistory(session);
        QCOMPARE(tops(model), (QStringList{"Calcite", "Fluorite"}));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(inserted.count(), 0);

        model.setQuery(QStringLiteral("  FIZZ"));
        QCOMPARE(tops(model), QStringList{"Calcite"});
        model.setQuery(QStringLiteral("nov 2026"));
        QCOMPARE(model.rowCount(), 2);
        model.setQuery(QStringLiteral("likely"));
        QCOMPARE(model.rowCount(), 2);
        model.setQuery(QStringLiteral("quartz"));
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.totalCount(), 2);
        // A new identification while searching shows up once it matches.
        store.addHistory(entry({{"calcite", 0.7}}, {"Streak: quartz-white"}, kNoonish + 120));
        QCOMPARE(model.rowCount(), 1);
        model.setQuery({});
        QCOMPARE(model.rowCount(), 3);
    }

    void the_detail_lists_clues_and_only_known_matches_with_their_share() {
        test::TempDir dir;
        SpecimenLibrary lib = library();
        StoneStore store(dir.path());
        store.toggleFavorite("calcite");
        HistoryListModel model(lib, store);
        HistoryEntry e = entry({{"calcite", 0.987}, {"gone", 0.3}, {"amethyst", 0.034}},
                               {"Photo color", "Fizz: Fizzes"}, kNoonish);
        store.addHistory(e);

        const QVariantMap detail = model.entry(QString::fromStdString(e.id.text()));
        QVERIFY(detail["found"].toBool());
        QCOMPARE(detail["clues"].toStringList(), (QStringList{"Photo color", "Fizz: Fizzes"}));
        const QVariantList matches = detail["matches"].toList();
        QCOMPARE(matches.size(), 2);
        QCOMPARE(matches[0].toMap()["name"].toString(), QStringLiteral("Calcite"));
        QCOMPARE(matches[0].toMap()["percentText"].toString(), QStringLiteral("95%"));
        QVERIFY(matches[0].toMap()["favorite"].toBool());
        QCOMPARE(matches[1].toMap()["specimenId"].toString(), QStringLiteral("amethyst"));
        QCOMPARE(matches[1].toMap()["percentText"].toString(), QStringLiteral("3%"));
        QCOMPARE(detail["dateText"].toString(), QStringLiteral("23 Nov 2026, 14:05"));

        QVERIFY(!model.entry(QStringLiteral("not-an-id"))["found"].toBool());
        const int revision = model.revision();
        store.deleteHistory(e.id);
        QVERIFY(model.revision() > revision);
        QVERIFY(!model.entry(QString::fromStdString(e.id.text()))["found"].toBool());
    }

    void clearing_history_leaves_collection_and_favorites_and_deleting_the_last_empties_it() {
        test::TempDir dir;
        AppModel app(std::make_shared<const SpecimenLibrary>(library()), dir.path(), std::nullopt);
        HistoryListModel& model = *app.historyList();
        Tester tester(&model, Tester::FailureReportingMode::Fatal);
        CollectionEntry piece;
        piece.name = "Desk stone";
        piece.location = "Garden";
        app.store().add(piece);
        app.toggleFavorite(QStringLiteral("amethyst"));
        HistoryEntry a = entry({{"amethyst", 0.4}}, {}, kNoonish);
        app.store().addHistory(a);
        app.store().addHistory(entry({{"calcite", 0.4}}, {}, kNoonish + 1));
        QSignalSpy total(&model, &HistoryListModel::totalCountChanged);

        app.clearHistory();
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(total.count(), 1);
        QCOMPARE(app.store().collection().size(), std::size_t(1));
        QCOMPARE(app.favorites(), QStringList{"amethyst"});
        QCOMPARE(app.favoritesList()->count(), 1);

        app.store().addHistory(a);
        QCOMPARE(model.rowCount(), 1);
        app.deleteHistory(QStringLiteral("not a uuid")); // nothing happens
        app.deleteHistory(QStringLiteral("00000000-0000-4000-8000-000000000000"));
        QCOMPARE(model.rowCount(), 1);
        app.deleteHistory(QString::fromStdString(a.id.text()));
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.totalCount(), 0);
    }
};

QTEST_GUILESS_MAIN(HistoryListModelTest)
#include "history_list_model_test.moc"
