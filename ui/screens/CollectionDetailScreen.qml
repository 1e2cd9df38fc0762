import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// One piece of the collection: its photo, name, how and when and where it was got, the
// species (opening its detail), the match share it was saved with, notes, and for a sample
// the photo's source. The piece is looked up again on every change of the collection, so
// an edit shows at once and a piece deleted meanwhile shows "Removed".
FocusScope {
    id: detail

    required property string entryId

    signal backRequested()
    signal openSpecimen(string specimenId)

    objectName: "collectionDetail"

    readonly property var entry: {
        AppModel.collection.revision // re-read on every change
        return AppModel.collection.entry(entryId)
    }

    Keys.onEscapePressed: backRequested()

    RowLayout {
        id: toolbar
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.margin
        spacing: Theme.spacing

        VxChromeButton {
            objectName: "detailBack"
            text: qsTr("Back")
            compact: true
            onClicked: detail.backRequested()
        }
        Item { Layout.fillWidth: true }
        VxChromeButton {
            objectName: "detailEdit"
            visible: detail.entry.exists
            text: qsTr("Edit")
            glyph: Icons.glyph("pencil")
            glyphFamily: Icons.family
            onClicked: AppModel.collectionEditor.openEdit(detail.entryId)
        }
        VxChromeButton {
            objectName: "detailDelete"
            visible: detail.entry.exists
            text: qsTr("Delete")
            glyph: Icons.glyph("trash")
            glyphFamily: Icons.family
            onClicked: {
                AppModel.collection.remove(detail.entryId)
                detail.backRequested()
            }
        }
    }

    EmptyState {
        objectName: "removedState"
        anchors.fill: parent
        visible: !detail.entry.exists
        symbol: "trash"
        title: qsTr("Removed")
        message: qsTr("This specimen is no longer in your collection.")
    }

    FocusInView { flickable: scroller.contentItem }
    ScrollView {
        id: scroller
        anchors.top: toolbar.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.topMargin: Theme.spacing
        visible: detail.entry.exists
        contentWidth: availableWidth
        // Placed as the style places its own.
        ScrollBar.vertical: ThemedScrollBar {
            parent: scroller
            x: scroller.mirrored ? 0 : scroller.width - width
            y: scroller.topPadding
            height: scroller.availableHeight
        }
        clip: true

        ColumnLayout {
            width: Math.min(scroller.availableWidth - 2 * Theme.margin, Theme.readingWidth)
            x: Theme.margin
            spacing: Theme.spacingLarge

            PhotoThumbnail {
                objectName: "detailPhoto"
                photoFile: detail.entry.photoFile ?? ""
                revision: detail.entry.photoRevision ?? ""
                colorHex: detail.entry.colorHex ?? ""
                size: Math.min(parent.width, Theme.rowHeight * 7)
                crop: false
                Layout.alignment: Qt.AlignHCenter
            }

            Text {
                objectName: "detailName"
                text: detail.entry.name ?? ""
                color: Theme.text
                font.pixelSize: Theme.fontLargeTitle
                font.weight: Font.DemiBold
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }

            GridLayout {
                columns: 2
                columnSpacing: Theme.spacingLarge
                rowSpacing: Theme.spacingSmall
                Layout.fillWidth: true

                Text { text: qsTr("How acquired"); color: Theme.textMuted; font.pixelSize: Theme.fontBody }
                Text {
                    objectName: "detailAcquisition"
                    text: detail.entry.acquisition ?? ""
                    color: Theme.text
                    font.pixelSize: Theme.fontBody
                    Layout.fillWidth: true
                }
                Text { text: qsTr("Date added"); color: Theme.textMuted; font.pixelSize: Theme.fontBody }
                Text {
                    objectName: "detailDate"
                    text: detail.entry.dateText ?? ""
                    color: Theme.text
                    font.pixelSize: Theme.fontBody
                    Layout.fillWidth: true
                }
                Text { text: qsTr("Location"); color: Theme.textMuted; font.pixelSize: Theme.fontBody }
                Text {
                    objectName: "detailLocation"
                    text: detail.entry.location ?? ""
                    color: Theme.text
                    font.pixelSize: Theme.fontBody
                    wrapMode: Text.WordWrap
                    Layout.fillWidth: true
                }
                Text {
                    visible: detail.entry.hasConfidence === true
                    text: qsTr("Match share when saved")
                    color: Theme.textMuted
                    font.pixelSize: Theme.fontBody
                }
                Text {
                    objectName: "detailMatchShare"
                    visible: detail.entry.hasConfidence === true
                    text: detail.entry.confidenceText ?? ""
                    color: Theme.text
                    font.pixelSize: Theme.fontBody
                    Layout.fillWidth: true
                }
            }

            // The species, opening its detail (click, Return or Space).
            Rectangle {
                id: speciesRow
                objectName: "detailSpecies"
                visible: (detail.entry.speciesName ?? "") !== ""
                activeFocusOnTab: true
                implicitHeight: speciesLine.implicitHeight + 2 * Theme.spacing
                radius: Theme.corner
                color: speciesMouse.containsMouse ? Theme.hover : Theme.surfaceRaised
                border.color: activeFocus ? Theme.accent : Theme.hairline
                Layout.fillWidth: true
                Accessible.role: Accessible.Button
                Accessible.name: detail.entry.speciesName ?? ""
                Keys.onReturnPressed: detail.openSpecimen(detail.entry.speciesId)
                Keys.onSpacePressed: detail.openSpecimen(detail.entry.speciesId)

                FocusRing {
                    radius: speciesRow.radius + Theme.spacingSmall
                    shown: speciesRow.activeFocus && VxFocusRings.keyboard
                }
                MouseArea {
                    id: speciesMouse
                    anchors.fill: parent
                    hoverEnabled: true
                    onClicked: detail.openSpecimen(detail.entry.speciesId)
                }
                RowLayout {
                    id: speciesLine
                    anchors.fill: parent
                    anchors.margins: Theme.spacing
                    spacing: Theme.spacing
                    SpecimenSwatch {
                        colorHex: detail.entry.colorHex ?? ""
                        size: Theme.iconLarge
                    }
                    ColumnLayout {
                        spacing: 0
                        Layout.fillWidth: true
                        Text {
                            text: qsTr("Species")
                            color: Theme.textMuted
                            font.pixelSize: Theme.fontCaption
                            Layout.fillWidth: true
                        }
                        Text {
                            text: detail.entry.speciesName ?? ""
                            color: Theme.text
                            font.pixelSize: Theme.fontBody
                            font.weight: Font.DemiBold
                            elide: Text.ElideRight
                            Layout.fillWidth: true
                        }
                    }
                    SymbolIcon {
                        symbol: "chevron.right"
                        color: Theme.textMuted
                    }
                }
            }

            ColumnLayout {
                visible: (detail.entry.notes ?? "") !== ""
                spacing: Theme.spacingSmall
                Layout.fillWidth: true
                Text {
                    text: qsTr("Notes")
                    color: Theme.text
                    font.pixelSize: Theme.fontHeadline
                    font.weight: Font.DemiBold
                }
                Text {
                    objectName: "detailNotes"
                    text: detail.entry.notes ?? ""
                    color: Theme.text
                    font.pixelSize: Theme.fontBody
                    wrapMode: Text.WordWrap
                    textFormat: Text.PlainText
                    Layout.fillWidth: true
                }
            }

            ColumnLayout {
                visible: (detail.entry.creditLine ?? "") !== ""
                spacing: Theme.spacingSmall
                Layout.fillWidth: true
                Text {
                    text: qsTr("Photo source")
                    color: Theme.text
                    font.pixelSize: Theme.fontHeadline
                    font.weight: Font.DemiBold
                }
                Text {
                    objectName: "detailCredit"
                    text: detail.entry.creditLine ?? ""
                    color: Theme.textMuted
                    font.pixelSize: Theme.fontBody
                    wrapMode: Text.WordWrap
                    textFormat: Text.PlainText
                    Layout.fillWidth: true
                }
            }

            Item { Layout.preferredHeight: Theme.margin }
        }
    }
}
