import QtQuick
import Quarrydex

// Keeps the keyboard's place in sight: when the keyboard moves the focus to an item of
// `flickable`'s content that is out of view (at a large zoom most of a screen is), the
// flickable scrolls just far enough to show it. Focus given by a click is left where it is.
Item {
    id: follower

    required property Flickable flickable

    function bringIntoView() {
        const f = follower.flickable
        const item = f.Window.activeFocusItem
        if (!VxFocusRings.keyboard || !item || !f.visible) {
            return
        }
        let inside = item.parent
        while (inside && inside !== f.contentItem) {
            inside = inside.parent
        }
        if (!inside) {
            return
        }
        const shown = item.mapToItem(f.contentItem, 0, 0, item.width, item.height)
        const room = Theme.margin
        if (shown.y < f.contentY) {
            f.contentY = Math.max(0, shown.y - room)
        } else if (shown.y + shown.height > f.contentY + f.height) {
            f.contentY = Math.max(0, Math.min(f.contentHeight - f.height,
                                              shown.y + shown.height - f.height + room))
        }
    }

    Connections {
        target: follower.flickable.Window.window
        function onActiveFocusItemChanged() { follower.bringIntoView() }
    }
}
