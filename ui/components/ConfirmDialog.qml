import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// Asks before something that cannot be undone: a question, a message, "Cancel" and the
// confirming button. Cancel has the focus, so Return alone never destroys anything; Escape
// cancels.
Dialog {
    id: dialog

    property string message: ""
    property string confirmText: qsTr("OK")

    signal confirmed()

    modal: true
    anchors.centerIn: Overlay.overlay
    padding: Theme.margin
    closePolicy: Popup.CloseOnEscape

    Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    background: Rectangle {
        color: Theme.surface
        radius: Theme.corner
        border.color: Theme.hairline
    }

    header: Item {}

    onOpened: cancelButton.forceActiveFocus()

    ColumnLayout {
        spacing: Theme.spacing
        width: Theme.dialogWidth * 3 / 2

        Text {
            objectName: "confirmTitle"
            text: dialog.title
            color: Theme.text
            font.pixelSize: Theme.fontHeadline
            font.weight: Font.Bold
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        Text {
            objectName: "confirmMessage"
            text: dialog.message
            color: Theme.textMuted
            font.pixelSize: Theme.fontBody
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.spacing
            Layout.topMargin: Theme.spacing
            Layout.alignment: Qt.AlignRight

            VxChromeButton {
                id: cancelButton
                objectName: "confirmCancel"
                text: qsTr("Cancel")
                onClicked: dialog.reject()
                Keys.onReturnPressed: dialog.reject()
                Keys.onEnterPressed: dialog.reject()
            }
            VxChromeButton {
                objectName: "confirmButton"
                prominent: true
                text: dialog.confirmText
                onClicked: dialog.accept()
                Keys.onReturnPressed: dialog.accept()
                Keys.onEnterPressed: dialog.accept()
            }
        }
    }

    onAccepted: confirmed()
}
