import QtQuick
import QtQuick.Layouts
import Quarrydex

// Shown instead of the screens when something the whole window needs is missing.
Item {
    id: notice

    required property string title
    required property string message

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.margin, Theme.readingWidth)
        spacing: Theme.spacing

        SymbolIcon {
            symbol: "exclamationmark.triangle"
            size: Theme.iconLarge
            color: Theme.warn
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            text: notice.title
            color: Theme.text
            font.pixelSize: Theme.fontTitle
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
        Text {
            objectName: "problemMessage"
            text: notice.message
            color: Theme.textMuted
            font.pixelSize: Theme.fontBody
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
    }
}
