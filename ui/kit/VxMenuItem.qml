import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// A menu item that shows its action's keyboard shortcut at the right edge. Texts are shown as
// they are: an "&" is a letter here, not a mnemonic.
MenuItem {
    id: item

    readonly property string shortcutText: action ? OrloKitHost.shortcutText(action.shortcut) : ""
    readonly property color foreground: highlighted ? palette.highlightedText : palette.windowText

    // A plain check mark in front of the chosen item of a group, as desktop menus draw it.
    indicator: Text {
        x: item.leftPadding
        y: item.topPadding + (item.availableHeight - height) / 2
        width: item.checkable ? implicitHeight : 0
        visible: item.checkable
        text: item.checked ? "\u2713" : ""
        font.pixelSize: item.font.pixelSize + 2
        font.bold: true
        color: item.foreground
        horizontalAlignment: Text.AlignHCenter
    }

    contentItem: RowLayout {
        readonly property real arrowPadding: item.subMenu && item.arrow ? item.arrow.width + item.spacing : 0
        readonly property real indicatorPadding: item.checkable && item.indicator ? item.indicator.width + item.spacing : 0

        spacing: 24
        Text {
            Layout.leftMargin: parent.indicatorPadding
            Layout.fillWidth: true
            text: item.text
            font: item.font
            color: item.foreground
            opacity: item.enabled ? 1 : 0.5
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
        }
        Text {
            Layout.rightMargin: parent.arrowPadding
            visible: item.shortcutText !== ""
            text: item.shortcutText
            font: item.font
            color: item.foreground
            opacity: item.enabled ? 0.7 : 0.35
            verticalAlignment: Text.AlignVCenter
        }
    }
}
