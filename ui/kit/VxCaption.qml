import QtQuick
import Quarrydex

// A small caption in the kit's dim colour.
Text {
    color: OrloKitHost.theme.dim
    font.pixelSize: 11
    wrapMode: Text.WordWrap
}
