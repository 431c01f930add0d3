import QtQuick
import QtQuick.Layouts
import Orvane

// The last scan's result, as a treemap. Before a scan it says so; after one that found nothing, too.
Card {
    id: root

    required property AppState appState
    required property OverviewModel model

    readonly property bool hasAreas: (model.areas ?? []).length > 0

    function inWords(areas: var): string {
        return areas.map(area => (area.titleKey ? qsTr(area.titleKey) : area.label) + " " + Texts.bytes(
                             area.bytes)).join(", ");
    }

    implicitHeight: layout.implicitHeight + 2 * padding - 2

    ColumnLayout {
        id: layout

        width: parent.width
        spacing: 8

        RowLayout {
            Layout.fillWidth: true

            HeadingText {
                Layout.fillWidth: true
                text: qsTr("dashboard.what_is_reclaimable")
            }

            CaptionText {
                visible: root.hasAreas
                text: qsTr("dashboard.click_area")
                font.weight: Font.Medium
            }
        }

        Treemap {
            Layout.fillWidth: true
            Layout.topMargin: 2
            // A share of the window, as the map's.
            Layout.preferredHeight: Math.max(224, Math.round((Window.height || 0) * 0.29))
            visible: root.hasAreas
            areas: root.model.areas
            summary: qsTr("dashboard.treemap_summary").arg(root.inWords(root.model.areas))
            onChosen: (area, child) => root.model.showArea(area.category, child ? child.folder : "")
        }

        EmptyState {
            Layout.fillWidth: true
            visible: !root.hasAreas
            drawing: root.appState.hasScanned && !root.appState.isScanning ? "clean" : "scan"
            title: root.appState.isScanning ? ""
                                            : root.appState.hasScanned ? qsTr("cleanup.nothing_title")
                                                                       : qsTr("cleanup.empty_title")
            text: root.appState.isScanning ? qsTr("dashboard.scanning_text")
                                           : root.appState.hasScanned ? qsTr("cleanup.nothing_text")
                                                                      : qsTr("cleanup.empty_text")
        }
    }
}
