import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Quarrydex

// The section list in its three groups, with the footer pinned below it.
Rectangle {
    id: sidebar

    color: Theme.surface

    ColumnLayout {
        anchors.fill: parent
        anchors.topMargin: Theme.spacing
        anchors.bottomMargin: Theme.margin
        spacing: Theme.spacing

        // Tab brings the keyboard here; Up, Down, Home and End then pick the section as a
        // click would.
        ListView {
            id: list
            objectName: "sidebarList"

            readonly property string selectedRaw: AppModel.section === "" ? "identify"
                                                                            : AppModel.section

            function activate(i) {
                if (i >= 0 && i < count) {
                    AppModel.demoDetail = ""
                    AppModel.section = model[i].raw
                }
            }

            model: AppModel.sections
            currentIndex: model.findIndex(s => s.raw === selectedRaw)
            activeFocusOnTab: true
            keyNavigationEnabled: false
            clip: true
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ThemedScrollBar {}
            Layout.fillWidth: true
            Layout.fillHeight: true

            delegate: SidebarRow {
                width: ListView.view.width
                firstOfGroup: index === 0 || list.model[index - 1].group !== modelData.group
                selected: list.selectedRaw === modelData.raw
                focused: selected && list.activeFocus && VxFocusRings.keyboard
                onActivated: list.activate(index)
            }
            onCurrentIndexChanged: positionViewAtIndex(currentIndex, ListView.Contain)

            Keys.onUpPressed: activate(currentIndex - 1)
            Keys.onDownPressed: activate(currentIndex + 1)
            Keys.onPressed: (event) => {
                if (event.key === Qt.Key_Home || event.key === Qt.Key_End) {
                    activate(event.key === Qt.Key_Home ? 0 : count - 1)
                    event.accepted = true
                }
            }
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Sections")
        }

        SidebarFooter {
            Layout.leftMargin: Theme.spacingLarge
            Layout.rightMargin: Theme.spacingLarge
            Layout.fillWidth: true
        }
    }
}
