#include "ui/windowed_app.h"

#include "app/app_model.h"
#include "store/data_folder_lock.h"
#include "ui/first_frame_report.h"
#include "ui/help.h"
#include "ui/kit/kit_host.h"
#include "ui/screenshotter.h"
#include "ui/theme.h"
#include "ui/thumbnail_provider.h"

#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTimer>
#include <QtQml/qqml.h>

#include <cstdlib>
#include <future>
#include <iostream>
#include <memory>

namespace quarrydex::ui {

namespace {

constexpr const char* applicationID = "example.fernwick.Quarrydex";

// The model registerModel() made the QML singleton; engines prepared later serve its photos.
AppModel* registeredModel = nullptr;

bool startsWith(const std::string& text, std::string_view prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
}

std::string requestedPlatform(const Launcher& launcher) {
    if (auto platform = launcher.argument("-platform")) {
        return *platform;
    }
    const char* env = std::getenv("QT_QPA_PLATFORM");
    return env ? env : "";
}

} // namespace

std::optional<std::string>
missingDisplayMessage(const std::string& platform,
                      const std::function<std::string(const char*)>& env) {
    // "wayland;xcb" means: try Wayland, then X11. Only the window systems need a display;
    // offscreen, vnc, eglfs and the like do not.
    bool wantsWayland = platform.empty() || startsWith(platform, "wayland");
    bool wantsX11 = platform.empty() || startsWith(platform, "xcb") ||
                    platform.find(";xcb") != std::string::npos;
    if (!wantsWayland && !wantsX11) {
        return std::nullopt;
    }
    if ((wantsX11 && !env("DISPLAY").empty()) ||
        (wantsWayland && !env("WAYLAND_DISPLAY").empty())) {
        return std::nullopt;
    }
    return std::string(
        "Quarrydex couldn't open its window: there is no display (neither DISPLAY nor "
        "WAYLAND_DISPLAY is set). Start it from a desktop session, or run \"quarrydex "
        "--selftest\" to check the library, the identifier, backups and the sample collection "
        "without a window.");
}

std::string alreadyOpenMessage(const std::filesystem::path& root) {
    return "Quarrydex is already open with this data folder (" + root.string() +
           "). Switch to that window, or close it first.";
}

std::filesystem::path dataRoot(const Launcher& launcher) {
    if (auto root = launcher.argument("--data-root")) {
        std::error_code error;
        std::filesystem::path absolute = std::filesystem::absolute(*root, error);
        return error ? std::filesystem::path(*root) : absolute;
    }
    return StoneStore::defaultRoot();
}

void describeApplication() {
    QGuiApplication::setOrganizationName(QStringLiteral("Fernwick"));
    QGuiApplication::setApplicationName(QStringLiteral("Quarrydex"));
    // No display name: Qt would append it to every window title that doesn't end with it,
    // and each window names itself in full ("Orlo Quarrydex", "Orlo Quarrydex Help").
    QGuiApplication::setDesktopFileName(QString::fromUtf8(applicationID));
}

void installKit() {
    // Fusion draws the standard controls (menus, scroll bars, dialogs) from the palette,
    // which the windows bind to the theme: always dark, whatever the desktop uses.
    QQuickStyle::setStyle(QStringLiteral("Fusion"));

    Theme* theme = Theme::instance();
    OrloKitHost* kit = OrloKitHost::instance();
    kit->setThemeProvider([theme] { return kitThemeFor(*theme); });
    QObject::connect(theme, &Theme::changed, kit, &OrloKitHost::themeChanged, Qt::UniqueConnection);
    kit->setHelpHook([](const QString& topic) { QuarrydexHelp::instance()->show(topic); });
}

void registerModel(AppModel* model) {
    qmlRegisterSingletonInstance("Quarrydex", 1, 0, "AppModel", model);
    registeredModel = model;
}

void prepareEngine(QQmlEngine& engine) {
    // Qt 6.4 looks for modules in "qrc:/qt-project.org/imports" but not at the resource root,
    // where qt_add_qml_module puts this one.
    engine.addImportPath(QStringLiteral("qrc:/"));

    // "image://thumbnail/<file>": the store's photos, decoded off the GUI thread at the size
    // shown; "image://thumbnail/@session" the photo of the current identification.
    if (AppModel* model = registeredModel) {
        auto* thumbnails = new ThumbnailProvider(model->store().photosFolder());
        thumbnails->setSessionPhoto(model->photoData());
        QObject::connect(model, &AppModel::photoDataChanged, &engine,
                         [thumbnails, model] { thumbnails->setSessionPhoto(model->photoData()); });
        engine.addImageProvider(QString::fromLatin1(ThumbnailProvider::providerName), thumbnails);
    }
}

QUrl mainWindowUrl() {
    return QUrl(QStringLiteral("qrc:/Quarrydex/screens/MainWindow.qml"));
}

QUrl alreadyOpenWindowUrl() {
    return QUrl(QStringLiteral("qrc:/Quarrydex/screens/AlreadyOpenWindow.qml"));
}

void showAlreadyOpen(int& argc, char** argv, const std::string& message) {
    describeApplication();
    QGuiApplication app(argc, argv);
    installKit();
    QQmlApplicationEngine engine;
    prepareEngine(engine);
    engine.setInitialProperties({{QStringLiteral("message"), QString::fromStdString(message)}});
    engine.load(alreadyOpenWindowUrl());
    if (!engine.rootObjects().isEmpty()) {
        app.exec();
    }
}

int runWindowedApplication(const Launcher& launcher) {
    auto env = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    };
    if (auto message = missingDisplayMessage(requestedPlatform(launcher), env)) {
        std::cerr << *message << "\n";
        return 1;
    }

    // One running copy per data folder, held until the program ends; with it held, what a
    // killed run left behind can go. A folder that cannot be locked at all (read-only, say)
    // is opened anyway: the store reports its own problems with it.
    // QGuiApplication keeps references to argc and argv for its whole life.
    std::vector<std::string> arguments = launcher.arguments();
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    int argc = static_cast<int>(arguments.size());

    const std::filesystem::path root = dataRoot(launcher);
    Result<DataFolderLock, DataFolderLock::Failure> lock = DataFolderLock::acquire(root);
    if (!lock && lock.error().kind == DataFolderLock::Failure::Kind::heldElsewhere) {
        const std::string message = alreadyOpenMessage(root);
        std::cerr << message << "\n";
        // Offscreen, nobody could read or close the window.
        if (!startsWith(requestedPlatform(launcher), "offscreen")) {
            showAlreadyOpen(argc, argv.data(), message);
        }
        return 1;
    }
    if (lock) {
        StoneStore::removeLeftovers(root);
    }

    describeApplication();
    QGuiApplication app(argc, argv.data());
    // The library is read on a worker while the kit and the QML engine start. Not before
    // the application exists: that sets the C locale, which number parsing reads.
    std::future<SpecimenLibrary> libraryLoad =
        std::async(std::launch::async, [] { return SpecimenLibrary::bundled(); });
    installKit();

    // Made once the library is in; it outlives the engine and everything the engine made.
    std::unique_ptr<AppModel> model;
    QQmlApplicationEngine engine;

    model = std::make_unique<AppModel>(std::make_shared<const SpecimenLibrary>(libraryLoad.get()),
                                       root);
    registerModel(model.get());
    prepareEngine(engine);
    QObject::connect(
        &engine, &QQmlApplicationEngine::objectCreated, &app,
        [](QObject* object, const QUrl&) {
            if (!object) {
                QCoreApplication::exit(1);
            }
        },
        Qt::QueuedConnection);
    engine.load(mainWindowUrl());
    if (engine.rootObjects().isEmpty()) {
        std::cerr << "Quarrydex couldn't load its main window.\n";
        return 1;
    }
    auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    reportFirstFrame(window, launcher.startedAt());
    // The icon is drawn from its SVG after the first frame, not before it.
    if (window) {
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &app,
            [] {
                QGuiApplication::setWindowIcon(
                    QIcon(QStringLiteral(":/Quarrydex/resources/quarrydex.svg")));
            },
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
    // "--screenshots FOLDER": the tour starts once the window has appeared and laid out.
    if (auto folder = launcher.argument("--screenshots")) {
        AppModel* shared = model.get();
        QTimer::singleShot(Screenshotter::startDelay, &app, [shared, folder = *folder] {
            auto* tour = new Screenshotter(QFile::decodeName(folder.c_str()), *shared, shared);
            tour->run();
        });
    }
    return app.exec();
}

} // namespace quarrydex::ui
