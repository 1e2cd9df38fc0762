import QtQuick
import QtQuick.Controls
import Quarrydex

// The help window: chapters and reading pane, zoomed like the main window.
ThemedWindow {
    id: window

    property alias topic: view.topic

    // Shows the window on the chapter at `index`, reusing it when it is already open.
    function openOn(index) {
        topic = index
        show()
        raise()
        requestActivate()
    }

    objectName: "helpWindow"
    title: qsTr("%1 Help").arg(Branding.displayName)
    width: Theme.helpWidth
    height: Theme.helpHeight
    minimumWidth: Theme.helpMinWidth
    minimumHeight: Theme.helpMinHeight
    visible: false

    VxZoomHost {
        anchors.fill: parent
        minWidth: Theme.helpMinWidth
        minHeight: Theme.helpMinHeight

        HelpView {
            id: view
            anchors.fill: parent
        }
    }

    VxZoomShortcuts {}

    Shortcut {
        sequences: [StandardKey.Close]
        onActivated: window.close()
    }
}
