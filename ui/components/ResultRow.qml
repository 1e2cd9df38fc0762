import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// One candidate of the result: rank, colour swatch, name, share, and the favourite star.
// Clicking it, or Return or Space on it, opens the species.
AbstractButton {
    id: row

    required property int rank
    required property string specimenId
    required property string name
    required property string categoryTitle
    required property string colorHex
    required property int percent
    required property real confidence
    required property bool favorite

    signal openRequested(string specimenId, real confidence)

    objectName: "resultRow_" + specimenId
    focusPolicy: Qt.StrongFocus
    implicitHeight: Theme.rowHeight + Theme.spacingLarge
    padding: Theme.spacing
    onClicked: openRequested(specimenId, confidence)
    Keys.onReturnPressed: openRequested(specimenId, confidence)
    Keys.onEnterPressed: openRequested(specimenId, confidence)
    Accessible.name: qsTr("%1. %2, %3%").arg(rank).arg(name).arg(percent)

    background: Rectangle {
        radius: Theme.corner / 2
        color: row.down ? Theme.selection : row.hovered ? Theme.hover : Theme.surface
        border.width: Theme.hairlineWidth
        border.color: Theme.hairline

        FocusRing {
            shown: row.activeFocus && VxFocusRings.keyboard
        }
    }

    contentItem: RowLayout {
        spacing: Theme.spacing

        Text {
            objectName: "resultRank"
            text: row.rank
            color: Theme.textMuted
            font.pixelSize: Theme.fontHeadline
            font.weight: Font.DemiBold
            horizontalAlignment: Text.AlignRight
            Layout.preferredWidth: Theme.iconSize
        }
        Rectangle {
            width: Theme.iconSize + Theme.spacingSmall
            height: width
            radius: width / 2
            color: row.colorHex !== "" ? row.colorHex : Theme.surfaceRaised
            border.width: Theme.hairlineWidth
            border.color: Theme.hairline
            Accessible.ignored: true
        }
        ColumnLayout {
            spacing: 0
            Layout.fillWidth: true
            Text {
                objectName: "resultName"
                text: row.name
                color: Theme.text
                font.pixelSize: Theme.fontBody
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
            Text {
                text: row.categoryTitle
                color: Theme.textMuted
                font.pixelSize: Theme.fontCaption
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
        }
        Text {
            objectName: "resultPercent"
            text: row.percent + "%"
            color: Theme.text
            font.pixelSize: Theme.fontHeadline
            font.weight: Font.DemiBold
        }
        AbstractButton {
            id: star
            objectName: "favoriteStar"
            focusPolicy: Qt.StrongFocus
            implicitWidth: Theme.rowHeight
            implicitHeight: Theme.rowHeight
            onClicked: AppModel.toggleFavorite(row.specimenId)
            Accessible.name: row.favorite ? qsTr("Remove from Favorites") : qsTr("Add to Favorites")
            ToolTip.visible: hovered
            ToolTip.delay: 600
            ToolTip.text: Accessible.name
            background: Rectangle {
                radius: height / 2
                color: star.hovered ? Theme.hover : Theme.clear
                FocusRing {
                    shown: star.activeFocus && VxFocusRings.keyboard
                    radius: height / 2
                }
            }
            contentItem: SymbolIcon {
                symbol: row.favorite ? "star.fill" : "star"
                color: row.favorite ? Theme.gold : Theme.textMuted
            }
        }
        SymbolIcon {
            symbol: "chevron.right"
            color: Theme.textMuted
        }
    }
}
