import QtQuick
import QtQuick.Controls
import Quarrydex

// The window's menus. Commands that need a dialog of the window ask for it by signal.
// Keyboard: Alt with a title's underlined letter opens that menu, and a letter alone then
// chooses an item; Alt pressed and released on its own, or F10, opens the first menu; Left and
// Right move between the menus; Escape closes them.
MenuBar {
    id: bar

    signal choosePhotoRequested()
    signal aboutRequested()

    // A title that is not ours to change, with its first letter as the mnemonic.
    function withMnemonic(title) {
        return "&" + title.replace(/&/g, "&&")
    }

    function openMenu(index) {
        const title = itemAt(index)
        title.triggered()
        if (menuAt(index).visible) {
            menuAt(index).currentIndex = 0
        }
    }

    // Whether a menu was open when Alt went down (an open menu closes on it).
    property bool menuOpenAtAlt: false

    function openIndex() {
        for (let i = 0; i < count; ++i) {
            if (menuAt(i).visible) {
                return i
            }
        }
        return -1
    }

    // Alt or F10: open the first menu, or close the one that is open. Not while a dialog has the
    // keyboard: the window behind it is out of reach.
    function menuKey(menuWasOpen) {
        const open = openIndex()
        if (open >= 0 || menuWasOpen) {
            if (open >= 0) {
                menuAt(open).dismiss()
            }
            return
        }
        let item = Window.activeFocusItem
        while (item) {
            if (item === Overlay.overlay) {
                return
            }
            item = item.parent
        }
        openMenu(0)
    }

    // The item that had the keyboard focus before the menus took it. Qt Quick leaves it on a
    // menu title when a menu closes by a click outside it or on one of its items; the focus goes
    // back here instead.
    property Item focusHome: null

    function holds(item, holder) {
        for (let i = item; i; i = i.parent) {
            if (i === holder) {
                return true
            }
        }
        return false
    }

    function noteFocus() {
        const item = Window.activeFocusItem
        if (item && !holds(item, bar) && !holds(item, Overlay.overlay)) {
            focusHome = item
            return
        }
        if (item && holds(item, bar)) {
            Qt.callLater(bar.giveFocusBack)
        }
    }

    function giveFocusBack() {
        const item = Window.activeFocusItem
        if (openIndex() >= 0 || (item && !holds(item, bar))) {
            return
        }
        if (focusHome && focusHome.visible) {
            focusHome.forceActiveFocus()
        } else if (Window.contentItem) {
            Window.contentItem.forceActiveFocus()
        }
    }

    Connections {
        target: bar.Window.window
        function onActiveFocusItemChanged() { bar.noteFocus() }
    }
    Component.onCompleted: {
        for (let i = 0; i < count; ++i) {
            menuAt(i).closed.connect(() => Qt.callLater(bar.giveFocusBack))
        }
    }

    function showHelp() {
        QuarrydexHelp.show("welcome")
    }

    delegate: MenuBarItem {
        id: title
        contentItem: Text {
            text: OrloKitHost.mnemonicMarkup(title.text)
            textFormat: Text.StyledText
            font: title.font
            color: title.down || title.highlighted ? title.palette.highlightedText : title.palette.text
            verticalAlignment: Text.AlignVCenter
        }
    }

    VxMenuBarKeys {
        window: bar.Window.window
        onAltPressed: bar.menuOpenAtAlt = bar.openIndex() >= 0
        onAltTapped: bar.menuKey(bar.menuOpenAtAlt)
        onF10Pressed: bar.menuKey(false)
    }

    // The help's other keys beside F1: Ctrl+? as keyboards deliver it, with or without Shift.
    Shortcut {
        sequences: ["Ctrl+?", "Ctrl+Shift+?", "Ctrl+Shift+/"]
        onActivated: bar.showHelp()
        onActivatedAmbiguously: bar.showHelp()
    }

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
        title: qsTr("&File")
        Action {
            objectName: "newIdentification"
            text: qsTr("&New Identification")
            shortcut: StandardKey.New
            onTriggered: {
                AppModel.startOver()
                AppModel.section = "identify"
            }
        }
        Action {
            text: qsTr("&Choose Photo…")
            shortcut: StandardKey.Open
            onTriggered: bar.choosePhotoRequested()
        }
        Action {
            text: qsTr("&Take Photo with Camera…")
            shortcut: "Ctrl+Shift+T"
            onTriggered: AppModel.showCamera = true
        }
        MenuSeparator {}
        Action {
            text: qsTr("&Quit")
            shortcut: StandardKey.Quit
            onTriggered: Qt.quit()
        }
    }

    VxMenu {
        title: qsTr("&Edit")
        Action {
            objectName: "pastePhoto"
            text: qsTr("&Paste Photo")
            shortcut: "Ctrl+Shift+V"
            onTriggered: bar.pastePhoto()
        }
    }

    VxZoomMenu {
        title: qsTr("&View")
    }

    VxMenu {
        id: goMenu
        title: qsTr("&Go")
        Instantiator {
            model: AppModel.sections
            delegate: VxMenuItem {
                required property var modelData
                required property int index
                action: Action {
                    text: bar.withMnemonic(modelData.title)
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
        title: qsTr("&Theme")
        Instantiator {
            model: Theme.palettes
            delegate: VxMenuItem {
                required property var modelData
                objectName: "theme_" + modelData.id
                text: bar.withMnemonic(modelData.name)
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
        title: qsTr("&Help")
        Action {
            text: qsTr("Orlo Quarrydex &Help")
            shortcut: StandardKey.HelpContents
            onTriggered: bar.showHelp()
        }
        Action {
            text: qsTr("How &Identification Works")
            onTriggered: QuarrydexHelp.show("identify")
        }
        Action {
            text: qsTr("Sample Photo &Credits")
            onTriggered: QuarrydexHelp.show("samples")
        }
        MenuSeparator {}
        VxMenuItem {
            // Only a copy of the program with sample photos offers them.
            property bool offered: AppModel.hasSampleSet
            objectName: "sampleCollectionItem"
            visible: offered
            height: visible ? implicitHeight : 0
            text: AppModel.hasSamples ? qsTr("&Remove Sample Collection")
                                      : qsTr("&Load Sample Collection")
            onTriggered: AppModel.hasSamples ? AppModel.removeSampleCollection()
                                             : AppModel.loadSampleCollection()
        }
        Action {
            text: qsTr("&Visit %1").arg(Branding.company)
            onTriggered: Links.open(Branding.website, bar)
        }
        MenuSeparator {}
        Action {
            text: qsTr("&About %1").arg(Branding.displayName)
            onTriggered: bar.aboutRequested()
        }
    }
}
