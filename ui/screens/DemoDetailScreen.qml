import QtQuick
import QtQuick.Layouts
import Quarrydex

// The detail of one library species opened by the model (AppModel.demoDetail). It shows
// the species' name until the full detail screen takes its place.
Item {
    id: screen

    required property string name

    objectName: "demoDetailScreen"

    ColumnLayout {
        anchors.centerIn: parent
        spacing: Theme.spacingLarge

        SymbolIcon {
            symbol: "books.vertical"
            size: Theme.iconLarge * 2
            color: Theme.accent
            Layout.alignment: Qt.AlignHCenter
        }
        Text {
            objectName: "demoDetailName"
            text: screen.name
            color: Theme.text
            font.pixelSize: Theme.fontLargeTitle
            font.weight: Font.DemiBold
            Layout.alignment: Qt.AlignHCenter
        }
    }
}
