import QtQuick
import QtQuick.Window
import Quarrydex

// A section's screen with the details opened over it: the main view (the default content)
// stays alive underneath, hidden, so its search, filter and scroll position survive; the top
// entry of the section's navigation stack (AppModel.navigation(section)) picks the detail from
// `details` by its kind. Back: Alt+Left, or Backspace while no text field has the focus.
FocusScope {
    id: stack

    required property string section
    // Kind ("specimen", "history", ...) -> Component of the detail screen.
    property var details: ({})
    default property alias main: mainView.data

    readonly property var navigation: AppModel.navigation(section)
    readonly property bool showsDetail: navigation.depth > 0
    readonly property Item detailItem: detailLoader.item

    FocusScope {
        id: mainView
        objectName: "mainView"
        anchors.fill: parent
        visible: !stack.showsDetail
        focus: !stack.showsDetail
    }

    Loader {
        id: detailLoader
        objectName: "detailView"
        anchors.fill: parent
        active: stack.showsDetail
        focus: stack.showsDetail
        sourceComponent: stack.showsDetail ? (stack.details[stack.navigation.kind] ?? null) : null
        onLoaded: item.forceActiveFocus()
    }

    onShowsDetailChanged: {
        if (!showsDetail) {
            mainView.forceActiveFocus()
        }
    }

    function back() {
        navigation.pop()
    }

    Shortcut {
        sequences: ["Alt+Left"]
        enabled: stack.visible && stack.showsDetail
        onActivated: stack.back()
    }
    Shortcut {
        sequences: ["Backspace"]
        enabled: stack.visible && stack.showsDetail && !stack.editingText
        onActivated: stack.back()
    }

    // True while a text field (anything with a cursor) has the keyboard focus.
    readonly property bool editingText: {
        const item = Window.activeFocusItem
        return item !== null && item.cursorPosition !== undefined && !item.readOnly
    }
}
