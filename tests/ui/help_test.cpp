#include "ui/help.h"

#include <QAbstractItemModelTester>
#include <gtest/gtest.h>

using quarrydex::ui::HelpChapter;
using quarrydex::ui::QuarrydexHelp;

TEST(UiHelp, nine_fixed_chapters_in_order_then_the_samples) {
    QuarrydexHelp help(std::string("• Agate — Someone, CC BY 4.0 (https://x)\n  https://y"));
    QStringList ids;
    for (const HelpChapter& c : help.chapters()->chapters()) {
        ids << c.id;
        EXPECT_GT(c.text.size(), 300) << "written in full: " << c.id.toStdString();
    }
    EXPECT_EQ(ids, (QStringList{"welcome", "identify", "tests", "library", "collection", "backup",
                                "look", "safety", "about", "samples"}));
    EXPECT_EQ(help.count(), 10);
    QAbstractItemModelTester tester(help.chapters(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(help.chapters()->index(9).data(Qt::UserRole + 1).toString(), "samples");
    EXPECT_TRUE(help.chapter(10).isEmpty() && help.chapter(-1).isEmpty());
}

TEST(UiHelp, the_samples_chapter_lists_the_credits_or_says_there_are_none) {
    HelpChapter with = quarrydex::ui::samplesHelpChapter(std::string("• Agate — A. Person"));
    EXPECT_TRUE(with.text.contains("• Agate — A. Person"));

    HelpChapter without = quarrydex::ui::samplesHelpChapter(std::nullopt);
    EXPECT_TRUE(without.text.contains("(No sample photos are included in this copy.)"));
    EXPECT_FALSE(without.text.contains("•"));
}

TEST(UiHelp, the_reading_pane_shows_lead_words_in_bold_and_escapes_the_rest) {
    QString styled = quarrydex::ui::styledHelpText(
        "SCRATCH HARDNESS: press <firmly> & look.\n\nNEW TO IT? Yes\n• Glassy: like a window\n"
        "Quarrydex does NOT guess.");
    EXPECT_EQ(styled,
              "<b>SCRATCH HARDNESS:</b> press &lt;firmly&gt; &amp; look.<br><br>"
              "<b>NEW TO IT?</b> Yes<br>• Glassy: like a window<br>Quarrydex does NOT guess.");
}
