#pragma once
// The screenshot tour ("--screenshots FOLDER"): drives the running program through a fixed
// tour of its screens with demonstration data, saves a picture of every visible window at
// each stop into the folder, then quits the program. It works on the shared AppModel and the
// real store, so it is meant to be combined with "--data-root" on an empty folder.
//
// Everything runs on the GUI thread by timed steps: each step's action, then 1.8 s later the
// pictures (for the last step every scroll area is first scrolled to its end and the tour
// waits 0.6 s more). No step reports errors: a folder that cannot be made, a window that
// cannot be drawn or a file that cannot be written just gives no picture.

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

class QQuickItem;
class QQuickWindow;

namespace quarrydex {
class AppModel;
}

namespace quarrydex::ui {

class Screenshotter : public QObject {
    Q_OBJECT

public:
    struct Step {
        const char* name; // picture name, without ".png"
        bool scrolled;    // scroll every scroll area to its end before the picture
        std::function<void(AppModel&)> action;
    };

    // From the program's start to run().
    static constexpr std::chrono::milliseconds startDelay{2000};
    // From a step's action to its pictures.
    static constexpr std::chrono::milliseconds stepDelay{1800};
    // The size of the main window in the pictures.
    static constexpr QSize pictureSize{1200, 800};
    // From scrolling to the pictures of a scrolled step.
    static constexpr std::chrono::milliseconds scrollDelay{600};

    // The ten stops, in order.
    static const std::vector<Step>& tour();

    Screenshotter(QString folder, AppModel& model, QObject* parent = nullptr);

    // Makes the folder, fills an empty collection with the demonstration pieces and starts
    // the tour; the program quits after the last step (finished() comes first).
    void run();

    // One PNG per visible Qt Quick window of the program, in the application's window order:
    // `name`.png for the first, `name`-window<k>.png for the k-th after it (k from 1).
    // Existing files are replaced. Returns the paths written.
    QStringList capture(const QString& name) const;

    // Scrolls every Flickable (list views and scroll views included) under `root` to its
    // bottom edge.
    static void scrollToEnd(QQuickItem* root);

Q_SIGNALS:
    void finished();

private:
    void next(std::size_t index);
    // Calls `then` once no visible image of any window is still loading and the model is
    // not preparing a photo, or after a few seconds whatever the state.
    void whenPicturesLoaded(std::function<void()> then, int attemptsLeft);

    QString folder_;
    AppModel& model_;
    // Windows set to the picture size for the tour, with the place each had before.
    std::vector<std::pair<QPointer<QQuickWindow>, QRect>> resized_;
};

} // namespace quarrydex::ui
