import QtQuick
import Quarrydex

// A small colour plate for a species: its first reference colour ("#RRGGBB" from the library),
// or the raised surface colour when there is none.
Rectangle {
    id: swatch

    property string colorHex: ""
    property real size: Theme.iconLarge

    implicitWidth: size
    implicitHeight: size
    radius: Math.round(size / 4)
    color: colorHex !== "" ? colorHex : Theme.surfaceRaised
    border.width: Theme.hairlineWidth
    border.color: Theme.hairline

    // A soft highlight along the top, so even dark colours read as a polished stone.
    Rectangle {
        anchors.fill: parent
        anchors.margins: Theme.hairlineWidth
        radius: Math.max(0, swatch.radius - Theme.hairlineWidth)
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.lighter(swatch.color, 1.35) }
            GradientStop { position: 0.6; color: swatch.color }
        }
    }

    Accessible.ignored: true
}
