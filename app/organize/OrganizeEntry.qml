import QtQuick
import Orvane

// One row of a proposal: a folder to be made, or something that moves into it, as before and after.
Item {
    id: root

    required property int index
    required property int kind
    required property string name
    required property string from
    required property string to
    required property double bytes
    required property double count
    required property int checkState
    required property bool expanded
    required property bool isFolder
    required property string reason
    property bool isFocused: false
    signal toggled
    signal folded
    signal touched
    signal renameAsked
    signal menuAsked

    readonly property bool isGroup: kind === 0

    height: isGroup ? 41 : 44

    SectionHeader {
        anchors.fill: parent
        anchors.rightMargin: renameButton.visible ? 40 : 0
        visible: root.isGroup
        name: root.isGroup ? root.name : ""
        count: root.isGroup ? Texts.counted("count.items", root.count) : ""
        size: root.isGroup ? Texts.bytes(root.bytes) : ""
        isExpanded: root.expanded
        checkState: root.checkState
        canCheck: root.checkState >= 0
        isFocused: root.isGroup && root.isFocused
        onToggled: root.toggled()
        onFolded: root.folded()
    }

    Rectangle {
        anchors.right: parent.right
        width: 40
        height: parent.height
        visible: root.isGroup
        color: Theme.groupHeader

        Divider {
            anchors.bottom: parent.bottom
            width: parent.width
        }

        IconButton {
            id: renameButton

            anchors.verticalCenter: parent.verticalCenter
            visible: root.isGroup
            symbol: "edit"
            text: qsTr("organize.rename_title")
            Accessible.name: text + ": " + root.name
            onClicked: root.renameAsked()
        }
    }

    Item {
        anchors.fill: parent
        visible: !root.isGroup
        Accessible.role: Accessible.CheckBox
        Accessible.name: root.name
        Accessible.description: qsTr("organize.from_to").arg(root.from).arg(root.to) + (root.reason === "" ? "" : ". " + root.reason)
        Accessible.focusable: true
        Accessible.focused: root.isFocused
        Accessible.checkable: root.checkState >= 0
        Accessible.checked: root.checkState === Qt.Checked
        Accessible.onToggleAction: root.toggled()
        Accessible.onPressAction: root.toggled()

        Rectangle {
            anchors.fill: parent
            color: area.containsMouse ? Theme.hover : Theme.surface
        }

        MouseArea {
            id: area

            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            onPressed: root.touched()
            onClicked: mouse => mouse.button === Qt.RightButton ? root.menuAsked() : root.toggled()
        }

        TriStateBox {
            x: 43
            anchors.verticalCenter: parent.verticalCenter
            visible: root.checkState >= 0
            focusPolicy: Qt.NoFocus
            checkState: root.checkState < 0 ? Qt.Unchecked : root.checkState
            Accessible.ignored: true
            onToggleAsked: root.toggled()
        }

        Icon {
            id: symbol

            x: 72
            anchors.verticalCenter: parent.verticalCenter
            name: root.isFolder ? "folder" : "file"
            color: Theme.muted
        }

        BodyText {
            id: before

            anchors.left: symbol.right
            anchors.leftMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            // A share of what the widest usual size leaves, so that the arrows stand below one another. The place after
            // is the longer one.
            width: Math.max(80, (root.width - 144 - x) * 0.42 - 20)
            text: root.isGroup ? "" : Texts.fromLeft(root.from)
            color: Theme.muted
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }

        Icon {
            id: arrow

            anchors.left: before.right
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow-right"
            size: 14
            color: root.checkState === Qt.Checked ? Theme.accent : Theme.line
        }

        BodyText {
            id: after

            anchors.left: arrow.right
            anchors.leftMargin: 10
            anchors.right: size.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: root.isGroup ? "" : Texts.fromLeft(root.reason === "" ? root.to : root.reason)
            color: root.checkState === Qt.Checked ? Theme.text : Theme.muted
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }

        BodyText {
            id: size

            anchors.right: parent.right
            // Below the sizes of the groups, which have a button beside them.
            anchors.rightMargin: 56
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(68, implicitWidth)
            horizontalAlignment: Text.AlignRight
            text: root.isGroup ? "" : Texts.bytes(root.bytes)
            Accessible.ignored: true
        }

        Divider {
            anchors.bottom: parent.bottom
            width: parent.width
        }

        FullTip {
            isPointedAt: area.containsMouse
            labels: [before, after]
        }

        FocusRing {
            shown: root.isFocused
            around: -2
            radius: 6
        }
    }
}
