import QtQuick
import Quarrydex

// One of the program's symbols (see icons.cpp), drawn from the icon font.
Text {
    property string symbol: ""
    property real size: Theme.iconSize

    text: Icons.glyph(symbol)
    font.family: Icons.family
    font.pixelSize: size
    color: Theme.text
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    Accessible.ignored: true
}
