import QtQuick
import Orvane

// The header of a group within a list: box, chevron, colour, name, count, size. A click folds the group.
Item {
    id: root

    property string name: ""
    property string count: ""
    property string size: ""
    property int colorIndex: -1
    property bool isExpanded: true
    property bool hasBox: true
    property int checkState: Qt.Unchecked
    property bool canCheck: true
    property bool isFocused: false
    signal toggled
    signal folded

    implicitHeight: 41
    Accessible.role: Accessible.ListItem
    Accessible.name: root.name + ", " + root.count + ", " + root.size
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.onPressAction: root.folded()

    Rectangle {
        anchors.fill: parent
        color: area.containsMouse ? Theme.hover : Theme.groupHeader
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.folded()
    }

    TriStateBox {
        id: box

        x: 15
        anchors.verticalCenter: parent.verticalCenter
        visible: root.hasBox
        enabled: root.canCheck
        focusPolicy: Qt.NoFocus
        checkState: root.checkState < 0 ? Qt.Unchecked : root.checkState
        text: root.name
        onToggleAsked: root.toggled()
    }

    Icon {
        id: chevron

        x: root.hasBox ? 44 : 14
        anchors.verticalCenter: parent.verticalCenter
        name: root.isExpanded ? "chevron-down" : "chevron-right"
    }

    Rectangle {
        id: swatch

        anchors.left: chevron.right
        anchors.leftMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        visible: root.colorIndex >= 0
        width: visible ? 10 : 0
        height: 10
        radius: 3
        color: Theme.category(root.colorIndex)
    }

    HeadingText {
        id: title

        anchors.left: swatch.right
        anchors.leftMargin: swatch.visible ? 12 : 2
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, sizeText.x - x - 12 - Math.min(countText.implicitWidth, 80) - 12)
        text: Texts.fromLeft(root.name)
        Accessible.ignored: true
    }

    BodyText {
        id: countText

        anchors.left: title.right
        anchors.leftMargin: 12
        anchors.right: sizeText.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: root.count
        color: Theme.muted
        Accessible.ignored: true
    }

    BodyText {
        id: sizeText

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        text: root.size
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }

    FocusRing {
        shown: root.isFocused
        around: -2
        radius: 6
    }
}
