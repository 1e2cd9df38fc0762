import QtQuick
import QtQuick.Layouts
import Quarrydex

// A labelled fact of a species ("Hardness", "6–7 Mohs") on a small raised plate.
Rectangle {
    id: tile

    required property string label
    required property string value

    implicitWidth: Theme.buttonWidth * 3
    implicitHeight: column.implicitHeight + 2 * Theme.spacing
    radius: Theme.spacing
    color: Theme.surface
    border.width: Theme.hairlineWidth
    border.color: Theme.hairline

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: Theme.spacing
        spacing: Theme.spacingSmall / 2

        Text {
            objectName: "factLabel"
            text: tile.label
            color: Theme.textMuted
            font.pixelSize: Theme.fontCaption
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            Layout.fillWidth: true
        }
        Text {
            objectName: "factValue"
            text: tile.value
            color: Theme.text
            font.pixelSize: Theme.fontBody
            wrapMode: Text.WordWrap
            Layout.fillWidth: true
        }
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value
}
