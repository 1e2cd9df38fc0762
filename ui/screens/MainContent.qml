import QtQuick
import QtQuick.Controls
import Quarrydex

// The main window's body, in the window's zoom: the sidebar, and beside it the section chosen
// there (or the species the demo opens, or why the library couldn't be loaded).
VxZoomHost {
    id: content

    // The sidebar's width to begin with; dragging the handle changes it.
    property real sidebarWidth: Theme.sidebarWidth
    readonly property alias sidebar: sidebar

    // The window's dialogs, asked for by the screens.
    signal choosePhotoRequested()
    signal aboutRequested()

    objectName: "zoomHost"
    minWidth: Theme.minWindowWidth
    minHeight: Theme.minWindowHeight

    readonly property var currentSection: {
        const raw = AppModel.section === "" ? "identify" : AppModel.section
        return AppModel.sections.find(s => s.raw === raw)
    }

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
            SplitView.preferredWidth: content.sidebarWidth
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
                           : content.screen(content.currentSection.raw)
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
        id: identifyScreen
        IdentifyScreen {
            onChoosePhotoRequested: content.choosePhotoRequested()
        }
    }
    Component {
        id: aboutScreen
        AboutHelpScreen {
            onAboutRequested: content.aboutRequested()
        }
    }
    // One screen per section, made when the section is shown. Those given by file are read
    // on their first visit.
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
}
