import QtQuick
import QtQuick.Controls
import Quarrydex

// Wraps a window's content and scales all of it by the interface zoom. The content gets a
// frame of the window's size divided by the factor, but never less than minWidth x minHeight;
// whatever is larger than the window once scaled can be scrolled to.
Flickable {
    id: host

    property real zoom: VxZoom.value
    property real minWidth: 960
    property real minHeight: 640
    default property alias content: frame.data

    readonly property real frameWidth: Math.max(width / zoom, minWidth)
    readonly property real frameHeight: Math.max(height / zoom, minHeight)

    clip: true
    boundsBehavior: Flickable.StopAtBounds
    contentWidth: frameWidth * zoom
    contentHeight: frameHeight * zoom
    interactive: contentWidth > width || contentHeight > height

    ScrollBar.horizontal: ScrollBar {
        policy: host.contentWidth > host.width ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    }
    ScrollBar.vertical: ScrollBar {
        policy: host.contentHeight > host.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    }

    Item {
        id: frame
        width: host.frameWidth
        height: host.frameHeight
        scale: host.zoom
        transformOrigin: Item.TopLeft
    }
}
