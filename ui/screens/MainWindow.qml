import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The main window: sidebar and detail, the menus, and the windows and dialogs they open.
// Closing it quits the program.
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
        sidebar: sidebar
        defaultSize: Qt.size(Theme.windowWidth, Theme.windowHeight)
        defaultSidebarWidth: Theme.sidebarWidth
    }

    readonly property var currentSection: {
        const raw = AppModel.section === "" ? "identify" : AppModel.section
        return AppModel.sections.find(s => s.raw === raw)
    }

    menuBar: AppMenuBar {
        objectName: "menuBar"
        onChoosePhotoRequested: photoDialog.open()
        onAboutRequested: aboutDialog.open()
    }

    VxZoomHost {
        id: zoomHost
        objectName: "zoomHost"
        anchors.fill: parent
        minWidth: Theme.minWindowWidth
        minHeight: Theme.minWindowHeight

        SplitView {
            id: split
            anchors.fill: parent
            orientation: Qt.Horizontal

            handle: Item {
                implicitWidth: Theme.spacingSmall
                Rectangle {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: Theme.hairlineWidth
                    height: parent.height
                    color: Theme.hairline
                }
            }

            Sidebar {
                id: sidebar
                objectName: "sidebar"
                SplitView.minimumWidth: Theme.sidebarMinWidth
                SplitView.preferredWidth: placement.sidebarWidth
                // The detail keeps its minimum width, whatever the handle is dragged to.
                SplitView.maximumWidth: Math.max(Theme.sidebarMinWidth,
                                                 split.width - Theme.detailMinWidth - Theme.spacingSmall)
            }

            Loader {
                id: detail
                objectName: "detail"
                focus: true
                SplitView.fillWidth: true
                SplitView.minimumWidth: Theme.detailMinWidth
                sourceComponent: AppModel.libraryError !== "" ? libraryProblem
                               : AppModel.demoDetail !== "" ? demoDetail
                               : window.screen(window.currentSection.raw)
            }
        }
    }

    Component {
        id: libraryProblem
        ProblemNotice {
            objectName: "libraryProblem"
            title: qsTr("The stone library couldn't be loaded")
            message: AppModel.libraryError
        }
    }
    Component {
        id: demoDetail
        SpecimenDetailScreen {
            specimenId: AppModel.demoDetail
            onBackRequested: AppModel.demoDetail = ""
            onOpenSpecimen: (id) => AppModel.demoDetail = id
        }
    }
    Component {
        id: aboutScreen
        AboutHelpScreen {
            onAboutRequested: aboutDialog.open()
        }
    }
    // One screen per section, made when the section is shown. Those given by file are read
    // on their first visit, not with the window.
    readonly property var screens: ({
        identify: identifyScreen, library: "LibraryScreen.qml", favorites: "FavoritesScreen.qml",
        collection: "CollectionScreen.qml", history: "HistoryScreen.qml",
        backup: "BackupScreen.qml", about: aboutScreen
    })
    property var screenFiles: ({})
    function screen(raw) {
        const screen = screens[raw]
        if (typeof screen !== "string")
            return screen
        if (!screenFiles[raw])
            screenFiles[raw] = Qt.createComponent(screen)
        return screenFiles[raw]
    }
    Component { id: identifyScreen; IdentifyScreen { onChoosePhotoRequested: photoDialog.open() } }

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
