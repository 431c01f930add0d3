import QtQuick
import QtQuick.Templates as T
import Orvane

// On or off at once. The owner answers `toggleAsked`; the switch follows what the owner says.
T.Switch {
    id: root

    property bool on: false
    signal toggleAsked

    checked: on
    implicitWidth: 36
    implicitHeight: 22
    hoverEnabled: true
    opacity: enabled ? 1 : 0.5
    focusPolicy: Qt.StrongFocus
    onToggled: {
        root.toggleAsked();
        root.checked = Qt.binding(() => root.on);
    }
    Accessible.name: root.text
    Accessible.role: Accessible.CheckBox
    Accessible.checkable: true
    Accessible.checked: root.checked
    Accessible.onToggleAction: root.toggleAsked()
    Accessible.onPressAction: root.toggleAsked()

    indicator: Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        height: 20
        radius: 10
        color: root.checked ? Theme.accent : Theme.boxLine

        Behavior on color {
            ColorAnimation {
                duration: Theme.shortMotion
            }
        }

        Rectangle {
            x: root.checked ? parent.width - width - 3 : 3
            y: 3
            width: 14
            height: 14
            radius: 7
            color: root.checked ? Theme.inkOnAccent : Theme.surface

            Behavior on x {
                NumberAnimation {
                    duration: Theme.shortMotion
                    easing.type: Easing.OutCubic
                }
            }
        }

        FocusRing {
            shown: root.visualFocus
            radius: 12
        }
    }
}
