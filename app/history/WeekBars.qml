pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// How much was moved in each week, as bars: {start, bytes} each, the newest last.
Item {
    id: root

    property var weeks: []

    readonly property double maxBytes: Math.max(1, ...weeks.map(week => week.bytes))
    readonly property var words: weeks.filter(week => week.bytes > 0).map(week => inWords(week)).reverse()
    readonly property real step: width / Math.max(1, weeks.length)

    function inWords(week: var): string {
        return qsTr("history.week_from").arg(Texts.day(week.start)).arg(Texts.bytes(week.bytes));
    }

    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("history.by_week") + ": " + (words.length > 0 ? words.join("; ") : qsTr("history.no_weeks"))

    Repeater {
        model: root.weeks

        Item {
            id: column

            required property var modelData
            required property int index

            x: Math.round(index * root.step)
            width: Math.round((index + 1) * root.step) - x
            height: root.height

            Rectangle {
                anchors.bottom: parent.bottom
                width: Math.max(3, Math.round(column.width * 0.66))
                // A week without a move keeps its place.
                height: column.modelData.bytes > 0 ? Math.max(4, Math.round(root.height * column.modelData.bytes
                                                                            / root.maxBytes)) : 2
                radius: Math.min(3, height / 2)
                color: column.modelData.bytes <= 0 ? Theme.line
                                                   : column.index === root.weeks.length - 1
                                                     ? Theme.accent : Theme.mixed(Theme.surface, Theme.accent, 0.5)
            }

            HoverHandler {
                id: hover
            }

            Tip {
                text: root.inWords(column.modelData)
                shown: hover.hovered
            }
        }
    }
}
