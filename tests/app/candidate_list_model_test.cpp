// The candidate list: its roles, and the row changes views see as results come and go,
// checked by QAbstractItemModelTester in fatal mode.

#include "app/app_model.h"
#include "samples/sample_set.h"
#include "support/specimens.h"
#include "support/temp_dir.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>
#include <memory>

using namespace quarrydex;
using Tester = QAbstractItemModelTester;

namespace {

std::vector<Candidate> candidates(int count) {
    std::vector<Candidate> out;
    for (int i = 0; i < count; ++i) {
        const std::string id = "c" + std::to_string(i);
        out.push_back({test::makeSpecimen(id, "Species " + id), 0.5 / (i + 1), {}, {}});
    }
    return out;
}

QVariant roleOf(const CandidateListModel& model, int row, const QByteArray& name) {
    const int role = model.roleNames().key(name);
    return role > Qt::UserRole ? model.data(model.index(row), role) : QVariant();
}

} // namespace

class CandidateListModelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void rows_carry_what_a_result_card_shows() {
        CandidateListModel model;
        Tester tester(&model, Tester::FailureReportingMode::Fatal);
        auto rows = candidates(2);
        Specimen& s = rows[0].specimen;
        s.category = SpecimenCategory::gemstone;
        s.hardnessMin = 6.5;
        s.hardnessMax = 7;
        s.colorHex = {"#7B3FA0", "#9A5CC6"};
        rows[0].confidence = 0.99;
        rows[0].misfits = {"Magnet: A magnet sticks or pulls"};
        rows[1].specimen.colorHex.clear();
        model.setCandidates(rows);

        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(roleOf(model, 0, "specimenId").toString(), QStringLiteral("c0"));
        QCOMPARE(roleOf(model, 0, "categoryTitle").toString(), QStringLiteral("Gemstone"));
        QCOMPARE(roleOf(model, 0, "percent").toInt(), 95); // never shown above 95
        QCOMPARE(roleOf(model, 1, "percent").toInt(), 25);
        QCOMPARE(roleOf(model, 0, "misfits").toStringList(),
                 QStringList{"Magnet: A magnet sticks or pulls"});
        QCOMPARE(roleOf(model, 0, "hardnessText").toString(), QStringLiteral(u"6.5\u20137 Mohs"));
        QCOMPARE(roleOf(model, 0, "colorHex").toString(), QStringLiteral("#7B3FA0"));
        QCOMPARE(roleOf(model, 1, "colorHex").toString(), QString());
    }

    void growing_reranking_and_shrinking_are_announced_row_by_row() {
        CandidateListModel model;
        Tester tester(&model, Tester::FailureReportingMode::Fatal);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy count(&model, &CandidateListModel::countChanged);

        model.setCandidates(candidates(3));
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(changed.count(), 0);

        auto reranked = candidates(3);
        std::swap(reranked[0], reranked[2]);
        model.setCandidates(reranked);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed.last().at(1).toModelIndex().row(), 2);
        QCOMPARE(roleOf(model, 0, "specimenId").toString(), QStringLiteral("c2"));
        QCOMPARE(count.count(), 1);

        model.setCandidates(candidates(8));
        QCOMPARE(inserted.last().at(1).toInt(), 3);
        QCOMPARE(inserted.last().at(2).toInt(), 7);

        model.setCandidates(candidates(2));
        QCOMPARE(removed.last().at(1).toInt(), 2);
        QCOMPARE(removed.last().at(2).toInt(), 7);
        model.clear();
        model.clear(); // already empty: nothing to announce
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(removed.count(), 2);
        QCOMPARE(count.count(), 4);
    }

    void the_application_models_rows_follow_runs_and_new_sessions() {
        std::vector<Specimen> list = test::numberedSpecimens(10);
        list[4].colors = {"purple"};
        test::TempDir dir;
        AppModel model(std::make_shared<const SpecimenLibrary>(list), dir.path(), std::nullopt);
        CandidateListModel* rows = model.candidates();
        QCOMPARE(model.property("candidates").value<CandidateListModel*>(), rows);
        Tester tester(rows, Tester::FailureReportingMode::Fatal);
        QVERIFY(model.setAnswer("color", "purple"));
        model.run();
        QCOMPARE(rows->rowCount(), 8);
        QCOMPARE(roleOf(*rows, 0, "specimenId").toString(), QStringLiteral("s4"));
        QVERIFY(model.setAnswer("color", "white"));
        QVERIFY(roleOf(*rows, 0, "specimenId").toString() != QStringLiteral("s4"));
        model.startOver();
        QCOMPARE(rows->rowCount(), 0);
    }

    void the_favourite_star_follows_the_store() {
        CandidateListModel bare;
        bare.setCandidates(candidates(1));
        QCOMPARE(roleOf(bare, 0, "favorite").toBool(), false); // no store, no favourites

        std::vector<Specimen> list = test::numberedSpecimens(4);
        test::TempDir dir;
        auto model = std::make_unique<AppModel>(std::make_shared<const SpecimenLibrary>(list),
                                                dir.path(), std::nullopt);
        model->toggleFavorite("s2");
        CandidateListModel* rows = model->candidates();
        Tester tester(rows, Tester::FailureReportingMode::Fatal);
        model->run();
        auto starred = [&] {
            QStringList ids;
            for (int row = 0; row < rows->rowCount(); ++row) {
                if (roleOf(*rows, row, "favorite").toBool()) {
                    ids << roleOf(*rows, row, "specimenId").toString();
                }
            }
            return ids;
        };
        QCOMPARE(starred(), QStringList{"s2"});

        QSignalSpy changed(rows, &QAbstractItemModel::dataChanged);
        model->toggleFavorite("s0");
        model->toggleFavorite("s2");
        QCOMPARE(starred(), QStringList{"s0"});
        QVERIFY(changed.count() >= 2);
        QCOMPARE(changed.last().at(2).value<QList<int>>(),
                 QList<int>{CandidateListModel::FavoriteRole});

        // A restart over the same data root shows the same stars.
        model.reset();
        AppModel again(std::make_shared<const SpecimenLibrary>(list), dir.path(), std::nullopt);
        rows = again.candidates();
        again.run();
        QCOMPARE(starred(), QStringList{"s0"});
    }
};

QTEST_GUILESS_MAIN(CandidateListModelTest)
#include "candidate_list_model_test.moc"
