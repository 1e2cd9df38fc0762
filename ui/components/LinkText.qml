import QtQuick
import Quarrydex

// A web address in the accent colour, always underlined (in some themes the accent is close to
// the text colour), that opens in the default browser: on a click, or on Return or Space once
// Tab has brought the keyboard to it.
Text {
    id: link

    required property string url

    color: Theme.accent
    font.underline: true
    activeFocusOnTab: true

    Keys.onReturnPressed: Links.open(link.url, link)
    Keys.onEnterPressed: Links.open(link.url, link)
    Keys.onSpacePressed: Links.open(link.url, link)

    FocusRing {
        shown: link.activeFocus && VxFocusRings.keyboard
    }

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
