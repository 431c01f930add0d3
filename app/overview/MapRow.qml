pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Orvane

// One of the largest folders or files of a map: what it is, its size, what it grew. Stays, unseen, where there is none.
T.AbstractButton {
    id: root

    required property var area
    property string grownText: ""
    signal chosen
    signal menuAsked

    readonly property string label: area?.label ?? ""
    readonly property string sizeText: area ? Texts.bytes(area.bytes) : ""
    readonly property string state: area ? qsTr(area.stateKey) : ""
    readonly property double grown: area?.grown ?? 0

    implicitHeight: 50
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: Texts.joined([label, sizeText, state, grownText], ", ")
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
            color: Theme.category(root.area?.colorIndex ?? 0)
        }

        BodyText {
            id: title

            x: 22
            y: 6
            width: size.x - 28
            text: root.label
            elide: Text.ElideMiddle
        }

        BodyText {
            id: size

            x: parent.width - width
            y: 6
            text: root.sizeText
        }

        CaptionText {
            x: 22
            y: 27
            width: growth.x - 28
            text: root.state
        }

        CaptionText {
            id: growth

            x: parent.width - width
            y: 27
            visible: text !== ""
            text: root.grownText
            color: root.grown > 0 ? Theme.review : root.grown < 0 ? Theme.safe : Theme.muted
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

    FullTip {
        isPointedAt: root.hovered || root.visualFocus
        labels: [title]
    }
}
