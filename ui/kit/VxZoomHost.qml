import QtQuick
import QtQuick.Controls
import Quarrydex

// Wraps a window's content and scales all of it by the interface zoom. The content is laid
// out in the window's own size divided by the factor, so at every zoom it fits the window and
// the screens' own lists do the scrolling: there is never a scroll area inside another. Only
// a window smaller than minWidth x minHeight (the window's minimum size, which a tiny screen
// can undercut) lays the content out at that size and scrolls it as a whole.
Flickable {
    id: host

    property real zoom: VxZoom.value
    property real minWidth: 960
    property real minHeight: 640
    default property alias content: frame.data

    readonly property real frameWidth: Math.max(width, minWidth) / zoom
    readonly property real frameHeight: Math.max(height, minHeight) / zoom

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    contentWidth: frameWidth * zoom
    contentHeight: frameHeight * zoom
    interactive: contentWidth > width || contentHeight > height

    ScrollBar.horizontal: ThemedScrollBar {}
    ScrollBar.vertical: ThemedScrollBar {}

    Item {
        id: frame
        width: host.frameWidth
        height: host.frameHeight
        scale: host.zoom
        transformOrigin: Item.TopLeft
    }
}
