import QtQuick
import QtQuick.Layouts
import Quarrydex

// A section whose screen is still to come: its symbol and title.
Item {
    id: screen

    required property string title
    required property string symbol

    objectName: "screen_" + title

    ColumnLayout {
        anchors.centerIn: parent
        spacing: Theme.spacingLarge

        SymbolIcon {
            symbol: screen.symbol
            size: Theme.iconLarge * 2
            color: Theme.accent
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            objectName: "screenTitle"
            text: screen.title
            color: Theme.text
            font.pixelSize: Theme.fontLargeTitle
            font.weight: Font.DemiBold
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
