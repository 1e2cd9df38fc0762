#include "ui/first_frame.h"

#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using quarrydex::ui::FirstFrame;

// A shown window passes once its first frame has gone to be drawn, with one signal, and
// stays passed through later frames.
TEST(UiFirstFrame, passes_once_with_the_first_frame_of_a_shown_window) {
    QQuickWindow window;
    window.resize(120, 80);
    FirstFrame watch;
    QSignalSpy changed(&watch, &FirstFrame::passedChanged);
    watch.setWindow(&window);
    EXPECT_FALSE(watch.passed());

    window.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return watch.passed(); }, FirstFrame::fallbackDelay / 2));
    QSignalSpy drawn(&window, &QQuickWindow::frameSwapped);
    window.update();
    drawn.wait(2000);
    EXPECT_TRUE(watch.passed());
    EXPECT_EQ(changed.count(), 1);
}

// A window that is never drawn still lets its content be made, after the fallback delay; a
// watch without a window never passes.
TEST(UiFirstFrame, a_window_never_drawn_passes_after_the_fallback_delay) {
    QQuickWindow hidden;
    FirstFrame watch;
    watch.setWindow(&hidden);
    FirstFrame idle;
    QTest::qWait(FirstFrame::fallbackDelay / 2);
    EXPECT_FALSE(watch.passed());
    EXPECT_TRUE(QTest::qWaitFor([&] { return watch.passed(); }, FirstFrame::fallbackDelay * 2));
    EXPECT_FALSE(idle.passed());
}
