import QtQuick
import Quarrydex

// Corner brackets around the photo frame, as a camera's viewfinder draws them. Decorative.
Item {
    id: corners

    property color color: Theme.accent
    property real length: Theme.spacingLarge + Theme.spacing
    property real thickness: Theme.unit * 1.5

    Accessible.ignored: true

    Repeater {
        model: [Qt.point(0, 0), Qt.point(1, 0), Qt.point(0, 1), Qt.point(1, 1)]
        delegate: Item {
            required property point modelData
            x: modelData.x * (corners.width - width)
            y: modelData.y * (corners.height - height)
            width: corners.length
            height: corners.length

            Rectangle {
                width: parent.width
                height: corners.thickness
                y: modelData.y * (parent.height - height)
                radius: height / 2
                color: corners.color
            }
            Rectangle {
                width: corners.thickness
                height: parent.height
                x: modelData.x * (parent.width - width)
                radius: width / 2
                color: corners.color
            }
        }
    }
}
