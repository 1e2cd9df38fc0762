#include "samples/sample_set.h"
#include "ui/help.h"
#include "ui/kit/vx_zoom.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <gtest/gtest.h>

using quarrydex::ui::HelpChapter;
using quarrydex::ui::QuarrydexHelp;

namespace {

const HelpChapter& chapter(const std::vector<HelpChapter>& chapters, const QString& id) {
    for (const auto& c : chapters) {
        if (c.id == id) {
            return c;
        }
    }
    throw std::runtime_error("no chapter " + id.toStdString());
}

} // namespace

TEST(UiHelp, nine_fixed_chapters_in_order_then_the_samples) {
    QuarrydexHelp help(std::string("• Agate — Someone, CC BY 4.0 (https://x)\n  https://y"));
    const auto& chapters = help.chapters()->chapters();
    const std::vector<std::array<QString, 3>> want = {
        {"welcome", "Welcome", "hand.wave"},
        {"identify", "Identifying a stone", "viewfinder"},
        {"tests", "The home tests", "testtube.2"},
        {"library", "Library & favorites", "books.vertical"},
        {"collection", "Collection & history", "square.grid.2x2"},
        {"backup", "Backup & restore", "externaldrive"},
        {"look", "Themes & zoom", "paintpalette"},
        {"safety", "Safety & privacy", "exclamationmark.shield"},
        {"about", "About Orlo", "info.circle"},
        {"samples", "Sample collection & credits", "photo.stack"},
    };
    ASSERT_EQ(chapters.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) {
        EXPECT_EQ(chapters[i].id, want[i][0]);
        EXPECT_EQ(chapters[i].title, want[i][1]);
        EXPECT_EQ(chapters[i].symbol, want[i][2]);
        EXPECT_GT(chapters[i].text.size(), 300) << "written in full: " << want[i][0].toStdString();
    }
    EXPECT_EQ(help.count(), 10);
}

TEST(UiHelp, topics_open_their_chapter_and_unknown_ones_welcome) {
    QuarrydexHelp help(std::nullopt);
    EXPECT_EQ(help.indexOf("samples"), help.count() - 1);
    EXPECT_EQ(help.indexOf("identify"), 1);
    EXPECT_EQ(help.indexOf("welcome"), 0);
    EXPECT_EQ(help.indexOf("settings"), 0);
    EXPECT_EQ(help.indexOf(""), 0);
    EXPECT_EQ(help.indexOf("Samples"), 0) << "ids are exact";

    QSignalSpy requested(&help, &QuarrydexHelp::showRequested);
    help.show("samples");
    help.show("nonsense");
    ASSERT_EQ(requested.count(), 2);
    EXPECT_EQ(requested[0][0].toInt(), 9);
    EXPECT_EQ(requested[1][0].toInt(), 0);
}

TEST(UiHelp, chapters_begin_as_promised) {
    auto chapters = quarrydex::ui::baseHelpChapters();
    EXPECT_TRUE(chapter(chapters, "welcome")
                    .text.startsWith("Orlo Quarrydex is an offline field guide and identifier for "
                                     "rocks, minerals, gemstones, crystals, fossils and "
                                     "meteorites."));
    EXPECT_TRUE(
        chapter(chapters, "identify").text.startsWith("Quarrydex does NOT use an AI image model."));
    EXPECT_TRUE(chapter(chapters, "tests").text.startsWith("SCRATCH HARDNESS:"));
    for (const char* word : {"STREAK", "LUSTER", "WEIGHT", "MAGNET", "VINEGAR", "safety glasses"}) {
        EXPECT_TRUE(chapter(chapters, "tests").text.contains(word)) << word;
    }
    for (const char* mineral :
         {"Cinnabar", "mercury", "galena", "wulfenite", "vanadinite", "serpentine", "PRIVACY"}) {
        EXPECT_TRUE(chapter(chapters, "safety").text.contains(mineral)) << mineral;
    }
}

TEST(UiHelp, the_look_chapter_states_the_zoom_range_of_the_kit) {
    QString look = chapter(quarrydex::ui::baseHelpChapters(), "look").text;
    QString range = QStringLiteral("from %1% to %2%")
                        .arg(qRound(quarrydex::ui::VxZoom::minimum * 100))
                        .arg(qRound(quarrydex::ui::VxZoom::maximum * 100));
    EXPECT_EQ(range, "from 85% to 200%");
    EXPECT_TRUE(look.contains(range)) << look.toStdString();
    for (const char* name : {"Malachite", "Cobalt", "Rose Quartz", "Amethyst", "Obsidian",
                             "Hematite", "Zoom Level", "scroll bars"}) {
        EXPECT_TRUE(look.contains(name)) << name;
    }
}

TEST(UiHelp, the_samples_chapter_lists_the_credits_or_says_there_are_none) {
    HelpChapter with = quarrydex::ui::samplesHelpChapter(std::string("• Agate — A. Person"));
    EXPECT_TRUE(with.text.startsWith(
        "NEW TO QUARRYDEX? Choose Help > Load Sample Collection (or press \"Load Sample "
        "Collection\" on the empty My Collection screen)."));
    EXPECT_TRUE(with.text.contains("• Agate — A. Person"));
    EXPECT_TRUE(
        with.text.endsWith("Thank you to the photographers for sharing their work freely."));

    HelpChapter without = quarrydex::ui::samplesHelpChapter(std::nullopt);
    EXPECT_TRUE(without.text.contains("(No sample photos are included in this copy.)"));
    EXPECT_FALSE(without.text.contains("•"));
}

TEST(UiHelp, the_shipped_sample_credits_are_in_the_program_help) {
    std::optional<quarrydex::SampleSet> samples = quarrydex::SampleSet::bundled();
    if (!samples) {
        GTEST_SKIP() << "this build has no sample photos";
    }
    QString text = QuarrydexHelp::instance()->chapter(9).value("text").toString();
    EXPECT_TRUE(text.contains(QString::fromStdString(samples->creditsText())));
}

TEST(UiHelp, the_reading_pane_shows_lead_words_in_bold_and_escapes_the_rest) {
    QString styled = quarrydex::ui::styledHelpText(
        "SCRATCH HARDNESS: press <firmly> & look.\n\nNEW TO IT? Yes\n• Glassy: like a window\n"
        "Quarrydex does NOT guess.");
    EXPECT_EQ(styled,
              "<b>SCRATCH HARDNESS:</b> press &lt;firmly&gt; &amp; look.<br><br>"
              "<b>NEW TO IT?</b> Yes<br>• Glassy: like a window<br>Quarrydex does NOT guess.");
}

TEST(UiHelp, the_chapter_list_model_is_well_behaved) {
    QuarrydexHelp help(std::nullopt);
    QAbstractItemModelTester tester(help.chapters(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    auto roles = help.chapters()->roleNames();
    EXPECT_EQ(roles.value(Qt::UserRole + 1), "chapterID");
    EXPECT_EQ(roles.value(Qt::UserRole + 2), "title");
    EXPECT_EQ(roles.value(Qt::UserRole + 3), "symbol");
    QModelIndex last = help.chapters()->index(9);
    EXPECT_EQ(last.data(Qt::UserRole + 1).toString(), "samples");
    EXPECT_EQ(help.chapter(9).value("title").toString(), "Sample collection & credits");
    EXPECT_TRUE(help.chapter(10).isEmpty());
    EXPECT_TRUE(help.chapter(-1).isEmpty());
}
