import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The frame every list screen shares: the title with its toolbar buttons, an optional search
// field, an optional block under it (`header`), the count line, and the list itself or, when
// the list is empty, an empty state. Screens differ only in their model and row delegate.
//
// Keyboard: Ctrl+F focuses the search field, Escape in it clears it, Down moves into the list;
// in the list the arrow keys move the current row, Return opens it (`activated`) and Delete
// asks for its action (`actionRequested`).
FocusScope {
    id: screen

    required property string title
    property bool searchable: false
    property string searchPrompt: ""
    // The search text to show (bind it to the model's); edits come back as queryEdited().
    property string query: ""
    property string countText: ""
    property alias model: list.model
    property alias delegate: list.delegate
    // Shown between the search field and the count line (e.g. a card and a filter).
    property Component header: null
    // Buttons beside the title.
    default property alias toolbar: toolbarRow.data
    property bool empty: list.count === 0
    property string emptySymbol: ""
    property string emptyTitle: ""
    property string emptyMessage: ""
    property Component emptyActions: null

    readonly property alias listView: list
    readonly property alias searchField: searchField

    signal queryEdited(string query)
    signal activated(int index)
    signal actionRequested(int index)

    // Everything above the rows scrolls with them, so that a small window at a large zoom
    // still has room for the list: the list reserves the space in its own header, and the
    // block follows that header.
    Item {
        id: body
        anchors.fill: parent
        anchors.margins: Theme.margin
        clip: true

        // Where the rows begin, below the block. The list does not move to show a block that
        // grows (a title wrapping at a larger zoom, say); a list showing its start keeps it.
        readonly property real rowsStart: aboveRows.implicitHeight + Theme.spacing + Theme.spacingSmall
        property real shownRowsStart: 0
        onRowsStartChanged: {
            const atStart = list.contentY <= -shownRowsStart + 0.5
            shownRowsStart = rowsStart
            if (atStart) {
                list.contentY = -rowsStart
            }
        }

        ColumnLayout {
            id: aboveRows
            width: body.width
            y: !list.visible || !list.headerItem ? 0 : list.headerItem.y - list.contentY
            z: 1
            spacing: Theme.spacing + Theme.spacingSmall

            RowLayout {
                spacing: Theme.spacing
                Layout.fillWidth: true

                Text {
                    objectName: "screenTitle"
                    text: screen.title
                    color: Theme.text
                    font.pixelSize: Theme.fontLargeTitle
                    font.weight: Font.DemiBold
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                }
                RowLayout {
                    id: toolbarRow
                    spacing: Theme.spacing
                }
            }

            TextField {
                id: searchField
                objectName: "searchField"
                visible: screen.searchable
                placeholderText: screen.searchPrompt
                text: screen.query
                onTextEdited: screen.queryEdited(text)
                // Scrolled away with the rows, it comes back when it takes the keyboard.
                onActiveFocusChanged: {
                    if (activeFocus && list.visible) {
                        list.positionViewAtBeginning()
                    }
                }
                selectByMouse: true
                font.pixelSize: Theme.fontBody
                leftPadding: Theme.iconSize + 2 * Theme.spacing
                Layout.fillWidth: true
                Accessible.name: screen.searchPrompt

                SymbolIcon {
                    anchors.left: parent.left
                    anchors.leftMargin: Theme.spacing
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "magnifyingglass"
                    size: Theme.iconSize
                    color: Theme.textMuted
                }

                Keys.onEscapePressed: (event) => {
                    if (text === "") {
                        event.accepted = false
                        return
                    }
                    clear()
                    screen.queryEdited("")
                }
                Keys.onDownPressed: {
                    if (list.count > 0) {
                        list.currentIndex = Math.max(0, list.currentIndex)
                        list.forceActiveFocus()
                    }
                }
                Keys.onReturnPressed: screen.openCurrent()
                Keys.onEnterPressed: screen.openCurrent()
            }

            Loader {
                objectName: "listHeader"
                active: screen.header !== null
                visible: active
                sourceComponent: screen.header
                Layout.fillWidth: true
            }

            Text {
                objectName: "countLine"
                visible: screen.countText !== ""
                text: screen.countText
                color: Theme.textMuted
                font.pixelSize: Theme.fontCaption
                font.weight: Font.DemiBold
                Layout.fillWidth: true
            }
        }

        ListView {
            id: list
            objectName: "list"
            anchors.fill: parent
            visible: !screen.empty
            header: Item {
                width: ListView.view.width
                height: body.rowsStart
            }
            clip: true
            focus: true
            activeFocusOnTab: true
            spacing: Theme.spacingSmall
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationWraps: false
            highlightMoveDuration: 0
            currentIndex: -1
            reuseItems: true
            ScrollBar.vertical: ThemedScrollBar {
                policy: list.contentHeight > list.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
            }

            Keys.onReturnPressed: screen.openCurrent()
            Keys.onEnterPressed: screen.openCurrent()
            Keys.onDeletePressed: {
                if (currentIndex >= 0) {
                    screen.actionRequested(currentIndex)
                }
            }
            Keys.onUpPressed: (event) => {
                if (currentIndex <= 0 && screen.searchable) {
                    searchField.forceActiveFocus()
                } else {
                    event.accepted = false
                }
            }
            onActiveFocusChanged: {
                if (activeFocus && currentIndex < 0 && count > 0) {
                    currentIndex = 0
                }
            }
        }

        EmptyState {
            objectName: "emptyState"
            y: body.rowsStart
            width: parent.width
            height: parent.height - y
            visible: screen.empty
            symbol: screen.emptySymbol
            title: screen.emptyTitle
            message: screen.emptyMessage
            actions: screen.emptyActions
        }
    }

    Shortcut {
        sequences: [StandardKey.Find]
        enabled: screen.searchable && screen.visible
        onActivated: {
            searchField.forceActiveFocus()
            searchField.selectAll()
        }
    }

    function openCurrent() {
        if (list.count === 0) {
            return
        }
        if (list.currentIndex < 0) {
            list.currentIndex = 0
        }
        screen.activated(list.currentIndex)
    }
}
