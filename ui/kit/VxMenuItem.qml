import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// A menu item that shows its action's keyboard shortcut at the right edge. An "&" in the text
// marks the mnemonic: the letter is underlined, and typing it while the menu is open chooses
// the item ("&&" is a plain "&").
MenuItem {
    id: item

    readonly property string shortcutText: action ? OrloKitHost.shortcutText(action.shortcut) : ""
    readonly property color foreground: highlighted ? palette.highlightedText : palette.windowText
    // The letter after the first single "&", as a key: "Zoom &In" gives "I".
    readonly property string mnemonicKey: {
        for (let i = 0; i < text.length - 1; ++i) {
            if (text[i] === "&") {
                if (text[i + 1] !== "&") {
                    return text[i + 1].toUpperCase()
                }
                ++i
            }
        }
        return ""
    }

    // What a click does: open the submenu, or run the action (or toggle the item) and close the
    // menus.
    function choose() {
        if (subMenu) {
            triggered()
            return
        }
        if (action) {
            action.trigger(item)
        } else {
            if (checkable) {
                toggle()
            }
            triggered()
        }
        if (menu && menu.visible) {
            menu.dismiss()
        }
    }

    // Qt Quick's menus answer a mnemonic only with Alt; in desktop menus the letter alone
    // chooses the item. Only the open menu on top takes it (the shortcut sits in that popup).
    Shortcut {
        enabled: item.mnemonicKey !== "" && item.enabled && item.visible && item.menu !== null
                 && item.menu.opened
        sequence: item.mnemonicKey
        onActivated: item.choose()
    }

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
            text: OrloKitHost.mnemonicMarkup(item.text)
            textFormat: Text.StyledText
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
