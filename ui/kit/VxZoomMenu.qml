import QtQuick
import QtQuick.Controls
import Quarrydex

// The zoom commands: Zoom In, Zoom Out, Actual Size (100%) and the Zoom Level choices.
VxMenu {
    id: zoomMenu

    // The levels as "150%" with a mnemonic each: the first digit that no smaller level has
    // taken ("15&0%"), as several levels start alike.
    readonly property var levelTexts: {
        const taken = []
        return VxZoom.levels.map(percent => {
            const text = percent + "%"
            for (let i = 0; i < text.length - 1; ++i) {
                if (!taken.includes(text[i])) {
                    taken.push(text[i])
                    return text.slice(0, i) + "&" + text.slice(i)
                }
            }
            return text
        })
    }

    Action {
        text: qsTr("Zoom &In")
        shortcut: StandardKey.ZoomIn
        onTriggered: VxZoom.zoomIn()
    }
    Action {
        text: qsTr("Zoom &Out")
        shortcut: StandardKey.ZoomOut
        onTriggered: VxZoom.zoomOut()
    }
    Action {
        text: qsTr("&Actual Size (100%)")
        shortcut: "Ctrl+0"
        onTriggered: VxZoom.actualSize()
    }
    MenuSeparator {}
    VxMenu {
        id: levels
        title: qsTr("Zoom &Level")
        Instantiator {
            model: VxZoom.levels
            delegate: VxMenuItem {
                required property int modelData
                required property int index
                text: zoomMenu.levelTexts[index]
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
