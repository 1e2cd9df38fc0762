// The per-section navigation stack: what opens over a section's main screen and how the
// way back unwinds it, as the screens rely on it.

#include "app/section_navigator.h"

#include <QSignalSpy>
#include <QTest>

using namespace quarrydex;

class SectionNavigatorTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void details_stack_and_unwind_to_the_main_screen() {
        SectionNavigator nav;
        QSignalSpy changed(&nav, &SectionNavigator::changed);
        QCOMPARE(nav.depth(), 0);
        QCOMPARE(nav.kind(), QString());
        QCOMPARE(nav.confidence(), -1.0);

        nav.push(QStringLiteral("history"), QStringLiteral("A1"));
        nav.push(QStringLiteral("specimen"), QStringLiteral("quartz"), 0.42);
        QCOMPARE(nav.depth(), 2);
        QCOMPARE(nav.kind(), QStringLiteral("specimen"));
        QCOMPARE(nav.itemId(), QStringLiteral("quartz"));
        QCOMPARE(nav.confidence(), 0.42);

        QVERIFY(nav.pop());
        QCOMPARE(nav.kind(), QStringLiteral("history"));
        QCOMPARE(nav.confidence(), -1.0);
        QVERIFY(nav.pop());
        QVERIFY(!nav.pop()); // already on the main screen
        QCOMPARE(changed.count(), 4);
    }

    void reopening_the_top_screen_adds_nothing_and_clear_goes_home() {
        SectionNavigator nav;
        nav.push(QStringLiteral("specimen"), QStringLiteral("gold"));
        nav.push(QStringLiteral("specimen"), QStringLiteral("gold"));
        QCOMPARE(nav.depth(), 1);
        nav.push(QStringLiteral("specimen"), QStringLiteral("pyrite")); // a look-alike
        QCOMPARE(nav.depth(), 2);

        QSignalSpy changed(&nav, &SectionNavigator::changed);
        nav.clear();
        QCOMPARE(nav.depth(), 0);
        nav.clear();
        QCOMPARE(changed.count(), 1);
    }
};

QTEST_GUILESS_MAIN(SectionNavigatorTest)
#include "section_navigator_test.moc"
