import QtQuick
import QtQuick.Templates as T
import Orvane

// One of the largest folders or files of a map: what it is, its size, what it grew.
T.AbstractButton {
    id: root

    required property var area
    property string grownText: ""
    signal chosen
    signal menuAsked

    readonly property string state: qsTr(area.stateKey)

    implicitHeight: 50
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: Texts.joined([area.label, Texts.bytes(area.bytes), root.state, root.grownText], ", ")
    Accessible.onPressAction: root.chosen()
    onClicked: root.chosen()
    Keys.onReturnPressed: root.chosen()
    Keys.onEnterPressed: root.chosen()
    Keys.onMenuPressed: root.menuAsked()

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: root.menuAsked()
    }

    contentItem: Item {
        Rectangle {
            x: 2
            y: 15
            width: 10
            height: 10
            radius: 3
            color: Theme.category(root.area.colorIndex)
        }

        BodyText {
            id: label

            x: 22
            y: 6
            width: size.x - 28
            text: root.area.label
            elide: Text.ElideMiddle
        }

        BodyText {
            id: size

            x: parent.width - width
            y: 6
            text: Texts.bytes(root.area.bytes)
        }

        CaptionText {
            x: 22
            y: 27
            width: grown.x - 28
            text: root.state
        }

        CaptionText {
            id: grown

            x: parent.width - width
            y: 27
            visible: text !== ""
            text: root.grownText
            color: root.area.grown > 0 ? Theme.review : root.area.grown < 0 ? Theme.safe : Theme.muted
        }
    }

    background: Rectangle {
        radius: 6
        color: root.hovered ? Theme.hover : "transparent"

        Divider {
            width: parent.width
        }

        FocusRing {
            shown: root.visualFocus
        }
    }

    Tip {
        text: root.area.label
        shown: (root.hovered || root.visualFocus) && label.truncated
        delay: 300
    }
}
