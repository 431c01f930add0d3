pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The texts of a row in full, where it is too narrow for one of them. Made when the row is pointed at: most never are.
Repeater {
    id: root

    property bool isPointedAt: false
    // The labels, from the top down.
    property var labels: []

    model: isPointedAt && labels.some(label => label.truncated) ? 1 : 0

    Item {
        anchors.fill: parent

        Tip {
            maximumWidth: 560
            text: Texts.joined(root.labels.map(label => label.text), "\n")
            shown: true
        }
    }
}
