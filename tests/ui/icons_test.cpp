#include "app/app_section.h"
#include "identify/question.h"
#include "library/specimen.h"
#include "ui/help.h"
#include "ui/icons.h"

#include <QDirIterator>
#include <QFile>
#include <QFontInfo>
#include <QRawFont>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using quarrydex::ui::Icons;

namespace {

QString qs(std::string_view s) {
    return QString::fromUtf8(s.data(), qsizetype(s.size()));
}

// Every symbol name the program uses: the core's records, the help, and the QML sources
// (`symbol: "..."` and `Icons.glyph("...")`).
QSet<QString> symbolsInUse() {
    QSet<QString> names;
    for (auto s : quarrydex::allAppSections()) {
        names.insert(qs(quarrydex::symbol(s)));
    }
    for (const auto& c : quarrydex::allSpecimenCategories()) {
        names.insert(qs(c.symbol));
    }
    for (auto q : quarrydex::allQuestions()) {
        names.insert(qs(quarrydex::symbol(q)));
    }
    for (const auto& chapter : quarrydex::ui::baseHelpChapters()) {
        names.insert(chapter.symbol);
    }
    names.insert(quarrydex::ui::samplesHelpChapter(std::nullopt).symbol);

    static const QRegularExpression inQml(
        QStringLiteral(R"re((?:symbol:\s*|Icons\.glyph\()\s*"([a-z0-9.]+)")re"));
    QDirIterator files(QStringLiteral(QUARRYDEX_SOURCE_DIR "/ui"), {QStringLiteral("*.qml")},
                       QDir::Files, QDirIterator::Subdirectories);
    int qmlFiles = 0;
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        ++qmlFiles;
        const QString text = QString::fromUtf8(file.readAll());
        for (auto match = inQml.globalMatch(text); match.hasNext();) {
            names.insert(match.next().captured(1));
        }
    }
    EXPECT_GT(qmlFiles, 10);
    return names;
}

} // namespace

TEST(UiIcons, every_symbol_in_use_has_a_glyph) {
    QSet<QString> names = symbolsInUse();
    EXPECT_GE(names.size(), 25);
    for (const QString& name : names) {
        EXPECT_TRUE(Icons::has(name)) << "no icon for " << name.toStdString();
    }
}

TEST(UiIcons, every_glyph_of_the_table_is_in_the_font) {
    ASSERT_TRUE(QFile::exists(Icons::fontFile)) << "install fonts-materialdesignicons-webfont";
    ASSERT_TRUE(Icons::loadFont());
    QRawFont raw(QString::fromUtf8(Icons::fontFile), 24);
    ASSERT_TRUE(raw.isValid());
    QFont font(Icons::family());
    ASSERT_EQ(QFontInfo(font).family(), Icons::family()) << "the icon font is not in use";
    QSet<QString> seen;
    for (const auto& g : Icons::table()) {
        QString symbol = qs(g.symbol);
        EXPECT_FALSE(seen.contains(symbol)) << "listed twice: " << g.symbol;
        seen.insert(symbol);
        EXPECT_TRUE(raw.supportsCharacter(QChar(g.codePoint))) << g.symbol << " " << g.fontName;
        EXPECT_EQ(Icons::glyph(symbol), QString(QChar(g.codePoint)));
    }
}

TEST(UiIcons, an_unknown_name_draws_a_glyph_of_the_font_not_a_box) {
    QRawFont raw(QString::fromUtf8(Icons::fontFile), 24);
    QString fallback = Icons::glyph("no.such.symbol");
    ASSERT_EQ(fallback.size(), 1);
    EXPECT_TRUE(raw.supportsCharacter(fallback.at(0)));
    EXPECT_FALSE(Icons::has("no.such.symbol"));
    EXPECT_NE(Icons::glyph("star"), Icons::glyph("star.fill"));
}
