import QtQuick
import Quarrydex

// A web address in the accent colour, always underlined (in some themes the accent is close to
// the text colour), that opens in the default browser.
Text {
    id: link

    required property string url

    color: Theme.accent
    font.underline: true

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: Links.open(link.url, link)
    }

    Accessible.role: Accessible.Link
    Accessible.name: text
}
