import QtQuick
import QtQuick.Layouts
import Quarrydex

// One section in the sidebar: its symbol and title, and above the first row of a group the
// group's title. The selected row shows a tinted plate with a bar beside it and its title
// in semibold, so it stands out even where the accent is close to the text colour; `focused`
// outlines the row the keyboard moves.
Item {
    id: row

    required property var modelData
    required property int index
    property bool firstOfGroup: false
    property bool selected: false
    property bool focused: false

    signal activated()

    objectName: "sidebarRow_" + modelData.raw
    implicitHeight: (firstOfGroup ? header.implicitHeight : 0) + Theme.rowHeight
    implicitWidth: Theme.sidebarWidth

    Text {
        id: header
        visible: row.firstOfGroup
        anchors.left: parent.left
        anchors.leftMargin: Theme.spacingLarge
        anchors.top: parent.top
        topPadding: row.index === 0 ? Theme.spacingSmall : Theme.spacingLarge
        bottomPadding: Theme.spacingSmall
        text: row.modelData.group
        color: Theme.textMuted
        font.pixelSize: Theme.fontCaption
        font.weight: Font.DemiBold
    }

    // Beside the selected row's plate, in the margin of the list.
    Rectangle {
        objectName: "sidebarRowBar"
        visible: row.selected
        x: Theme.spacingSmall / 2
        anchors.verticalCenter: plate.verticalCenter
        width: Theme.spacingSmall
        height: plate.height - 2 * Theme.spacing
        radius: width / 2
        color: Theme.accent
    }

    Rectangle {
        id: plate
        objectName: "sidebarRowPlate"
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.leftMargin: Theme.spacing
        anchors.rightMargin: Theme.spacing
        height: Theme.rowHeight
        radius: Theme.spacing
        color: row.selected ? Theme.selection : mouse.containsMouse ? Theme.hover : Theme.clear
        border.width: row.focused ? Theme.unit : 0
        border.color: Theme.accent

        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: Theme.spacing
            anchors.rightMargin: Theme.spacing
            spacing: Theme.spacing

            SymbolIcon {
                symbol: row.modelData.symbol
                size: Theme.iconSize
                color: row.selected ? Theme.accent : Theme.textMuted
                Layout.preferredWidth: Theme.iconSize + Theme.spacingSmall
            }
            Text {
                text: row.modelData.title
                color: Theme.text
                font.pixelSize: Theme.fontBody
                font.weight: row.selected ? Font.DemiBold : Font.Normal
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
        }

        MouseArea {
            id: mouse
            anchors.fill: parent
            hoverEnabled: true
            onClicked: row.activated()
        }
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: modelData.title
    Accessible.selected: selected
}
