import QtQuick
import QtQuick.Layouts
import Quarrydex

// A help chapter in a list: its symbol and title.
Rectangle {
    id: row

    required property string title
    required property string symbol
    required property string chapterID
    required property int index
    property bool selected: false
    property bool showsChevron: false

    signal activated()

    objectName: "chapterRow_" + chapterID
    implicitHeight: Theme.rowHeight
    radius: Theme.spacing
    color: selected ? Theme.selection : mouse.containsMouse ? Theme.hover : Theme.clear

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.spacing
        anchors.rightMargin: Theme.spacing
        spacing: Theme.spacing

        SymbolIcon {
            symbol: row.symbol
            color: row.selected ? Theme.accent : Theme.textMuted
            Layout.preferredWidth: Theme.iconSize + Theme.spacingSmall
        }
        Text {
            text: row.title
            color: Theme.text
            font.pixelSize: Theme.fontBody
            font.weight: row.selected ? Font.DemiBold : Font.Normal
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        SymbolIcon {
            visible: row.showsChevron
            symbol: "chevron.right"
            color: Theme.textMuted
        }
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        onClicked: row.activated()
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: title
}
