import QtQuick
import Quarrydex

// The Library section. Details opened from it stack on AppModel.navigation("library").
PlaceholderScreen {
    title: qsTr("Library")
    symbol: "books.vertical"
}
