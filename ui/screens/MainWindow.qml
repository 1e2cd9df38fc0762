import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The main window: the menus, the body (sidebar and detail, MainContent.qml), and the windows
// and dialogs they open. Closing it quits the program.
ThemedWindow {
    id: window

    objectName: "mainWindow"
    title: Branding.displayName
    // Placed by `placement`: where it was last time, else centred; never larger than its screen.
    minimumWidth: Math.min(Theme.minWindowWidth, placement.screenSize.width)
    minimumHeight: Math.min(Theme.minWindowHeight + (menuBar ? menuBar.implicitHeight : 0),
                            placement.screenSize.height)
    visible: true

    WindowPlacement {
        id: placement
        objectName: "windowPlacement"
        window: window
        sidebar: body.item ? body.item.sidebar : null
        defaultSize: Qt.size(Theme.windowWidth, Theme.windowHeight)
        defaultSidebarWidth: Theme.sidebarWidth
    }

    // The first frame is the bare window. The menus and the window's body are read and made
    // while it is drawn, and come with the next; `ready` says they are there.
    readonly property bool ready: menuBar !== null && body.status === Loader.Ready
    FirstFrame {
        window: window
        onPassedChanged: {
            const menus = Qt.createComponent("../components/AppMenuBar.qml")
            window.menuBar = menus.createObject(window, { objectName: "menuBar" })
            window.menuBar.choosePhotoRequested.connect(() => photoDialog.open())
            window.menuBar.aboutRequested.connect(() => aboutDialog.open())
            body.setSource("MainContent.qml", { sidebarWidth: placement.sidebarWidth })
        }
    }

    Loader {
        id: body
        anchors.fill: parent
        focus: true
    }
    Connections {
        target: body.item
        function onChoosePhotoRequested() { photoDialog.open() }
        function onAboutRequested() { aboutDialog.open() }
    }

    // The secondary windows and dialogs are made on first use, not with the window: the camera
    // sheet starts the multimedia stack, and the open dialog and the collection editor bring in
    // the dialogs module. Given by file, they are not even read before then. Each made object
    // keeps its object name.
    Loader {
        id: helpWindow
        active: false
        source: "HelpWindow.qml"
        function openOn(index) {
            active = true
            item.openOn(index)
        }
    }

    Loader {
        id: aboutDialog
        anchors.fill: parent
        active: false
        source: "../components/AboutDialog.qml"
        onLoaded: item.objectName = "aboutDialog"
        function open() {
            active = true
            item.open()
        }
    }

    Loader {
        id: photoDialog
        active: false
        source: "../components/PhotoDialog.qml"
        function open() {
            active = true
            item.open()
        }
    }

    Loader {
        id: cameraSheet
        anchors.fill: parent
        active: false
        source: "../components/CameraSheet.qml"
        // Later requests reach the sheet itself.
        onLoaded: if (AppModel.showCamera) item.open()
    }

    // The collection editor, opened from any screen through AppModel.collectionEditor.
    Loader {
        id: collectionEditorSheet
        anchors.fill: parent
        active: false
        source: "../components/CollectionEditorSheet.qml"
    }
    Connections {
        target: AppModel
        function onShowCameraChanged() { cameraSheet.active = true }
    }
    Connections {
        target: AppModel.collectionEditor
        function onOpenChanged() { collectionEditorSheet.active = true }
    }
    // "Add Specimen" from anywhere in the window.
    Shortcut {
        sequences: ["Ctrl+Shift+N"]
        onActivated: AppModel.collectionEditor.openNew()
    }

    Connections {
        target: QuarrydexHelp
        function onShowRequested(index) { helpWindow.openOn(index) }
    }

    // Ctrl+= is where most keyboards have the plus sign without Shift.
    Shortcut {
        sequences: ["Ctrl+="]
        onActivated: VxZoom.zoomIn()
    }

    onClosing: Qt.quit()
}
