import QtQuick
import Quarrydex

// The History section. Details opened from it stack on AppModel.navigation("history").
PlaceholderScreen {
    title: qsTr("History")
    symbol: "clock.arrow.circlepath"
}
