import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The History section: past identifications newest first, each with "Delete"; "Clear History"
// asks first. An identification's detail opens over the list (AppModel.navigation("history")),
// and a species from it over that.
SectionStack {
    id: stack

    readonly property var history: AppModel.historyList

    objectName: "screen_history"
    section: "history"
    details: ({ history: historyDetail, specimen: specimenDetail })

    ListScreen {
        id: list
        objectName: "historyList"
        anchors.fill: parent
        focus: true
        title: qsTr("History")
        searchable: stack.history.totalCount > 0
        searchPrompt: qsTr("Species, clue, level or date")
        model: stack.history
        empty: stack.history.count === 0
        emptySymbol: stack.history.totalCount > 0 ? "magnifyingglass" : "clock.arrow.circlepath"
        emptyTitle: stack.history.totalCount > 0 ? "" : qsTr("No identifications yet")
        emptyMessage: stack.history.totalCount > 0
                      ? qsTr("No identification matches “%1”.").arg(query)
                      : qsTr("Every time you identify a stone, the photo, your answers and the top matches are kept here so you can look back later.")

        query: stack.history.query
        onQueryEdited: (text) => stack.history.query = text

        VxChromeButton {
            objectName: "clearHistory"
            text: qsTr("Clear History")
            glyph: Icons.glyph("trash")
            glyphFamily: Icons.family
            enabled: stack.history.totalCount > 0
            onClicked: confirmClear.open()
        }

        delegate: SpecimenRow {
            required property int index
            required property string entryId
            required photoFile
            required colorHex
            required property string topName
            required property string levelTitle
            required property string cluesText
            required property string dateText

            objectName: "historyRow"
            width: ListView.view.width - Theme.spacing
            title: topName
            subtitle: levelTitle === "" ? cluesText : levelTitle + " · " + cluesText
            trailing: dateText
            showStar: false
            current: ListView.isCurrentItem
            actionText: qsTr("Delete")
            actionSymbol: "trash"
            onActivated: {
                ListView.view.currentIndex = index
                list.activated(index)
            }
            onActionTriggered: AppModel.deleteHistory(entryId)
        }

        onActivated: (index) => stack.navigation.push("history", stack.history.idAt(index), -1)
        onActionRequested: (index) => AppModel.deleteHistory(stack.history.idAt(index))
    }

    ConfirmDialog {
        id: confirmClear
        objectName: "confirmClearHistory"
        title: qsTr("Clear all identification history?")
        message: qsTr("Your collection and favorites are not affected.")
        confirmText: qsTr("Clear History")
        onConfirmed: AppModel.clearHistory()
    }

    Component {
        id: historyDetail
        HistoryDetailScreen {
            entryId: stack.navigation.itemId
            onBackRequested: stack.back()
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
