import QtQuick
import QtQuick.Templates as T
import Orvane

// A slim scroll bar that widens under the pointer.
T.ScrollBar {
    id: root

    implicitWidth: 12
    implicitHeight: 12
    padding: 3
    minimumSize: 0.06
    hoverEnabled: true
    visible: size < 1 && policy !== T.ScrollBar.AlwaysOff
    Accessible.ignored: true

    contentItem: Rectangle {
        radius: 3
        color: root.pressed || root.hovered ? Theme.muted : Theme.boxLine
        opacity: root.pressed || root.hovered ? 0.9 : root.active ? 0.6 : 0.35

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.shortMotion
            }
        }
    }
}
