import QtQuick
import Quarrydex

// The keyboard focus ring drawn just outside its parent while `shown`.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    anchors.margins: -Theme.spacingSmall
    radius: Theme.corner / 2 + Theme.spacingSmall
    color: Theme.clear
    border.width: Theme.unit
    border.color: Theme.accent
    visible: shown
    Accessible.ignored: true
}
