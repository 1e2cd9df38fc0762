import QtQuick
import Quarrydex

// A small text chip; highlighted chips are drawn in the accent colour.
Rectangle {
    id: tag

    required property string text
    property bool highlighted: false

    implicitWidth: label.implicitWidth + 2 * Theme.spacing + Theme.spacingSmall
    implicitHeight: label.implicitHeight + Theme.spacing
    radius: height / 2
    color: highlighted ? Theme.accent : Theme.surfaceRaised
    border.width: Theme.hairlineWidth
    border.color: highlighted ? Theme.accent : Theme.hairline

    Text {
        id: label
        objectName: "tagText"
        anchors.centerIn: parent
        text: tag.text
        color: tag.highlighted ? Theme.onAccent : Theme.text
        font.pixelSize: Theme.fontCaption
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
