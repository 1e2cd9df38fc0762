// What the specimen detail screen shows of a species: the fact tiles in order with the texts
// for absent values, the header lines, and look-alikes linked to library species.

#include "app/specimen_facts.h"
#include "support/specimens.h"

#include <QTest>

using namespace quarrydex;

namespace {

QStringList column(const QVariantList& rows, const QString& key) {
    QStringList out;
    for (const QVariant& row : rows) {
        out << row.toMap()[key].toString();
    }
    return out;
}

} // namespace

class SpecimenFactsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void a_mineral_shows_every_tile_in_order() {
        Specimen magnetite = test::makeSpecimen("magnetite", "Magnetite");
        magnetite.formula = "Fe3O4";
        magnetite.crystalSystem = "Isometric";
        magnetite.specificGravity = "5.2";
        magnetite.cleavage = "None; octahedral parting";
        magnetite.magnetic = true;
        magnetite.hardnessMin = 5.5;
        magnetite.hardnessMax = 6.5;
        magnetite.colors = {"black", "dark grey"};
        magnetite.birthstone = "June";
        SpecimenLibrary library({magnetite});

        const QVariantMap facts = specimenFacts(library.specimen("magnetite"), library);
        QVERIFY(facts["found"].toBool());
        const QVariantList tiles = facts["facts"].toList();
        QCOMPARE(
            column(tiles, "label"),
            (QStringList{"Hardness", "Composition", "Crystal system", "Specific gravity", "Luster",
                         "Streak", "Cleavage", "Magnetic", "Fizzes in acid", "Colors"}));
        QCOMPARE(column(tiles, "value"),
                 (QStringList{QStringLiteral(u"5.5\u20136.5 Mohs"), "Fe3O4", "Isometric", "5.2",
                              "Vitreous", "White", "None; octahedral parting", "Yes", "No",
                              "black, dark grey"}));
        QCOMPARE(facts["birthstoneText"].toString(), QStringLiteral("June birthstone"));
        QCOMPARE(facts["matchShareText"].toString(), QString());
        QCOMPARE(facts["categoryTitle"].toString(), QStringLiteral("Mineral"));
    }

    void a_rock_without_formula_or_optional_facts_says_so() {
        Specimen basalt = test::makeSpecimen("basalt", "Basalt");
        basalt.category = SpecimenCategory::rock;
        basalt.specificGravity.reset();
        basalt.fizzes = true;
        SpecimenLibrary library({basalt});
        const QVariantList tiles =
            specimenFacts(library.specimen("basalt"), library)["facts"].toList();
        const QStringList values = column(tiles, "value");
        QCOMPARE(values[1], QStringLiteral("Varies (rock)"));
        QCOMPARE(values[2], QStringLiteral("Not listed"));
        QCOMPARE(values[3], QStringLiteral("Not listed"));
        QCOMPARE(values[6], QStringLiteral("Not listed"));
        QCOMPARE(values[7], QStringLiteral("No"));
        QCOMPARE(values[8], QStringLiteral("Yes"));
        QCOMPARE(specimenFacts(library.specimen("basalt"), library)["birthstoneText"].toString(),
                 QString());
    }

    void the_match_share_appears_only_with_a_share_and_is_a_whole_percentage() {
        Specimen s = test::makeSpecimen("quartz", "Quartz");
        SpecimenLibrary library({s});
        const Specimen* quartz = library.specimen("quartz");
        QCOMPARE(specimenFacts(quartz, library, 0.424)["matchShareText"].toString(),
                 QStringLiteral("Match share: 42% of the library"));
        QCOMPARE(specimenFacts(quartz, library, 0.0)["matchShareText"].toString(),
                 QStringLiteral("Match share: 0% of the library"));
        QCOMPARE(specimenFacts(quartz, library, 0.999)["matchShareText"].toString(),
                 QStringLiteral("Match share: 95% of the library"));
        QCOMPARE(specimenFacts(quartz, library)["matchShareText"].toString(), QString());
        QVERIFY(!specimenFacts(nullptr, library)["found"].toBool());
    }

    void look_alikes_that_are_library_species_carry_their_id() {
        Specimen pyrite = test::makeSpecimen("pyrite", "Pyrite");
        pyrite.lookAlikes = {{"Gold", "Gold is soft and has a yellow streak."},
                             {"CHALCOPYRITE", "Chalcopyrite is softer and more yellow."},
                             {"Brass filings", "Brass is man-made and bends."},
                             {"pyrite", "The same species named again links nowhere."}};
        SpecimenLibrary library({pyrite, test::makeSpecimen("gold", "Gold"),
                                 test::makeSpecimen("chalcopyrite", "Chalcopyrite")});
        const QVariantList looks =
            specimenFacts(library.specimen("pyrite"), library)["lookAlikes"].toList();
        QCOMPARE(column(looks, "specimenId"), (QStringList{"gold", "chalcopyrite", "", ""}));
        QCOMPARE(column(looks, "tip")[0], QStringLiteral("Gold is soft and has a yellow streak."));
    }
};

QTEST_GUILESS_MAIN(SpecimenFactsTest)
#include "specimen_facts_test.moc"
