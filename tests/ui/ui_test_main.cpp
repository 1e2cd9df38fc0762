// Runs the interface's unit tests inside a QGuiApplication on the offscreen platform, with
// the preferences in a private temporary folder so no test touches the user's settings.

#include "ui/windowed_app.h"

#include <QGuiApplication>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>
#include <gtest/gtest.h>

// The program's QML module is linked statically; this pulls in its plugin.
Q_IMPORT_QML_PLUGIN(QuarrydexPlugin)

int main(int argc, char** argv) {
    // Test discovery runs the binary outside CTest's environment, without a display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    quarrydex::ui::describeApplication();

    QGuiApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
