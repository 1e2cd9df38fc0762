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
}
