import QtQuick
import Quarrydex

// The Favorites section: the starred species by name, each with "Remove from Favorites";
// a species' detail opens over the list (AppModel.navigation("favorites")).
SectionStack {
    id: stack

    readonly property var favorites: AppModel.favoritesList

    objectName: "screen_favorites"
    section: "favorites"
    details: ({ specimen: specimenDetail })

    ListScreen {
        id: list
        objectName: "favoritesList"
        anchors.fill: parent
        focus: true
        title: qsTr("Favorites")
        model: stack.favorites
        empty: stack.favorites.count === 0
        emptySymbol: "star"
        emptyTitle: qsTr("No favorites yet")
        emptyMessage: qsTr("Tap the star on any library entry to keep it here for quick reference — handy for the stones you hunt for most.")

        delegate: SpecimenRow {
            required property int index
            required property string specimenId
            required property string name
            required property string hardnessText
            required colorHex

            objectName: "favoriteRow_" + specimenId
            width: ListView.view.width - Theme.spacing
            title: name
            trailing: hardnessText
            starred: true
            current: ListView.isCurrentItem
            actionText: qsTr("Remove from Favorites")
            onActivated: {
                ListView.view.currentIndex = index
                list.activated(index)
            }
            onActionTriggered: AppModel.toggleFavorite(specimenId)
        }

        onActivated: (index) => stack.navigation.push("specimen", stack.favorites.idAt(index), -1)
        onActionRequested: (index) => AppModel.toggleFavorite(stack.favorites.idAt(index))
    }

    Component {
        id: specimenDetail
        SpecimenDetailScreen {
            specimenId: stack.navigation.itemId
            confidence: stack.navigation.confidence
            onBackRequested: stack.back()
            onOpenSpecimen: (id) => stack.navigation.push("specimen", id, -1)
        }
    }
}
