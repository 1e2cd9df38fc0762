import QtQuick
import Quarrydex

// The keyboard focus ring drawn just outside its parent while `shown`. Rings are shown while
// the keyboard is in use: `shown: item.activeFocus && VxFocusRings.keyboard`.
Rectangle {
    property bool shown: false

    objectName: "focusRing"

    anchors.fill: parent
    anchors.margins: -Theme.spacingSmall
    radius: Theme.corner / 2 + Theme.spacingSmall
    color: Theme.clear
    border.width: Theme.unit
    border.color: Theme.accent
    visible: shown
    Accessible.ignored: true
}
