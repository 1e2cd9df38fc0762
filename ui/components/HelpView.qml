import QtQuick
import QtQuick.Controls
import Quarrydex

// The chapter list beside the reading pane of the selected chapter. From the keyboard: the
// list takes the focus first and Up, Down, Home and End pick a chapter; Tab moves to the
// reading pane, which scrolls with Up, Down, Page Up, Page Down, Home and End.
Item {
    id: view

    property int topic: 0
    readonly property var chapter: QuarrydexHelp.chapter(topic)

    function pick(index) {
        view.topic = Math.max(0, Math.min(chapters.count - 1, index))
    }

    // Scrolls the reading pane to `y`, kept within its content.
    function scrollTo(y) {
        pane.contentY = Math.max(0, Math.min(pane.contentHeight - pane.height, y))
    }

    // The chapter column takes at most a third of the view, so that at a large zoom the reading
    // pane keeps two thirds. Nothing here is a Qt Quick layout: when the pane's width changed
    // just as its blocks were being remade for a newly opened chapter, a layout of the text
    // rearranged at once over a block that was already gone, and crashed.
    Item {
        anchors.fill: parent

        Rectangle {
            id: chapterColumn
            objectName: "chapterColumn"
            color: Theme.surface
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            width: Math.round(Math.min(Theme.sidebarWidth + Theme.margin * 2, view.width / 3))

            ListView {
                id: chapters
                objectName: "chapterList"
                anchors.fill: parent
                anchors.topMargin: Theme.spacingLarge
                model: QuarrydexHelp.chapters
                currentIndex: view.topic
                focus: true
                activeFocusOnTab: true
                keyNavigationEnabled: false
                clip: true
                spacing: Theme.spacingSmall / 2
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ThemedScrollBar {}
                delegate: ChapterRow {
                    x: Theme.spacing
                    width: ListView.view.width - 2 * Theme.spacing
                    selected: index === view.topic
                    focused: selected && chapters.activeFocus && VxFocusRings.keyboard
                    onActivated: {
                        view.topic = index
                        chapters.forceActiveFocus()
                    }
                }
                onCurrentIndexChanged: positionViewAtIndex(currentIndex, ListView.Contain)

                Keys.onUpPressed: view.pick(view.topic - 1)
                Keys.onDownPressed: view.pick(view.topic + 1)
                Keys.onPressed: (event) => {
                    if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
                        view.pick(event.key === Qt.Key_Home ? 0 : count - 1)
                        event.accepted = true
                    }
                }
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Chapters")
            }
        }

        Rectangle {
            id: divider
            color: Theme.hairline
            anchors.left: chapterColumn.right
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            width: Theme.hairlineWidth
        }

        Flickable {
            id: pane
            objectName: "readingPane"
            readonly property real lineStep: Theme.fontBody * 3

            activeFocusOnTab: true
            clip: true
            contentHeight: reading.height + 2 * Theme.margin
            boundsBehavior: Flickable.StopAtBounds
            anchors.left: divider.right
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            ScrollBar.vertical: ThemedScrollBar {
                policy: pane.contentHeight > pane.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded
            }

            Keys.onUpPressed: view.scrollTo(pane.contentY - lineStep)
            Keys.onDownPressed: view.scrollTo(pane.contentY + lineStep)
            Keys.onPressed: (event) => {
                const page = pane.height - lineStep
                switch (event.key) {
                case Qt.Key_PageUp: view.scrollTo(pane.contentY - page); break
                case Qt.Key_PageDown: view.scrollTo(pane.contentY + page); break
                case Qt.Key_Home: view.scrollTo(0); break
                case Qt.Key_End: view.scrollTo(pane.contentHeight); break
                default: return
                }
                event.accepted = true
            }
            Accessible.role: Accessible.Document
            Accessible.name: view.chapter.title || ""

            // Positioned, not laid out: Qt 6.4's layouts can keep a block the Repeater has just
            // deleted and crash on it when the pane's width changes in the same pass.
            Column {
                id: reading
                x: Theme.margin
                y: Theme.margin
                width: Math.min(pane.width - 2 * Theme.margin, Theme.readingWidth)

                Item {
                    width: reading.width
                    height: Math.max(chapterSymbol.implicitHeight, chapterTitle.implicitHeight)
                            + Theme.spacingSmall
                    SymbolIcon {
                        id: chapterSymbol
                        symbol: view.chapter.symbol || ""
                        size: Theme.fontTitle + Theme.spacingSmall
                        color: Theme.accent
                        anchors.verticalCenter: chapterTitle.verticalCenter
                    }
                    Text {
                        id: chapterTitle
                        objectName: "chapterTitle"
                        x: chapterSymbol.implicitWidth + Theme.spacing
                        width: parent.width - x
                        text: view.chapter.title || ""
                        color: Theme.text
                        font.pixelSize: Theme.fontTitle
                        font.weight: Font.DemiBold
                        wrapMode: Text.WordWrap
                    }
                }

                // Lines and list items; a list item's marker hangs left of its text.
                Repeater {
                    model: view.chapter.blocks || []
                    delegate: Item {
                        required property var modelData
                        required property int index
                        readonly property real gap: modelData.opensParagraph ? Theme.spacingLarge
                                                                             : Theme.spacingSmall
                        width: reading.width
                        height: gap + block.implicitHeight

                        Text {
                            id: marker
                            y: parent.gap
                            width: Theme.fontBody * 1.5
                            visible: modelData.marker !== ""
                            text: modelData.marker
                            color: Theme.textMuted
                            font.pixelSize: Theme.fontBody
                            lineHeight: 1.25
                            horizontalAlignment: Text.AlignRight
                        }
                        Text {
                            id: block
                            objectName: "chapterBlock"
                            x: marker.visible ? marker.width + Theme.spacing : 0
                            y: parent.gap
                            width: parent.width - x
                            text: modelData.text
                            textFormat: Text.StyledText
                            color: Theme.text
                            linkColor: Theme.accent
                            font.pixelSize: Theme.fontBody
                            lineHeight: 1.25
                            wrapMode: Text.Wrap
                            onLinkActivated: (link) => Links.open(link, view)

                            HoverHandler {
                                cursorShape: parent.hoveredLink !== "" ? Qt.PointingHandCursor
                                                                       : Qt.ArrowCursor
                            }
                        }
                    }
                }
            }

            // The focus ring of the pane, over the text and not scrolled with it.
            Rectangle {
                parent: pane
                anchors.fill: parent
                color: Theme.clear
                border.width: Theme.unit
                border.color: Theme.accent
                visible: pane.activeFocus
            }
        }
    }
    onTopicChanged: pane.contentY = 0
}
