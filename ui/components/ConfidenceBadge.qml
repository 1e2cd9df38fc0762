import QtQuick
import Quarrydex

// A small label of a confidence level ("strong", "likely", "possible", "roughGuess").
Rectangle {
    id: badge

    required property string level
    required property string title

    readonly property color tint: level === "strong" ? Theme.accent
                                : level === "likely" ? Theme.offlineText
                                : level === "possible" ? Theme.gold
                                : Theme.textMuted

    implicitWidth: label.implicitWidth + 2 * Theme.spacing
    implicitHeight: label.implicitHeight + Theme.spacing
    radius: height / 2
    color: Theme.surfaceRaised
    border.width: Theme.hairlineWidth
    border.color: tint

    Text {
        id: label
        anchors.centerIn: parent
        text: badge.title
        color: badge.tint
        font.pixelSize: Theme.fontCaption
        font.weight: Font.DemiBold
    }
}
