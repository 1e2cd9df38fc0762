import QtQuick
import Quarrydex

// The Favorites section. Details opened from it stack on AppModel.navigation("favorites").
PlaceholderScreen {
    title: qsTr("Favorites")
    symbol: "star"
}
