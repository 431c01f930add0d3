import QtQuick
import Orvane

// The maxBytes categories of the last scan as bars.
Card {
    id: root

    // As OverviewModel has them, maxBytes first.
    property var areas: []
    // The height that is there for it: as many bars as fit.
    property real room: 1000

    readonly property int maxBars: Math.min(8, Math.floor((room - 56) / 40))
    readonly property var shown: (areas ?? []).slice(0, Math.max(0, maxBars))
    readonly property double maxBytes: Math.max(1, shown[0]?.bytes ?? 0)

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
            value: area.bytes / root.maxBytes,
            figure: Texts.bytes(area.bytes),
            colorIndex: area.colorIndex
        }))
    }
}
