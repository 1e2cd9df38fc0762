import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The chapter list beside the reading pane of the selected chapter.
Item {
    id: view

    property int topic: 0
    readonly property var chapter: QuarrydexHelp.chapter(topic)

    RowLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            color: Theme.surface
            Layout.preferredWidth: Theme.sidebarWidth + Theme.margin * 2
            Layout.fillHeight: true

            ListView {
                id: chapters
                objectName: "chapterList"
                anchors.fill: parent
                anchors.topMargin: Theme.spacingLarge
                model: QuarrydexHelp.chapters
                currentIndex: view.topic
                clip: true
                spacing: Theme.spacingSmall / 2
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ThemedScrollBar {}
                delegate: ChapterRow {
                    x: Theme.spacing
                    width: ListView.view.width - 2 * Theme.spacing
                    selected: index === view.topic
                    onActivated: view.topic = index
                }
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Chapters")
            }
        }

        Rectangle {
            color: Theme.hairline
            Layout.preferredWidth: Theme.hairlineWidth
            Layout.fillHeight: true
        }

        Flickable {
            id: pane
            objectName: "readingPane"
            clip: true
            contentHeight: reading.implicitHeight + 2 * Theme.margin
            boundsBehavior: Flickable.StopAtBounds
            Layout.fillWidth: true
            Layout.fillHeight: true
            ScrollBar.vertical: ThemedScrollBar {
                policy: pane.contentHeight > pane.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded
            }

            ColumnLayout {
                id: reading
                x: Theme.margin
                y: Theme.margin
                width: Math.min(pane.width - 2 * Theme.margin, Theme.readingWidth)
                spacing: Theme.spacingLarge

                RowLayout {
                    spacing: Theme.spacing
                    SymbolIcon {
                        symbol: view.chapter.symbol || ""
                        size: Theme.fontTitle + Theme.spacingSmall
                        color: Theme.accent
                    }
                    Text {
                        objectName: "chapterTitle"
                        text: view.chapter.title || ""
                        color: Theme.text
                        font.pixelSize: Theme.fontTitle
                        font.weight: Font.DemiBold
                        wrapMode: Text.WordWrap
                        Layout.fillWidth: true
                    }
                }
                Text {
                    objectName: "chapterText"
                    text: view.chapter.styledText || ""
                    textFormat: Text.StyledText
                    color: Theme.text
                    font.pixelSize: Theme.fontBody
                    lineHeight: 1.25
                    wrapMode: Text.WordWrap
                    Layout.fillWidth: true
                }
            }
        }
    }
    onTopicChanged: pane.contentY = 0
}
