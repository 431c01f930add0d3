import QtQuick
import Orvane

// The largest categories of the last scan as bars.
Card {
    id: root

    // As OverviewModel has them, largest first.
    property var areas: []

    readonly property var shown: (areas ?? []).slice(0, 5)
    readonly property double largest: Math.max(1, shown[0]?.bytes ?? 0)

    padding: 18
    implicitHeight: bars.y + bars.implicitHeight + 2 * padding - 6

    HeadingText {
        id: title

        y: -2
        width: parent.width
        text: qsTr("dashboard.what_is_reclaimable")
    }

    BarList {
        id: bars

        anchors.top: title.bottom
        anchors.topMargin: 12
        width: parent.width
        entries: root.shown.map(area => ({
            label: qsTr(area.titleKey),
            value: area.bytes / root.largest,
            figure: Texts.bytes(area.bytes),
            colorIndex: area.colorIndex
        }))
    }
}
