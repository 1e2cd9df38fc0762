import QtQuick
import Quarrydex

// Keeps the focus in sight: when the focus moves to an item of `flickable`'s content that is
// out of view (at a large zoom most of a screen is), the flickable scrolls just far enough to
// show it. An item clicked is already in view, unless cut at an edge.
Item {
    id: follower

    required property Flickable flickable

    // Scrolls `flickable` just far enough to show all of `item`, one of its content's items,
    // with a margin around it.
    function reveal(item) {
        if (!item) {
            return
        }
        const f = follower.flickable
        const shown = item.mapToItem(f.contentItem, 0, 0, item.width, item.height)
        const room = Theme.margin
        if (shown.y < f.contentY) {
            f.contentY = Math.max(0, shown.y - room)
        } else if (shown.y + shown.height > f.contentY + f.height) {
            f.contentY = Math.max(0, Math.min(f.contentHeight - f.height,
                                              shown.y + shown.height - f.height + room))
        }
    }

    function bringIntoView() {
        const f = follower.flickable
        const item = f.Window.activeFocusItem
        if (!item || !f.visible) {
            return
        }
        let inside = item.parent
        while (inside && inside !== f.contentItem) {
            inside = inside.parent
        }
        if (inside) {
            follower.reveal(item)
        }
    }

    Connections {
        target: follower.flickable.Window.window
        function onActiveFocusItemChanged() { follower.bringIntoView() }
    }
}
