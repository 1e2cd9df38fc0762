import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The Library section: every species with search, the category picker and the stone of the
// day; a species' detail opens over the list (AppModel.navigation("library")), which stays
// alive underneath with its search, filter and scroll position.
SectionStack {
    id: stack

    readonly property var species: AppModel.libraryList

    objectName: "screen_library"
    section: "library"
    details: ({ specimen: specimenDetail })

    ListScreen {
        id: list
        objectName: "libraryList"
        anchors.fill: parent
        focus: true
        title: qsTr("Library")
        searchable: true
        searchPrompt: qsTr("Name, color, place, formula, birthstone")
        countText: stack.species.countText
        model: stack.species
        empty: stack.species.count === 0
        emptySymbol: "magnifyingglass"
        emptyMessage: stack.species.emptyMessage

        query: stack.species.query
        onQueryEdited: (text) => stack.species.query = text

        header: ColumnLayout {
            spacing: Theme.spacing + Theme.spacingSmall

            StoneOfTheDayCard {
                objectName: "stoneOfTheDay"
                stone: stack.species.stoneOfTheDay
                // Out of the way while the user is looking for something in particular.
                visible: stone.specimenId !== undefined && !stack.species.narrowed
                Layout.fillWidth: true
                onOpened: (id) => stack.navigation.push("specimen", id, -1)
            }
            RowLayout {
                spacing: Theme.spacing
                Layout.fillWidth: true

                Text {
                    text: qsTr("Category")
                    color: Theme.textMuted
                    font.pixelSize: Theme.fontBody
                }
                ComboBox {
                    id: picker
                    objectName: "categoryPicker"
                    model: stack.species.categories
                    textRole: "label"
                    currentIndex: stack.species.categoryIndex
                    font.pixelSize: Theme.fontBody
                    implicitContentWidthPolicy: ComboBox.WidestText
                    onActivated: (index) => stack.species.categoryIndex = index
                    Accessible.name: qsTr("Category")
                }
                Item { Layout.fillWidth: true }
            }
        }

        delegate: SpecimenRow {
            required property int index
            required property string specimenId
            required property string name
            required property string hardnessText
            required colorHex
            required property bool favorite

            objectName: "libraryRow_" + specimenId
            width: ListView.view.width - Theme.spacing
            title: name
            trailing: hardnessText
            starred: favorite
            current: ListView.isCurrentItem
            onActivated: {
                ListView.view.currentIndex = index
                list.activated(index)
            }
        }

        onActivated: (index) => stack.navigation.push("specimen", stack.species.idAt(index), -1)
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
