import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// A notice at the foot of `host` when a web address it asked for couldn't be opened (see
// Links). It closes with its button, or by itself after a while.
Popup {
    id: notice

    required property Window host
    readonly property real zoom: VxZoom.value

    function show(text) {
        message.text = text
        open()
    }

    objectName: "linkNotice"
    x: (host.width - width) / 2
    y: host.contentItem.height - height - Theme.margin * zoom
    width: Math.min(host.width - 2 * Theme.margin * zoom, Theme.readingWidth * zoom)
    padding: Theme.spacingLarge * zoom
    closePolicy: Popup.CloseOnEscape

    background: Rectangle {
        color: Theme.surfaceRaised
        radius: Theme.spacing * notice.zoom
        border.color: Theme.warn
        border.width: Theme.hairlineWidth * notice.zoom
    }

    contentItem: RowLayout {
        spacing: Theme.spacing * notice.zoom
        Accessible.role: Accessible.AlertMessage
        Accessible.name: message.text

        SymbolIcon {
            symbol: "exclamationmark.triangle"
            size: Theme.iconSize * notice.zoom
            color: Theme.warn
            Layout.alignment: Qt.AlignTop
        }
        Text {
            id: message
            objectName: "linkNoticeMessage"
            color: Theme.text
            font.pixelSize: Theme.fontBody * notice.zoom
            wrapMode: Text.Wrap
            Layout.fillWidth: true
        }
        // The kit's button has fixed sizes: scaled here, with room for its zoomed size.
        Item {
            implicitWidth: close.implicitWidth * notice.zoom
            implicitHeight: close.implicitHeight * notice.zoom
            Layout.alignment: Qt.AlignTop

            VxChromeButton {
                id: close
                objectName: "linkNoticeClose"
                text: qsTr("OK")
                compact: true
                scale: notice.zoom
                transformOrigin: Item.TopLeft
                onClicked: notice.close()
            }
        }
    }

    Timer {
        running: notice.opened
        interval: 20000
        onTriggered: notice.close()
    }

    Connections {
        target: Links
        function onFailed(window, text) {
            if (window === notice.host) {
                notice.show(text)
            }
        }
    }
}
