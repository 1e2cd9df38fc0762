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

        ListView {
            id: list
            objectName: "sidebarList"
            model: AppModel.sections
            clip: true
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ThemedScrollBar {}
            Layout.fillWidth: true
            Layout.fillHeight: true

            delegate: SidebarRow {
                width: ListView.view.width
                firstOfGroup: index === 0 || list.model[index - 1].group !== modelData.group
                selected: (AppModel.section === "" ? "identify" : AppModel.section) === modelData.raw
                onActivated: {
                    AppModel.demoDetail = ""
                    AppModel.section = modelData.raw
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
