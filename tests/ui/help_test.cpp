#include "ui/help.h"
#include "ui/help_block.h"

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

TEST(UiHelp, the_reading_pane_gets_lead_words_in_bold_hanging_markers_and_escaped_text) {
    using quarrydex::ui::HelpBlock;
    const std::vector<HelpBlock> blocks = quarrydex::ui::helpBlocks(
        "SCRATCH HARDNESS: press <firmly> & look.\n\nQUICK START\n1. Pick a section.\n"
        "12. Give it a photo\n\n• Glassy: like a window\n• Agate — A, CC BY (https://l/4.0/)\n"
        "  https://c/File:Gold_(Drava,_Hungary).jpg\nQuarrydex does NOT guess.");
    const std::vector<HelpBlock> expected = {
        {"", "<b>SCRATCH HARDNESS:</b> press &lt;firmly&gt; &amp; look.", true},
        {"", "<b>QUICK START</b>", true},
        {"1.", "Pick a section.", false},
        {"12.", "Give it a photo", false},
        {"\u2022", "Glassy: like a window", true},
        {"\u2022",
         "Agate — A, CC BY (<a href=\"https://l/4.0/\">https://l/4.0/</a>)<br>"
         "<a href=\"https://c/File:Gold_(Drava,_Hungary).jpg\">"
         "https://c/File:Gold_(Drava,_Hungary).jpg</a>",
         false},
        {"", "Quarrydex does NOT guess.", false},
    };
    EXPECT_EQ(blocks, expected);
}

TEST(UiHelp, addresses_become_links_without_the_punctuation_around_them) {
    EXPECT_EQ(quarrydex::ui::linkedHelpText("See https://a.example/x?a=1&b=2. Then <b>"),
              "See <a href=\"https://a.example/x?a=1&amp;b=2\">https://a.example/x?a=1&amp;b=2</a>."
              " Then &lt;b&gt;");
    EXPECT_EQ(quarrydex::ui::linkedHelpText("no address, http:/ nor ftp://x"),
              "no address, http:/ nor ftp://x");
}
