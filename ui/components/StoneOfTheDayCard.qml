import QtQuick
import QtQuick.Layouts
import Quarrydex

// The "STONE OF THE DAY" card of the Library: today's species with its swatch, kind and
// summary. Clicking it, or Return or Space while it has the focus, opens the species.
VxPanel {
    id: card

    // {specimenId, name, categoryTitle, group, summary, colorHex, hardnessText}
    required property var stone

    signal opened(string specimenId)

    radius: Theme.corner
    padding: Theme.spacingLarge
    implicitWidth: Theme.readingWidth
    implicitHeight: row.implicitHeight + 2 * padding
    activeFocusOnTab: true

    Keys.onReturnPressed: card.opened(card.stone.specimenId)
    Keys.onEnterPressed: card.opened(card.stone.specimenId)
    Keys.onSpacePressed: card.opened(card.stone.specimenId)

    // Outside the panel's padding, around the whole card.
    FocusRing {
        parent: card
        radius: card.radius + Theme.spacingSmall
        shown: card.activeFocus && VxFocusRings.keyboard
    }

    RowLayout {
        id: row
        width: parent.width
        spacing: Theme.margin

        SpecimenSwatch {
            colorHex: card.stone.colorHex ?? ""
            size: Math.min(Theme.iconLarge * 2, card.width / 4)
            Layout.alignment: Qt.AlignTop
        }
        ColumnLayout {
            spacing: Theme.spacingSmall
            Layout.fillWidth: true
            Layout.minimumWidth: 0 // narrow windows elide the texts

            Text {
                text: qsTr("STONE OF THE DAY")
                color: Theme.accent
                font.pixelSize: Theme.fontCaption
                font.weight: Font.Bold
                font.letterSpacing: Theme.hairlineWidth
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            Text {
                objectName: "stoneOfTheDayName"
                text: card.stone.name ?? ""
                color: Theme.text
                font.pixelSize: Theme.fontTitle
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            Text {
                text: (card.stone.categoryTitle ?? "") + " · " + (card.stone.group ?? "")
                      + " · " + (card.stone.hardnessText ?? "")
                color: Theme.textMuted
                font.pixelSize: Theme.fontCaption
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            Text {
                text: card.stone.summary ?? ""
                color: Theme.text
                font.pixelSize: Theme.fontBody
                wrapMode: Text.WordWrap
                maximumLineCount: 2
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
        }
        SymbolIcon {
            symbol: "chevron.right"
            color: Theme.textMuted
            Layout.alignment: Qt.AlignVCenter
        }
    }

    // Drawn over the panel: the focus ring.
    Rectangle {
        anchors.fill: parent
        anchors.margins: -card.padding
        visible: card.activeFocus
        color: Theme.clear
        radius: card.radius
        border.width: 2 * Theme.hairlineWidth
        border.color: Theme.accent
    }

    MouseArea {
        anchors.fill: parent
        anchors.margins: -card.padding
        cursorShape: Qt.PointingHandCursor
        onClicked: card.opened(card.stone.specimenId)
    }

    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Stone of the day: %1").arg(stone.name ?? "")
}
