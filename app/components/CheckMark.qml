import QtQuick
import Orvane

// The drawing of a box that is empty, ticked or partly ticked. The control around it answers clicks and has the
// accessible name.
Rectangle {
    id: root

    property int checkState: Qt.Unchecked
    property bool isHovered: false

    readonly property bool full: checkState !== Qt.Unchecked

    implicitWidth: 16
    implicitHeight: 16
    radius: 4
    opacity: enabled ? 1 : 0.45
    color: full ? Theme.accent : isHovered ? Theme.accentSoft : Theme.surface
    border.width: full ? 0 : 1.2
    border.color: Theme.boxLine

    Icon {
        anchors.centerIn: parent
        visible: root.full
        name: !root.full ? "" : root.checkState === Qt.PartiallyChecked ? "dash" : "check"
        color: Theme.inkOnAccent
        size: 14
    }
}
