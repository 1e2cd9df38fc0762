import QtQuick
import QtQuick.Controls
import Quarrydex

// A menu of VxMenuItems, as wide as its widest item (Qt Quick's menus keep a fixed width and
// would cut long titles and shortcuts short).
Menu {
    id: menu

    delegate: VxMenuItem {}

    width: {
        let widest = 0
        for (let i = 0; i < count; ++i) {
            const item = itemAt(i)
            if (item) {
                widest = Math.max(widest, item.implicitWidth)
            }
        }
        return Math.max(implicitWidth, widest + leftPadding + rightPadding)
    }

    // Qt Quick's MenuBar keeps the title of a menu closed with Escape lit while the mouse rests
    // on it, and still counts the menu as open: the next click on the title only "closes" it and
    // moving along the bar opens the others. Replaying the close with the title unhovered lets
    // the bar put the title out and forget the menu; the next mouse move hovers it again.
    onClosed: {
        const title = parent
        if (title && title.menuBar !== undefined && title.menu === menu && title.highlighted
                && title.hovered) {
            OrloKitHost.endHover(title)
            menu.aboutToHide()
        }
    }
}
