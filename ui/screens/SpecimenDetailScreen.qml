import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// One library species: its facts and texts, the favourite star and "Add to My Collection".
// Opened from the library, favourites, history and identification results; from a result it
// also shows the session photo and the match share. Every text comes ready from
// AppModel.specimenDetail().
FocusScope {
    id: screen

    required property string specimenId
    // The match share (0...1) when opened from an identification result; below 0 otherwise.
    property real confidence: -1
    property bool showSessionPhoto: false
    // "Add to My Collection" opens the window's collection editor on this species, with the
    // session photo and the match share when shown from a result. A host may turn it off.
    property bool canAddToCollection: true

    signal backRequested()
    signal openSpecimen(string specimenId)
    signal addToCollection(string specimenId, real confidence)
    onAddToCollection: (id, share) => AppModel.addToCollection(id, share,
                                                               showSessionPhoto && AppModel.hasPhoto)

    readonly property var facts: AppModel.specimenDetail(specimenId, confidence)
    readonly property bool favorite: AppModel.favorites.includes(specimenId)

    objectName: "specimenDetailScreen"

    onSpecimenIdChanged: flick.contentY = 0

    FocusInView { flickable: flick }
    Flickable {
        id: flick
        objectName: "detailFlick"
        anchors.fill: parent
        clip: true
        focus: true
        contentHeight: content.implicitHeight + 2 * Theme.margin
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ThemedScrollBar {
            policy: flick.contentHeight > flick.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
        }
        Keys.onUpPressed: flick.contentY = Math.max(0, flick.contentY - Theme.rowHeight)
        Keys.onDownPressed: flick.contentY = Math.max(0, Math.min(flick.contentHeight - flick.height,
                                                               flick.contentY + Theme.rowHeight))

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
                Accessible.name: qsTr("Back")
            }

            EmptyState {
                objectName: "specimenGone"
                visible: screen.facts.found !== true
                symbol: "books.vertical"
                title: qsTr("Not in the library")
                message: qsTr("This species is not in the stone library of this copy of Quarrydex.")
                Layout.fillWidth: true
                Layout.preferredHeight: implicitHeight + 2 * Theme.margin
            }

            ColumnLayout {
                visible: screen.facts.found === true
                spacing: Theme.spacingLarge
                Layout.fillWidth: true

                // Name, kind, and the lines that apply; the swatch above them where the screen is
                // narrow (a large zoom).
                GridLayout {
                    columns: content.width >= Theme.readingWidth / 2 ? 2 : 1
                    columnSpacing: Theme.margin
                    rowSpacing: Theme.spacing
                    Layout.fillWidth: true

                    SpecimenSwatch {
                        colorHex: screen.facts.colorHex ?? ""
                        size: Theme.iconLarge * 2
                        Layout.alignment: Qt.AlignTop
                    }
                    ColumnLayout {
                        spacing: Theme.spacingSmall
                        Layout.fillWidth: true

                        Text {
                            objectName: "specimenName"
                            text: screen.facts.name ?? ""
                            color: Theme.text
                            font.pixelSize: Theme.fontLargeTitle
                            font.weight: Font.DemiBold
                            wrapMode: Text.WordWrap
                            Layout.fillWidth: true
                        }
                        Text {
                            text: (screen.facts.categoryTitle ?? "") + " · " + (screen.facts.group ?? "")
                            color: Theme.textMuted
                            font.pixelSize: Theme.fontBody
                            wrapMode: Text.WordWrap
                            Layout.fillWidth: true
                        }
                        Flow {
                            spacing: Theme.spacing
                            Layout.fillWidth: true
                            Layout.topMargin: Theme.spacingSmall

                            Rectangle {
                                objectName: "savedOffline"
                                implicitWidth: offlineRow.implicitWidth + 2 * Theme.spacing
                                implicitHeight: offlineRow.implicitHeight + Theme.spacing
                                radius: height / 2
                                color: Theme.offlineFill
                                Row {
                                    id: offlineRow
                                    anchors.centerIn: parent
                                    spacing: Theme.spacingSmall
                                    SymbolIcon {
                                        symbol: "checkmark"
                                        size: Theme.fontCaption + Theme.spacingSmall
                                        color: Theme.offlineText
                                        anchors.verticalCenter: parent.verticalCenter
                                    }
                                    Text {
                                        text: qsTr("Saved offline")
                                        color: Theme.offlineText
                                        font.pixelSize: Theme.fontCaption
                                        font.weight: Font.DemiBold
                                        anchors.verticalCenter: parent.verticalCenter
                                    }
                                }
                            }
                            Tag {
                                objectName: "birthstone"
                                visible: text !== ""
                                text: screen.facts.birthstoneText ?? ""
                            }
                        }
                    }
                }

                // From an identification result: the photo and the share it had.
                ColumnLayout {
                    visible: screen.confidence >= 0 || photo.visible
                    spacing: Theme.spacing
                    Layout.fillWidth: true

                    PhotoThumbnail {
                        id: photo
                        objectName: "sessionPhoto"
                        visible: screen.showSessionPhoto && AppModel.hasPhoto
                        photoFile: visible ? "@session" : ""
                        revision: String(AppModel.photoRevision)
                        crop: false
                        size: Theme.iconLarge * 6
                        Layout.preferredWidth: size
                        Layout.preferredHeight: size * 3 / 4
                    }
                    Text {
                        objectName: "matchShare"
                        visible: text !== ""
                        text: screen.facts.matchShareText ?? ""
                        color: Theme.accent
                        font.pixelSize: Theme.fontHeadline
                        font.weight: Font.DemiBold
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                }

                Flow {
                    spacing: Theme.spacing
                    Layout.fillWidth: true

                    VxChromeButton {
                        objectName: "favoriteToggle"
                        text: screen.favorite ? qsTr("Favorite") : qsTr("Add to Favorites")
                        glyph: Icons.glyph(screen.favorite ? "star.fill" : "star")
                        glyphFamily: Icons.family
                        onClicked: AppModel.toggleFavorite(screen.specimenId)
                    }
                    VxChromeButton {
                        objectName: "addToCollection"
                        prominent: true
                        enabled: screen.canAddToCollection
                        text: qsTr("Add to My Collection")
                        glyph: Icons.glyph("plus")
                        glyphFamily: Icons.family
                        onClicked: screen.addToCollection(screen.specimenId, screen.confidence)
                    }
                }

                Flow {
                    objectName: "factTiles"
                    spacing: Theme.spacing
                    Layout.fillWidth: true

                    Repeater {
                        model: screen.facts.facts ?? []
                        FactTile {
                            required property var modelData
                            objectName: "factTile"
                            label: modelData.label
                            value: modelData.value
                            width: Math.min(content.width,
                                            Math.max(Theme.buttonWidth * 3,
                                                     (content.width - 3 * Theme.spacing) / 4))
                        }
                    }
                }

                DetailSection {
                    objectName: "summary"
                    body: screen.facts.summary ?? ""
                    Layout.fillWidth: true
                }
                DetailSection {
                    heading: qsTr("History & lore")
                    body: screen.facts.history ?? ""
                    Layout.fillWidth: true
                }
                DetailSection {
                    heading: qsTr("Uses")
                    body: screen.facts.uses ?? ""
                    Layout.fillWidth: true
                }
                DetailSection {
                    heading: qsTr("Care")
                    body: screen.facts.care ?? ""
                    Layout.fillWidth: true
                }
                DetailSection {
                    heading: qsTr("Where it's found")
                    Layout.fillWidth: true

                    Flow {
                        objectName: "localities"
                        spacing: Theme.spacing
                        Layout.fillWidth: true
                        Repeater {
                            model: screen.facts.localities ?? []
                            Tag {
                                required property string modelData
                                text: modelData
                            }
                        }
                    }
                }
                DetailSection {
                    heading: qsTr("Look-alikes and how to tell them apart")
                    Layout.fillWidth: true

                    Repeater {
                        model: screen.facts.lookAlikes ?? []
                        ColumnLayout {
                            id: look
                            required property var modelData
                            objectName: "lookAlike"
                            spacing: Theme.spacingSmall / 2
                            Layout.fillWidth: true

                            Text {
                                objectName: "lookAlikeName"
                                text: look.modelData.name
                                color: linked ? Theme.accent : Theme.text
                                font.pixelSize: Theme.fontBody
                                font.weight: Font.DemiBold
                                font.underline: linked && (lookMouse.containsMouse || activeFocus)
                                readonly property bool linked: look.modelData.specimenId !== ""
                                activeFocusOnTab: linked
                                Keys.onReturnPressed: screen.openSpecimen(look.modelData.specimenId)
                                Keys.onSpacePressed: screen.openSpecimen(look.modelData.specimenId)
                                Accessible.role: linked ? Accessible.Link : Accessible.StaticText
                                Accessible.name: text

                                FocusRing {
                                    shown: parent.activeFocus && VxFocusRings.keyboard
                                }

                                MouseArea {
                                    id: lookMouse
                                    anchors.fill: parent
                                    enabled: parent.linked
                                    hoverEnabled: true
                                    cursorShape: Qt.PointingHandCursor
                                    onClicked: screen.openSpecimen(look.modelData.specimenId)
                                }
                            }
                            Text {
                                text: look.modelData.tip
                                color: Theme.textMuted
                                font.pixelSize: Theme.fontBody
                                wrapMode: Text.WordWrap
                                Layout.fillWidth: true
                            }
                        }
                    }
                }
            }
        }
    }
}
