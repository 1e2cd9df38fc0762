import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The kit's button: plain (a quiet plate with an outline) or prominent (filled with the
// accent), normal or compact. `glyph` and `glyphFamily` draw an optional icon before the text.
Button {
    id: button

    property bool prominent: false
    property bool compact: false
    property string glyph: ""
    property string glyphFamily: ""

    // A typed value, not a var: a var property is already gone while a button that is being
    // destroyed re-evaluates its colours, which printed TypeErrors.
    readonly property vxKitTheme kit: OrloKitHost.theme
    readonly property color foreground: prominent ? kit.bg : kit.text
    // The focus ring, while the keyboard is in use.
    readonly property bool ringShown: activeFocus && VxFocusRings.keyboard

    horizontalPadding: compact ? 8 : 14
    verticalPadding: compact ? 4 : 8
    font.pixelSize: compact ? 12 : 13

    contentItem: RowLayout {
        spacing: button.compact ? 4 : 6
        Text {
            visible: button.glyph !== ""
            text: button.glyph
            font.family: button.glyphFamily
            font.pixelSize: button.font.pixelSize + 3
            color: button.foreground
            Layout.alignment: Qt.AlignVCenter
        }
        Text {
            text: button.text
            font: button.font
            color: button.foreground
            opacity: button.enabled ? 1 : 0.45
            elide: Text.ElideRight
            horizontalAlignment: button.glyph === "" ? Text.AlignHCenter : Text.AlignLeft
            Layout.alignment: Qt.AlignVCenter
            Layout.fillWidth: true
        }
    }

    background: Rectangle {
        implicitHeight: button.compact ? 24 : 32
        radius: height / 2
        color: !button.kit ? "transparent"
               : button.prominent
               ? (button.down ? Qt.darker(button.kit.accent, 1.2) : button.kit.accent)
               : (button.down ? button.kit.panelTop : button.hovered ? Qt.lighter(button.kit.panelBottom, 1.25) : button.kit.panelBottom)
        border.width: button.prominent ? 0 : 1
        border.color: button.ringShown ? button.kit.accent : button.kit.rim
        opacity: button.enabled ? 1 : 0.6

        // The keyboard focus ring, just outside the plate.
        Rectangle {
            objectName: "focusRing"
            anchors.fill: parent
            anchors.margins: -3
            radius: height / 2
            color: "transparent"
            border.width: 2
            border.color: button.prominent ? button.kit.text : button.kit.accent
            visible: button.ringShown
        }
    }
}
