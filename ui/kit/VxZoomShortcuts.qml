import QtQuick
import Quarrydex

// The zoom keys of the View menu for a window that has no menu bar: Ctrl++ (also Ctrl+=, where
// the plus sign needs Shift), Ctrl+- and Ctrl+0. The zoom is one for all windows.
Item {
    Shortcut {
        sequences: [StandardKey.ZoomIn, "Ctrl+="]
        onActivated: VxZoom.zoomIn()
    }
    Shortcut {
        sequences: [StandardKey.ZoomOut]
        onActivated: VxZoom.zoomOut()
    }
    Shortcut {
        sequences: ["Ctrl+0"]
        onActivated: VxZoom.actualSize()
    }
}
