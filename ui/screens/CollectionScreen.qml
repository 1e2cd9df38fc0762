import QtQuick
import Quarrydex

// The My Collection section. Details opened from it stack on AppModel.navigation("collection").
PlaceholderScreen {
    title: qsTr("My Collection")
    symbol: "square.grid.2x2"
}
