import QtQuick
import QtQuick.Layouts
import Quarrydex

// One row of a list of species (or of identifications): a thumbnail (photo or swatch), a
// title with an optional subtitle, a short trailing text, the favourite star and an optional
// action button at the end. Clicking the row, or Return while it is current, activates it.
Rectangle {
    id: row

    property string title: ""
    property string subtitle: ""
    property string trailing: ""
    property string colorHex: ""
    property string photoFile: ""
    property bool starred: false
    // Rows of lists where a star means something show its place even when it is empty.
    property bool showStar: true
    // "" for no action button.
    property string actionText: ""
    property string actionSymbol: ""
    property bool current: false
    property real thumbnailSize: Theme.rowHeight + Theme.spacing

    signal activated()
    signal actionTriggered()

    implicitHeight: thumbnailSize + 2 * Theme.spacing
    implicitWidth: Theme.readingWidth
    radius: Theme.spacing
    color: current ? Theme.selection : mouse.containsMouse ? Theme.hover : Theme.clear
    border.width: current && activeFocusWithin && VxFocusRings.keyboard ? Theme.hairlineWidth : 0
    border.color: Theme.accent

    // In a list the list has the focus; a row on its own takes it itself.
    readonly property bool activeFocusWithin: ListView.view ? ListView.view.activeFocus : activeFocus

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        onClicked: row.activated()
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Theme.spacing
        anchors.rightMargin: Theme.spacing
        spacing: Theme.spacing + Theme.spacingSmall

        PhotoThumbnail {
            objectName: "rowThumbnail"
            photoFile: row.photoFile
            colorHex: row.colorHex
            size: row.thumbnailSize
            Layout.preferredWidth: row.thumbnailSize
            Layout.preferredHeight: row.thumbnailSize
        }
        ColumnLayout {
            spacing: 0
            Layout.fillWidth: true

            Text {
                objectName: "rowTitle"
                text: row.title
                color: Theme.text
                font.pixelSize: Theme.fontHeadline
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            Text {
                objectName: "rowSubtitle"
                visible: row.subtitle !== ""
                text: row.subtitle
                color: Theme.textMuted
                font.pixelSize: Theme.fontCaption
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
        }
        Text {
            objectName: "rowTrailing"
            visible: row.trailing !== ""
            text: row.trailing
            color: Theme.textMuted
            font.pixelSize: Theme.fontCaption
            horizontalAlignment: Text.AlignRight
        }
        SymbolIcon {
            objectName: "rowStar"
            visible: row.showStar
            symbol: row.starred ? "star.fill" : "star"
            color: row.starred ? Theme.gold : Theme.hairline
            size: Theme.iconSize
            Layout.preferredWidth: Theme.iconSize + Theme.spacingSmall
        }
        VxChromeButton {
            objectName: "rowAction"
            visible: row.actionText !== ""
            compact: true
            text: row.actionText
            glyph: row.actionSymbol === "" ? "" : Icons.glyph(row.actionSymbol)
            glyphFamily: Icons.family
            focusPolicy: Qt.NoFocus
            onClicked: row.actionTriggered()
        }
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: subtitle === "" ? title : title + ", " + subtitle
    Accessible.selected: current
}
