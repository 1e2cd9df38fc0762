import QtQuick
import QtQuick.Layouts
import Quarrydex

// A help chapter in a list: its symbol and title, wrapped rather than cut when the list is
// narrow. `focused` outlines the row that the keyboard moves.
Rectangle {
    id: row

    required property string title
    required property string symbol
    required property string chapterID
    required property int index
    property bool selected: false
    property bool focused: false
    property bool showsChevron: false

    signal activated()

    objectName: "chapterRow_" + chapterID
    implicitHeight: Math.max(Theme.rowHeight, label.implicitHeight + 2 * Theme.spacing)
    radius: Theme.spacing
    color: selected ? Theme.selection : mouse.containsMouse ? Theme.hover : Theme.clear
    border.width: focused ? Theme.unit : 0
    border.color: Theme.accent

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
            id: label
            objectName: "chapterRowTitle"
            text: row.title
            color: Theme.text
            font.pixelSize: Theme.fontBody
            font.weight: row.selected ? Font.DemiBold : Font.Normal
            wrapMode: Text.WordWrap
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
    Accessible.selected: selected
}
