import QtQuick
import QtQuick.Controls
import Quarrydex

// The zoom commands: Zoom In, Zoom Out, Actual Size (100%) and the Zoom Level choices.
VxMenu {
    id: menu

    Action {
        text: qsTr("Zoom In")
        shortcut: StandardKey.ZoomIn
        onTriggered: VxZoom.zoomIn()
    }
    Action {
        text: qsTr("Zoom Out")
        shortcut: StandardKey.ZoomOut
        onTriggered: VxZoom.zoomOut()
    }
    Action {
        text: qsTr("Actual Size (100%)")
        shortcut: "Ctrl+0"
        onTriggered: VxZoom.actualSize()
    }
    MenuSeparator {}
    VxMenu {
        id: levels
        title: qsTr("Zoom Level")
        Instantiator {
            model: VxZoom.levels
            delegate: VxMenuItem {
                required property int modelData
                text: modelData + "%"
                checkable: true
                checked: VxZoom.percent === modelData
                onTriggered: {
                    VxZoom.setLevel(modelData)
                    // A click toggles the mark; the stored level decides it.
                    checked = Qt.binding(() => VxZoom.percent === modelData)
                }
            }
            onObjectAdded: (index, object) => levels.insertItem(index, object)
            onObjectRemoved: (index, object) => levels.removeItem(object)
        }
    }
}
