#pragma once
// The windowed program: the application object, the kit's hooks, the one AppModel and the
// main window. The launcher calls runWindowedApplication() for every start without
// "--selftest".

#include "app/launcher.h"

#include <QUrl>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

class QQmlEngine;

namespace quarrydex {
class AppModel;
}

namespace quarrydex::ui {

// Why no window can be opened, or none. Without a display Qt's platform plugin would abort
// the process, so this is checked before any Qt object exists. `platform` is the requested
// Qt platform ("-platform" or $QT_QPA_PLATFORM, empty when neither); `env` reads an
// environment variable (empty when unset).
std::optional<std::string>
missingDisplayMessage(const std::string& platform,
                      const std::function<std::string(const char*)>& env);

// The folder after "--data-root" resolved against the current folder, else the store's
// default root.
std::filesystem::path dataRoot(const Launcher& launcher);

// What a second start on a data folder already in use prints before it exits with 1.
std::string alreadyOpenMessage(const std::filesystem::path& root);

// Names the application for the preferences (organisation "Fernwick", application
// "Quarrydex") and the desktop. Call before the application object is created.
void describeApplication();
// Picks the controls style and installs the kit's theme provider and help hook. Call once,
// after the application object exists and before QML loads.
void installKit();
// Makes `model` the `AppModel` singleton of the QML module, for every engine of the process.
void registerModel(AppModel* model);
// Lets `engine` find the module's qmldir, which is compiled into the program's resources, and
// gives it the image providers over the registered model: the store's thumbnails and the
// session photo (call registerModel() first).
void prepareEngine(QQmlEngine& engine);
// The main window's QML.
QUrl mainWindowUrl();
// The window that says another running copy has the data folder open (its `message`).
QUrl alreadyOpenWindowUrl();
// Shows `message` in that window until it is closed, for a start from the desktop, where
// nobody reads the terminal. Makes its own application object from `argc` and `argv`.
void showAlreadyOpen(int& argc, char** argv, const std::string& message);

// Runs the program until its main window closes; returns the exit status. Prints a message
// and returns 1 when there is no display, or when another running copy has the same data
// folder (see DataFolderLock; the lock is held until this returns).
int runWindowedApplication(const Launcher& launcher);

} // namespace quarrydex::ui
