import QtQuick
import Orvane

// Shows which control has the keyboard. Stands around its parent.
Rectangle {
    id: root

    property bool shown: false
    property int around: 2

    anchors.fill: parent
    anchors.margins: -around
    radius: Theme.controlRadius + around
    color: "transparent"
    border.width: 2
    border.color: Theme.accent
    visible: shown
    Accessible.ignored: true
}
