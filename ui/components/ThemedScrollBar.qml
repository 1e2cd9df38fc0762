import QtQuick
import QtQuick.Controls
import Quarrydex

// The scroll bar of every scroll area: a solid handle that stands out from the ground, the
// surfaces and the raised panels of every theme, shown whenever there is more to see than
// fits, brighter under the pointer and while it is dragged.
ScrollBar {
    id: control

    padding: Theme.spacingSmall / 2
    minimumSize: orientation === Qt.Horizontal ? height / width : width / height
    visible: policy !== ScrollBar.AlwaysOff && size < 1.0

    contentItem: Rectangle {
        objectName: "scrollHandle"
        implicitWidth: Theme.scrollBarWidth
        implicitHeight: Theme.scrollBarWidth
        radius: Math.min(width, height) / 2
        color: control.pressed || control.hovered ? Theme.scrollHandleActive : Theme.scrollHandle
    }
}
