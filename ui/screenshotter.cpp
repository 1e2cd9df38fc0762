#include "ui/screenshotter.h"

#include "app/app_model.h"
#include "store/atomic_file.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace quarrydex::ui {

namespace {

// Image.Loading and Loader.Loading.
constexpr int kLoadingStatus = 2;
constexpr std::chrono::milliseconds kLoadPoll{100};
constexpr int kLoadPollAttempts = 50;

void showSection(AppModel& model, AppSection section) {
    model.setCurrentSection(section);
}

// The program's visible Qt Quick windows, in the application's window order.
QList<QQuickWindow*> visibleWindows() {
    QList<QQuickWindow*> windows;
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        auto* quick = qobject_cast<QQuickWindow*>(window);
        if (quick && quick->isVisible() && quick->contentItem()) {
            windows.append(quick);
        }
    }
    return windows;
}

bool anyLoading(QQuickItem* item) {
    if (item->isVisible() &&
        (item->inherits("QQuickImageBase") || item->inherits("QQuickLoader")) &&
        item->property("status").toInt() == kLoadingStatus) {
        return true;
    }
    const QList<QQuickItem*> children = item->childItems();
    return std::any_of(children.begin(), children.end(), anyLoading);
}

void scrollFlickableToEnd(QQuickItem* flickable) {
    // List and grid views know their full length only once they have made the last row.
    if (flickable->metaObject()->indexOfMethod("positionViewAtEnd()") >= 0) {
        QMetaObject::invokeMethod(flickable, "positionViewAtEnd");
        return;
    }
    const qreal originY = flickable->property("originY").toReal();
    const qreal top = originY - flickable->property("topMargin").toReal();
    const qreal bottom = originY + flickable->property("contentHeight").toReal() +
                         flickable->property("bottomMargin").toReal() - flickable->height();
    flickable->setProperty("contentY", std::max(top, bottom));
}

bool writePng(const QImage& image, const QString& path) {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "PNG")) {
        return false;
    }
    const std::filesystem::path target(QFile::encodeName(path).toStdString());
    return AtomicFile::write(
               target, std::string_view(png.constData(), static_cast<std::size_t>(png.size())))
        .ok();
}

} // namespace

const std::vector<Screenshotter::Step>& Screenshotter::tour() {
    static const std::vector<Step> steps = {
        {"01-identify-empty", false, [](AppModel& m) { showSection(m, AppSection::identify); }},
        {"02-identify-results", false, [](AppModel& m) { m.loadDemoSession(); }},
        {"03-library", false, [](AppModel& m) { showSection(m, AppSection::library); }},
        {"04-detail", false, [](AppModel& m) { m.setDemoDetail(QStringLiteral("rhodochrosite")); }},
        {"05-favorites", false,
         [](AppModel& m) {
             m.setDemoDetail(QString());
             showSection(m, AppSection::favorites);
         }},
        {"06-collection", false, [](AppModel& m) { showSection(m, AppSection::collection); }},
        {"07-history", false, [](AppModel& m) { showSection(m, AppSection::history); }},
        {"08-backup", false, [](AppModel& m) { showSection(m, AppSection::backup); }},
        {"09-about", false, [](AppModel& m) { showSection(m, AppSection::about); }},
        {"10-identify-scrolled", true, [](AppModel& m) { showSection(m, AppSection::identify); }},
    };
    return steps;
}

Screenshotter::Screenshotter(QString folder, AppModel& model, QObject* parent)
    : QObject(parent), folder_(std::move(folder)), model_(model) {}

void Screenshotter::run() {
    QDir().mkpath(folder_);
    // The pictures are the same whatever size the window was left at (or the screen allows):
    // normal windows take the picture size for the tour and get their own back at its end, so
    // the place the window remembers doesn't change.
    for (QQuickWindow* window : visibleWindows()) {
        if (window->windowStates() == Qt::WindowNoState) {
            resized_.emplace_back(window, window->geometry());
            window->resize(pictureSize);
        }
    }
    model_.loadDemoData();
    next(0);
}

void Screenshotter::next(std::size_t index) {
    if (index >= tour().size()) {
        for (const auto& [window, geometry] : resized_) {
            if (window) {
                window->setGeometry(geometry);
            }
        }
        Q_EMIT finished();
        QCoreApplication::quit();
        return;
    }
    const Step& step = tour()[index];
    step.action(model_);
    QTimer::singleShot(stepDelay, this, [this, index, &step] {
        auto captureAndGoOn = [this, index, &step] {
            whenPicturesLoaded(
                [this, index, &step] {
                    capture(QString::fromUtf8(step.name));
                    next(index + 1);
                },
                kLoadPollAttempts);
        };
        if (!step.scrolled) {
            captureAndGoOn();
            return;
        }
        for (QQuickWindow* window : visibleWindows()) {
            scrollToEnd(window->contentItem());
        }
        QTimer::singleShot(scrollDelay, this, captureAndGoOn);
    });
}

void Screenshotter::whenPicturesLoaded(std::function<void()> then, int attemptsLeft) {
    const QList<QQuickWindow*> windows = visibleWindows();
    const bool loading =
        model_.preparingPhoto() || std::any_of(windows.begin(), windows.end(), [](auto* window) {
            return anyLoading(window->contentItem());
        });
    if (!loading || attemptsLeft <= 0) {
        then();
        return;
    }
    QTimer::singleShot(kLoadPoll, this, [this, then = std::move(then), attemptsLeft]() mutable {
        whenPicturesLoaded(std::move(then), attemptsLeft - 1);
    });
}

QStringList Screenshotter::capture(const QString& name) const {
    QStringList written;
    const QList<QQuickWindow*> windows = visibleWindows();
    for (qsizetype k = 0; k < windows.size(); ++k) {
        // The window's own content: on Linux the title bar and frame belong to the window
        // manager, which draws them outside the program, so they are not in the picture.
        const QImage image = windows[k]->grabWindow();
        const QString file =
            k == 0 ? name + QStringLiteral(".png") : name + QStringLiteral("-window%1.png").arg(k);
        const QString path = QDir(folder_).filePath(file);
        if (writePng(image, path)) {
            written.append(path);
        }
    }
    return written;
}

void Screenshotter::scrollToEnd(QQuickItem* root) {
    if (!root) {
        return;
    }
    if (root->inherits("QQuickFlickable")) {
        scrollFlickableToEnd(root);
    }
    const QList<QQuickItem*> children = root->childItems();
    for (QQuickItem* child : children) {
        scrollToEnd(child);
    }
}

} // namespace quarrydex::ui
