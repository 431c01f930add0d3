pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The heads of a list's columns. A press sorts by the column, the next one turns the order round.
Item {
    id: root

    // {key, sort, width, falls} from the left: `falls` where the first order is from the largest down. The first column
    // takes the room that is left, and every other one stands at the right of its width.
    property var columns: []
    property int current: 0
    property bool isReversed: false
    property int lead: 12
    property int trail: 16
    signal sortAsked(int sort)

    implicitHeight: 30

    Repeater {
        model: root.columns

        ButtonBase {
            id: head

            required property var modelData
            required property int index

            readonly property bool isCurrent: modelData.sort === root.current
            readonly property bool falls: isCurrent && modelData.falls !== root.isReversed
            readonly property int after: root.columns.slice(index + 1).reduce((sum, column) => sum + column.width, 0)

            x: index === 0 ? root.lead : root.width - root.trail - after - width + rightPadding
            width: implicitWidth
            height: root.height
            leftPadding: 4
            rightPadding: 4
            font.pixelSize: Theme.captionSize
            ink: isCurrent ? Theme.text : Theme.muted
            text: qsTr(modelData.key) + (isCurrent ? falls ? " ↓" : " ↑" : "")
            Accessible.name: qsTr("cleanup.sort_by") + " " + qsTr(modelData.key)
            Accessible.description: isCurrent && root.isReversed ? qsTr("sort.reversed") : ""
            onClicked: root.sortAsked(modelData.sort)
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
