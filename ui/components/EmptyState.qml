import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// What a screen shows when it has nothing to list: a symbol, a title, a message and actions,
// centred. Any of them may be empty and is then left out. Where they don't fit (a small window at
// a large zoom) they scroll.
Item {
    id: state

    property string symbol: ""
    property string title: ""
    property string message: ""
    // What can be done about it (buttons, a note), under the message and scrolled with it.
    property Component actions: null

    objectName: "emptyState"
    implicitWidth: column.implicitWidth
    implicitHeight: column.implicitHeight

    Flickable {
        id: flick
        objectName: "emptyStateScroller"
        anchors.fill: parent
        clip: true
        contentWidth: width
        contentHeight: Math.max(height, column.implicitHeight)
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ThemedScrollBar {}

        ColumnLayout {
            id: column
            x: (flick.width - width) / 2
            y: (flick.contentHeight - implicitHeight) / 2
            width: Math.min(state.width - 2 * Theme.margin, Theme.readingWidth)
            spacing: Theme.spacing

            SymbolIcon {
                visible: state.symbol !== ""
                symbol: state.symbol
                size: Theme.iconLarge * 2
                color: Theme.textMuted
                Layout.alignment: Qt.AlignHCenter
            }
            Text {
                objectName: "emptyStateTitle"
                visible: state.title !== ""
                text: state.title
                color: Theme.text
                font.pixelSize: Theme.fontTitle
                font.weight: Font.DemiBold
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
            Text {
                objectName: "emptyStateMessage"
                visible: state.message !== ""
                text: state.message
                color: Theme.textMuted
                font.pixelSize: Theme.fontBody
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                lineHeight: 1.15
                Layout.fillWidth: true
            }
            Loader {
                active: state.actions !== null
                visible: active
                sourceComponent: state.actions
                Layout.fillWidth: true
                Layout.topMargin: Theme.spacing
            }
        }
    }

    Accessible.role: Accessible.StaticText
    Accessible.name: title !== "" ? title + ". " + message : message
}
