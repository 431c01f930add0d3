import QtQuick
import Orvane

// The largest categories of the last scan as bars.
Card {
    id: root

    // As OverviewModel has them, largest first.
    property var areas: []
    // The height that is there for it: as many bars as fit.
    property real room: 1000

    readonly property int mostBars: Math.min(8, Math.floor((room - 56) / 40))
    readonly property var shown: (areas ?? []).slice(0, Math.max(0, mostBars))
    readonly property double largest: Math.max(1, shown[0]?.bytes ?? 0)

    padding: 18
    implicitHeight: bars.y + bars.implicitHeight + 2 * padding - 2

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
