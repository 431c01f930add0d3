import QtQuick
import Orvane

// An icon alone; `text` is its name and its tooltip.
ButtonBase {
    id: root

    property int iconSize: 16

    implicitWidth: 28
    implicitHeight: 28
    leftPadding: 0
    rightPadding: 0
    ink: hovered || visualFocus ? Theme.text : Theme.muted
    fill: hovered || down ? Theme.accentSoft : "transparent"

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: root.symbol
            color: root.shownInk
            size: root.iconSize
        }
    }

    Tip {
        text: root.text
        shown: root.hovered || root.visualFocus
    }
}
