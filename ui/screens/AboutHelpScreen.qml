import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// About & Help: who makes the program, its version, and the help chapters.
Flickable {
    id: screen
    FocusInView {
        id: follower
        flickable: screen
    }

    signal aboutRequested()

    objectName: "screen_about"
    clip: true
    contentHeight: content.implicitHeight + 2 * Theme.margin
    boundsBehavior: Flickable.StopAtBounds
    ScrollBar.vertical: ThemedScrollBar {
        policy: screen.contentHeight > screen.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded
    }

    ColumnLayout {
        id: content
        x: Theme.margin
        y: Theme.margin
        width: Math.min(screen.width - 2 * Theme.margin, Theme.readingWidth)
        spacing: Theme.spacingLarge

        Text {
            objectName: "screenTitle"
            text: qsTr("About & Help")
            color: Theme.text
            font.pixelSize: Theme.fontLargeTitle
            font.weight: Font.DemiBold
        }

        VxPanel {
            radius: Theme.corner
            padding: Theme.margin
            Layout.fillWidth: true
            implicitHeight: header.implicitHeight + 2 * padding

            // The picture beside the text, or above it where the screen is narrow (a large
            // zoom).
            GridLayout {
                id: header
                width: parent.width
                columns: content.width >= Theme.readingWidth * 0.8 ? 2 : 1
                columnSpacing: Theme.margin
                rowSpacing: Theme.spacing

                Image {
                    source: "qrc:/Quarrydex/resources/quarrydex.svg"
                    readonly property real side: Theme.iconLarge * 3
                    sourceSize.width: side
                    sourceSize.height: side
                    Layout.alignment: Qt.AlignTop
                    Accessible.ignored: true
                }
                ColumnLayout {
                    spacing: Theme.spacingSmall
                    Layout.fillWidth: true

                    Text {
                        text: Branding.displayName
                        color: Theme.text
                        font.pixelSize: Theme.fontTitle
                        font.weight: Font.Bold
                        wrapMode: Text.Wrap
                        Layout.fillWidth: true
                    }
                    Text {
                        objectName: "aboutScreenVersion"
                        text: qsTr("Version %1 (build %2)").arg(Branding.version).arg(Branding.build)
                        color: Theme.textMuted
                        font.pixelSize: Theme.fontCaption
                        wrapMode: Text.Wrap
                        Layout.fillWidth: true
                    }
                    Text {
                        text: Branding.tagline
                        color: Theme.text
                        font.pixelSize: Theme.fontBody
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                        Layout.topMargin: Theme.spacingSmall
                    }
                    Text {
                        text: qsTr("Designed and published by %1. Everything runs on this computer; nothing is sent anywhere.").arg(Branding.company)
                        color: Theme.textMuted
                        font.pixelSize: Theme.fontBody
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                    LinkText {
                        objectName: "aboutWebsite"
                        text: Branding.websiteText
                        url: Branding.website
                        font.pixelSize: Theme.fontBody
                    }
                    Flow {
                        spacing: Theme.spacing
                        Layout.topMargin: Theme.spacing
                        Layout.fillWidth: true
                        VxChromeButton {
                            objectName: "openHelpButton"
                            text: qsTr("Open Help")
                            prominent: true
                            glyph: Icons.glyph("questionmark.circle")
                            glyphFamily: Icons.family
                            onClicked: QuarrydexHelp.show("welcome")
                        }
                        VxChromeButton {
                            objectName: "aboutProgramButton"
                            text: qsTr("About %1").arg(Branding.displayName)
                            glyph: Icons.glyph("info.circle")
                            glyphFamily: Icons.family
                            onClicked: screen.aboutRequested()
                        }
                    }
                }
            }
        }

        Text {
            text: qsTr("Help chapters")
            color: Theme.text
            font.pixelSize: Theme.fontHeadline
            font.weight: Font.DemiBold
            Layout.topMargin: Theme.spacing
        }

        VxPanel {
            radius: Theme.corner
            padding: Theme.spacing
            Layout.fillWidth: true
            implicitHeight: chapters.implicitHeight + 2 * padding

            // Tab brings the keyboard here; Up, Down, Home and End move between the chapters,
            // Return or Space opens the one outlined in the help window.
            Column {
                id: chapters
                objectName: "aboutChapterList"

                property int current: 0

                function move(i) {
                    if (i >= 0 && i < rows.count) {
                        current = i
                        follower.reveal(rows.itemAt(i))
                    }
                }
                function open() {
                    const row = rows.itemAt(current)
                    if (row) {
                        QuarrydexHelp.show(row.chapterID)
                    }
                }

                width: parent.width
                activeFocusOnTab: true
                onActiveFocusChanged: if (activeFocus) follower.reveal(rows.itemAt(current))

                Repeater {
                    id: rows
                    model: QuarrydexHelp.chapters
                    delegate: ChapterRow {
                        width: chapters.width
                        showsChevron: true
                        focused: index === chapters.current && chapters.activeFocus
                                 && VxFocusRings.keyboard
                        onActivated: {
                            chapters.current = index
                            QuarrydexHelp.show(chapterID)
                        }
                    }
                }

                Keys.onUpPressed: move(current - 1)
                Keys.onDownPressed: move(current + 1)
                Keys.onReturnPressed: open()
                Keys.onEnterPressed: open()
                Keys.onSpacePressed: open()
                Keys.onPressed: (event) => {
                    if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
                        move(event.key === Qt.Key_Home ? 0 : rows.count - 1)
                        event.accepted = true
                    }
                }
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Help chapters")
            }
        }

        Text {
            text: Branding.copyright
            color: Theme.textMuted
            font.pixelSize: Theme.fontCaption
            Layout.topMargin: Theme.spacing
        }
    }
}
