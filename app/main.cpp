#include "app/launcher.h"
#include "ui/windowed_app.h"

#include <QtQml/qqmlextensionplugin.h>

// The window's QML module is linked statically; this pulls in its plugin.
Q_IMPORT_QML_PLUGIN(QuarrydexPlugin)

int main(int argc, char** argv) {
    return quarrydex::Launcher(argc, argv).run(&quarrydex::ui::runWindowedApplication);
}
