import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
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
                               : window.screens[window.currentSection.raw]
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
    // One screen per section, made when the section is shown.
    readonly property var screens: ({
        identify: identifyScreen, library: libraryScreen, favorites: favoritesScreen,
        collection: collectionScreen, history: historyScreen, backup: backupScreen,
        about: aboutScreen
    })
    Component { id: identifyScreen; IdentifyScreen { onChoosePhotoRequested: photoDialog.open() } }
    Component { id: libraryScreen; LibraryScreen {} }
    Component { id: favoritesScreen; FavoritesScreen {} }
    Component { id: collectionScreen; CollectionScreen {} }
    Component { id: historyScreen; HistoryScreen {} }
    Component { id: backupScreen; BackupScreen {} }

    HelpWindow {
        id: helpWindow
    }

    AboutDialog {
        id: aboutDialog
        objectName: "aboutDialog"
    }

    FileDialog {
        id: photoDialog
        objectName: "photoDialog"
        title: qsTr("Choose a photo of your specimen")
        fileMode: FileDialog.OpenFile
        nameFilters: PhotoSources.nameFilters()
        onAccepted: {
            AppModel.setPhotoFromFileAsync(selectedFile)
            AppModel.section = "identify"
        }
    }

    CameraSheet {
        id: cameraSheet
    }

    // The collection editor, opened from any screen through AppModel.collectionEditor.
    CollectionEditorSheet {
        id: collectionEditorSheet
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
