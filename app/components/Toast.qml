pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Orvane

// Says at the foot of the window what happened, with Undo, and goes by itself. The pointer or the keyboard on it holds
// it. Made when it is first shown.
Item {
    id: root

    property string text: ""
    property string action: ""
    property T.Popup bubble: null
    signal acted

    function show(message: string, actionText: string) {
        root.text = message;
        root.action = actionText;
        if (!bubble)
            bubble = bubbleComponent.createObject(root) as T.Popup;
        bubble.open();
        timer.restart();
    }

    function close() {
        if (bubble)
            bubble.close();
    }

    visible: false

    Timer {
        id: timer

        interval: 8000
        onTriggered: root.close()
    }

    Component {
        id: bubbleComponent

        T.Popup {
            id: popup

            parent: T.Overlay.overlay
            x: parent ? Math.round((parent.width + Theme.sidebarWidth - width) / 2) : 0
            y: parent ? parent.height - height - 40 : 0
            width: Math.min(implicitWidth, (parent ? parent.width - Theme.sidebarWidth : 600) - 48)
            implicitWidth: row.implicitWidth + leftPadding + rightPadding
            implicitHeight: Math.max(44, row.implicitHeight + 16)
            leftPadding: 18
            rightPadding: 10
            modal: false
            focus: false
            closePolicy: T.Popup.NoAutoClose

            Binding {
                target: timer
                property: "running"
                value: popup.opened && !hover.hovered && !undo.activeFocus
            }

            enter: Transition {
                NumberAnimation {
                    property: "opacity"
                    from: 0
                    to: 1
                    duration: Theme.shortMotion
                }
            }

            exit: Transition {
                NumberAnimation {
                    property: "opacity"
                    to: 0
                    duration: Theme.shortMotion
                }
            }

            contentItem: RowLayout {
                id: row

                spacing: 12
                Accessible.role: Accessible.AlertMessage

                HoverHandler {
                    id: hover
                }

                BodyText {
                    Layout.fillWidth: true
                    text: root.text
                    color: Theme.inkOnTooltip
                    wrapMode: Text.Wrap
                }

                ButtonBase {
                    id: undo

                    visible: root.action !== ""
                    implicitHeight: 30
                    leftPadding: 8
                    rightPadding: 8
                    ink: Theme.actionOnTooltip
                    text: root.action
                    onClicked: {
                        root.acted();
                        popup.close();
                    }
                }

                ButtonBase {
                    implicitHeight: 28
                    implicitWidth: 28
                    leftPadding: 6
                    rightPadding: 6
                    ink: Theme.inkOnTooltip
                    symbol: "close"
                    Accessible.name: qsTr("action.dismiss")
                    onClicked: popup.close()
                }
            }

            background: Rectangle {
                radius: 12
                color: Theme.tooltip
            }
        }
    }
}
