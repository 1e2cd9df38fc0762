import QtQuick
import Quarrydex

// A web address in the accent colour that opens in the default browser.
Text {
    id: link

    required property string url

    color: Theme.accent
    font.underline: mouse.containsMouse

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: Qt.openUrlExternally(link.url)
    }

    Accessible.role: Accessible.Link
    Accessible.name: text
}
