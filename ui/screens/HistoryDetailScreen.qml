import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// One past identification ("Identification"): its photo, the clues given and the matches of
// the time, each opening that species. Everything comes ready from AppModel.historyList.
FocusScope {
    id: screen

    required property string entryId

    signal backRequested()
    signal openSpecimen(string specimenId)

    // Re-read on every store change (the revision), so stars and a deletion show at once.
    readonly property var entry: AppModel.historyList.revision >= 0
                                 ? AppModel.historyList.entry(entryId) : ({})

    objectName: "historyDetailScreen"

    FocusInView { flickable: flick }
    Flickable {
        id: flick
        anchors.fill: parent
        clip: true
        focus: true
        contentHeight: content.implicitHeight + 2 * Theme.margin
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ThemedScrollBar {
            policy: flick.contentHeight > flick.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
        }

        ColumnLayout {
            id: content
            x: Theme.margin
            y: Theme.margin
            width: Math.min(flick.width - 2 * Theme.margin, Theme.readingWidth * 2)
            spacing: Theme.spacingLarge

            VxChromeButton {
                objectName: "backButton"
                text: qsTr("Back")
                compact: true
                glyph: Icons.glyph("chevron.left")
                glyphFamily: Icons.family
                onClicked: screen.backRequested()
            }

            ColumnLayout {
                spacing: Theme.spacingSmall
                Layout.fillWidth: true

                Text {
                    objectName: "screenTitle"
                    text: qsTr("Identification")
                    color: Theme.text
                    font.pixelSize: Theme.fontLargeTitle
                    font.weight: Font.DemiBold
                }
                Text {
                    objectName: "identificationWhen"
                    visible: screen.entry.found === true
                    text: (screen.entry.dateText ?? "")
                          + (screen.entry.levelTitle ? " · " + screen.entry.levelTitle : "")
                    color: Theme.textMuted
                    font.pixelSize: Theme.fontBody
                }
            }

            EmptyState {
                objectName: "identificationGone"
                visible: screen.entry.found !== true
                symbol: "trash"
                title: qsTr("Removed")
                message: qsTr("This identification is no longer in your history.")
                Layout.fillWidth: true
                Layout.preferredHeight: implicitHeight + 2 * Theme.margin
            }

            PhotoThumbnail {
                objectName: "identificationPhoto"
                visible: screen.entry.found === true && (screen.entry.photoFile ?? "") !== ""
                         && showsPhoto
                photoFile: screen.entry.photoFile ?? ""
                crop: false
                size: Theme.iconLarge * 6
                Layout.preferredWidth: size
                Layout.preferredHeight: size * 3 / 4
            }

            DetailSection {
                objectName: "yourClues"
                visible: screen.entry.found === true
                heading: qsTr("Your clues")
                body: (screen.entry.clues ?? []).length > 0 ? screen.entry.clues.join("\n")
                                                           : qsTr("None")
                Layout.fillWidth: true
            }

            DetailSection {
                objectName: "matchesAtTheTime"
                visible: screen.entry.found === true
                heading: qsTr("Matches at the time")
                Layout.fillWidth: true

                Text {
                    visible: (screen.entry.matches ?? []).length === 0
                    text: qsTr("No match")
                    color: Theme.textMuted
                    font.pixelSize: Theme.fontBody
                }
                Repeater {
                    model: screen.entry.matches ?? []
                    SpecimenRow {
                        required property var modelData
                        objectName: "matchRow_" + modelData.specimenId
                        title: modelData.name
                        subtitle: modelData.hardnessText
                        trailing: modelData.percentText
                        colorHex: modelData.colorHex
                        starred: modelData.favorite
                        activeFocusOnTab: true
                        current: activeFocus
                        Keys.onReturnPressed: screen.openSpecimen(modelData.specimenId)
                        Keys.onSpacePressed: screen.openSpecimen(modelData.specimenId)
                        onActivated: screen.openSpecimen(modelData.specimenId)
                        Layout.fillWidth: true
                    }
                }
            }
        }
    }
}
