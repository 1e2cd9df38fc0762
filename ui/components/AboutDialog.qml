import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The program's about box: name, version and build, credits, the maker's website and the
// copyright line.
Dialog {
    id: dialog

    modal: true
    // Takes the keyboard, so Return answers OK and nothing reaches the window behind; only
    // Escape or OK close it, not a click beside it.
    focus: true
    closePolicy: Popup.CloseOnEscape
    anchors.centerIn: Overlay.overlay
    padding: Theme.margin

    Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    background: Rectangle {
        color: Theme.surface
        radius: Theme.corner
        border.color: Theme.hairline
    }

    ColumnLayout {
        spacing: Theme.spacing
        width: Theme.dialogWidth

        Image {
            source: "qrc:/Quarrydex/resources/quarrydex.svg"
            sourceSize.width: Theme.iconLarge * 2
            sourceSize.height: Theme.iconLarge * 2
            Layout.alignment: Qt.AlignHCenter
            Accessible.ignored: true
        }
        Text {
            objectName: "aboutName"
            text: Branding.displayName
            color: Theme.text
            font.pixelSize: Theme.fontHeadline
            font.weight: Font.Bold
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            objectName: "aboutVersion"
            text: qsTr("Version %1 (%2)").arg(Branding.version).arg(Branding.build)
            color: Theme.textMuted
            font.pixelSize: Theme.fontCaption
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            text: Branding.tagline + "\n\n" + Branding.byline
            color: Theme.text
            font.pixelSize: Theme.fontCaption
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
            Layout.topMargin: Theme.spacing
        }
        LinkText {
            text: Branding.websiteText
            url: Branding.website
            font.pixelSize: Theme.fontCaption
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            text: Branding.copyright
            color: Theme.textMuted
            font.pixelSize: Theme.fontCaption2
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
            Layout.topMargin: Theme.spacing
        }
        VxChromeButton {
            objectName: "aboutOk"
            text: qsTr("OK")
            prominent: true
            focus: true
            Layout.alignment: Qt.AlignHCenter
            Layout.topMargin: Theme.spacing
            Layout.preferredWidth: Theme.buttonWidth
            onClicked: dialog.accept()
            Keys.onReturnPressed: dialog.accept()
            Keys.onEnterPressed: dialog.accept()
        }
    }
}
