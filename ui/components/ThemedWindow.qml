import QtQuick
import QtQuick.Controls
import Quarrydex

// A top-level window in the current theme. The palette feeds the standard controls (menus,
// scroll bars, dialogs), so they are dark too and follow a theme change at once.
ApplicationWindow {
    id: themedWindow

    color: Theme.ground
    font.pixelSize: Theme.fontBody

    palette.window: Theme.ground
    palette.windowText: Theme.text
    palette.base: Theme.surface
    palette.alternateBase: Theme.surfaceRaised
    palette.text: Theme.text
    palette.button: Theme.surfaceRaised
    palette.buttonText: Theme.text
    palette.brightText: Theme.text
    palette.highlight: Theme.accent
    palette.highlightedText: Theme.onAccent
    palette.light: Theme.hairline
    palette.midlight: Theme.surfaceRaised
    palette.mid: Theme.hairline
    palette.dark: Theme.ground
    palette.shadow: Theme.ground
    palette.placeholderText: Theme.textMuted
    palette.toolTipBase: Theme.surfaceRaised
    palette.toolTipText: Theme.text
    palette.link: Theme.accent
    palette.linkVisited: Theme.accent
    palette.disabled.windowText: Theme.textMuted
    palette.disabled.text: Theme.textMuted
    palette.disabled.buttonText: Theme.textMuted

    // Says so here when a link this window asked for couldn't be opened.
    LinkNotice {
        host: themedWindow
    }
}
