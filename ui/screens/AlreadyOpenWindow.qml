import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// Shown instead of the main window when another running copy has this data folder open, so
// that a start from the desktop says why no window comes. OK, Return, Escape or closing the
// window ends the program.
ThemedWindow {
    id: window

    required property string message

    objectName: "alreadyOpenWindow"
    title: Branding.displayName
    width: Theme.readingWidth
    height: Theme.dialogWidth
    minimumWidth: Theme.dialogWidth
    minimumHeight: Theme.dialogWidth * 0.6
    visible: true

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: Theme.margin
        spacing: Theme.spacing

        ProblemNotice {
            title: qsTr("This data folder is in use")
            message: window.message
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
        Button {
            objectName: "alreadyOpenOk"
            text: qsTr("OK")
            focus: true
            Layout.alignment: Qt.AlignRight
            onClicked: window.close()
        }
    }
    Shortcut {
        sequences: [StandardKey.Cancel, "Return", "Enter"]
        onActivated: window.close()
    }

    onClosing: Qt.quit()
}
