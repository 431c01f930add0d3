import QtQuick
import QtQuick.Templates as T
import Orvane

// One section in the sidebar.
T.AbstractButton {
    id: root

    property string symbol: ""
    property string figure: ""
    property bool isCurrent: false
    property bool isCompact: false

    implicitHeight: isCompact ? 29 : 34
    leftPadding: 10
    rightPadding: 10
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    // A control cannot leave the round of Tab while it has the keyboard.
    activeFocusOnTab: isCurrent || activeFocus
    Accessible.role: Accessible.PageTab
    Accessible.name: root.text
    Accessible.description: root.figure
    Accessible.selected: root.isCurrent
    Accessible.onPressAction: root.clicked()

    contentItem: Item {
        Icon {
            id: icon

            anchors.verticalCenter: parent.verticalCenter
            name: root.symbol
            color: root.isCurrent ? Theme.accent : Theme.muted
        }

        Text {
            anchors.left: icon.right
            anchors.leftMargin: 10
            anchors.right: figureText.visible ? figureText.left : parent.right
            anchors.rightMargin: figureText.visible ? 4 : 0
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            color: Theme.text
            font.pixelSize: Theme.textSize
            font.weight: root.isCurrent ? Font.DemiBold : Font.Normal
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 11
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        Text {
            id: figureText

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: text !== ""
            text: root.figure
            color: Theme.muted
            font.pixelSize: Theme.captionSize
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        radius: Theme.controlRadius
        // Never through black: a colour without any of it is one of the same hue.
        color: root.isCurrent ? Theme.accentSoft : root.hovered ? Qt.alpha(Theme.accent, 0.08)
                                                               : Qt.alpha(Theme.accentSoft, 0)

        Behavior on color {
            ColorAnimation {
                duration: Theme.shortMotion
            }
        }

        FocusRing {
            shown: root.visualFocus
            around: 0
            radius: Theme.controlRadius
        }
    }
}
