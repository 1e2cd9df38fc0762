import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The My Collection section: the pieces newest first with search, "Add Specimen"
// (Ctrl+Shift+N), a "Delete" on every row that asks nothing but can be undone (Ctrl+Z, or
// "Undo" in the notice that follows), and the piece's detail opened over the list
// (AppModel.navigation("collection")), from which a species' detail opens in turn.
SectionStack {
    id: stack

    readonly property var collection: AppModel.collection

    objectName: "screen_My Collection"
    section: "collection"
    details: ({ entry: entryDetail, specimen: specimenDetail })

    function openEntry(entryId) { navigation.push("entry", entryId, -1) }

    ListScreen {
        id: list
        objectName: "collectionList"
        anchors.fill: parent
        focus: true
        title: qsTr("My Collection")
        searchable: true
        searchPrompt: qsTr("Search your collection")
        query: stack.collection.query
        onQueryEdited: (text) => stack.collection.query = text
        countText: stack.collection.totalCount > 0 ? stack.collection.countText : ""
        model: stack.collection
        // An empty collection says what it is for and how to start; a search that finds
        // nothing says so.
        readonly property bool nothingYet: stack.collection.totalCount === 0
        empty: stack.collection.count === 0
        emptySymbol: nothingYet ? "square.grid.2x2" : "magnifyingglass"
        emptyTitle: nothingYet ? qsTr("Your collection is empty")
                               : qsTr("No specimens match your search")
        emptyMessage: nothingYet ? qsTr("Identify a stone and choose “Add to My Collection”, or add one by hand. Each piece keeps your photo, where you got it, and notes.")
                                 : ""
        emptyActions: nothingYet ? startActions : null

        VxChromeButton {
            objectName: "addSpecimen"
            text: qsTr("Add Specimen")
            glyph: Icons.glyph("plus")
            glyphFamily: Icons.family
            onClicked: AppModel.collectionEditor.openNew()
        }

        delegate: SpecimenRow {
            required property int index
            required property string entryId
            required property string name
            required property string speciesName
            required photoFile
            required colorHex

            objectName: "collectionRow_" + index
            width: ListView.view.width - Theme.spacing
            title: name
            subtitle: speciesName
            showStar: false
            current: ListView.isCurrentItem
            actionText: qsTr("Delete")
            actionSymbol: "trash"
            onActivated: {
                ListView.view.currentIndex = index
                list.activated(index)
            }
            onActionTriggered: stack.collection.remove(entryId)
        }

        onActivated: (index) => stack.openEntry(stack.collection.idAt(index))
        onActionRequested: (index) => stack.collection.remove(stack.collection.idAt(index))
    }

    // After a delete: what went, and the way back.
    Rectangle {
        id: undoNotice
        objectName: "undoNotice"
        parent: stack
        z: 10
        visible: stack.collection.canUndoDelete
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.margin
        width: noticeRow.implicitWidth + 2 * Theme.spacing
        height: noticeRow.implicitHeight + 2 * Theme.spacing
        radius: Theme.corner
        color: Theme.surfaceRaised
        border.color: Theme.hairline

        RowLayout {
            id: noticeRow
            anchors.centerIn: parent
            spacing: Theme.spacing
            Text {
                objectName: "undoText"
                text: stack.collection.undoText
                color: Theme.text
                font.pixelSize: Theme.fontBody
            }
            VxChromeButton {
                objectName: "undoButton"
                text: qsTr("Undo")
                compact: true
                onClicked: stack.collection.undoDelete()
            }
        }
        // The notice goes after a while; Ctrl+Z still works until then.
        Timer {
            running: undoNotice.visible
            interval: 10000
            onTriggered: stack.collection.dismissUndo()
        }
    }

    // How to start an empty collection.
    Component {
        id: startActions
        ColumnLayout {
            objectName: "collectionEmpty"
            spacing: Theme.spacingLarge

            // The buttons side by side and centred while they fit, else one under the other.
            Flow {
                spacing: Theme.spacing
                Layout.fillWidth: true
                Layout.maximumWidth: addButton.implicitWidth
                                     + (loadButton.visible ? spacing + loadButton.implicitWidth : 0)
                Layout.alignment: Qt.AlignHCenter
                VxChromeButton {
                    id: addButton
                    objectName: "addASpecimen"
                    text: qsTr("Add a Specimen")
                    prominent: true
                    glyph: Icons.glyph("plus")
                    glyphFamily: Icons.family
                    onClicked: AppModel.collectionEditor.openNew()
                }
                VxChromeButton {
                    id: loadButton
                    objectName: "loadSampleCollection"
                    visible: AppModel.hasSampleSet
                    text: qsTr("Load Sample Collection")
                    glyph: Icons.glyph("photo.stack")
                    glyphFamily: Icons.family
                    onClicked: AppModel.loadSampleCollection()
                }
            }
            Text {
                visible: AppModel.hasSampleSet
                text: qsTr("Adds ready-made sample specimens with real photos so you can try every feature. Remove them any time with Help > Remove Sample Collection.")
                color: Theme.textMuted
                font.pixelSize: Theme.fontCaption
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                Layout.fillWidth: true
            }
        }
    }

    Shortcut {
        sequences: [StandardKey.Undo]
        enabled: stack.visible && stack.collection.canUndoDelete
        onActivated: stack.collection.undoDelete()
    }

    Component {
        id: entryDetail
        CollectionDetailScreen {
            entryId: stack.navigation.itemId
            // Back on the list, where the piece was (Ctrl+Z then undoes a delete at once).
            onBackRequested: {
                stack.back()
                list.listView.forceActiveFocus()
            }
            onOpenSpecimen: (id) => stack.navigation.push("specimen", id, -1)
        }
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
