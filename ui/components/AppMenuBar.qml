import QtQuick
import QtQuick.Controls
import Quarrydex

// The window's menus. Commands that need a dialog of the window ask for it by signal.
MenuBar {
    id: bar

    signal choosePhotoRequested()
    signal aboutRequested()

    function goTo(raw) {
        AppModel.demoDetail = ""
        AppModel.section = raw
    }

    function pastePhoto() {
        if (PhotoSources.pasteInto(AppModel)) {
            AppModel.section = "identify"
        }
    }

    VxMenu {
        title: qsTr("File")
        Action {
            objectName: "newIdentification"
            text: qsTr("New Identification")
            shortcut: StandardKey.New
            onTriggered: {
                AppModel.startOver()
                AppModel.section = "identify"
            }
        }
        Action {
            text: qsTr("Choose Photo…")
            shortcut: StandardKey.Open
            onTriggered: bar.choosePhotoRequested()
        }
        Action {
            text: qsTr("Take Photo with Camera…")
            shortcut: "Ctrl+Shift+T"
            onTriggered: AppModel.showCamera = true
        }
        MenuSeparator {}
        Action {
            text: qsTr("Quit")
            shortcut: StandardKey.Quit
            onTriggered: Qt.quit()
        }
    }

    VxMenu {
        title: qsTr("Edit")
        Action {
            objectName: "pastePhoto"
            text: qsTr("Paste Photo")
            shortcut: "Ctrl+Shift+V"
            onTriggered: bar.pastePhoto()
        }
    }

    VxZoomMenu {
        title: qsTr("View")
    }

    VxMenu {
        id: goMenu
        title: qsTr("Go")
        Instantiator {
            model: AppModel.sections
            delegate: VxMenuItem {
                required property var modelData
                required property int index
                action: Action {
                    text: modelData.title
                    shortcut: "Ctrl+" + (index + 1)
                    onTriggered: bar.goTo(modelData.raw)
                }
            }
            onObjectAdded: (index, object) => goMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => goMenu.removeItem(object)
        }
    }

    VxMenu {
        id: themeMenu
        title: qsTr("Theme")
        Instantiator {
            model: Theme.palettes
            delegate: VxMenuItem {
                required property var modelData
                objectName: "theme_" + modelData.id
                text: modelData.name
                checkable: true
                checked: Theme.themeID === modelData.id
                onTriggered: {
                    Theme.themeID = modelData.id
                    // A click toggles the mark; the stored choice decides it.
                    checked = Qt.binding(() => Theme.themeID === modelData.id)
                }
            }
            onObjectAdded: (index, object) => themeMenu.insertItem(index, object)
            onObjectRemoved: (index, object) => themeMenu.removeItem(object)
        }
    }

    VxMenu {
        title: qsTr("Help")
        Action {
            text: qsTr("Orlo Quarrydex Help")
            shortcut: StandardKey.HelpContents
            onTriggered: QuarrydexHelp.show("welcome")
        }
        Action {
            text: qsTr("How Identification Works")
            onTriggered: QuarrydexHelp.show("identify")
        }
        Action {
            text: qsTr("Sample Photo Credits")
            onTriggered: QuarrydexHelp.show("samples")
        }
        MenuSeparator {}
        VxMenuItem {
            // Only a copy of the program with sample photos offers them.
            property bool offered: AppModel.hasSampleSet
            objectName: "sampleCollectionItem"
            visible: offered
            height: visible ? implicitHeight : 0
            text: AppModel.hasSamples ? qsTr("Remove Sample Collection")
                                      : qsTr("Load Sample Collection")
            onTriggered: AppModel.hasSamples ? AppModel.removeSampleCollection()
                                             : AppModel.loadSampleCollection()
        }
        Action {
            text: qsTr("Visit %1").arg(Branding.company)
            onTriggered: Links.open(Branding.website, bar)
        }
        MenuSeparator {}
        Action {
            text: qsTr("About %1").arg(Branding.displayName)
            onTriggered: bar.aboutRequested()
        }
    }
}
