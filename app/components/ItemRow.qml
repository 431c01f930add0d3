pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// One item of a list: box, name over its place and remark, chip, age, size. The whole row toggles; the pointer or the
// keyboard on it brings its actions.
Item {
    id: root

    property string name: ""
    property string place: ""
    property string remark: ""
    // Lines that the place and the remark may take together; with two, a long place is shortened before the remark is.
    property int remarkLines: 1
    // A remark in the colour of warnings, with its icon.
    property string warning: ""
    property string warningSymbol: "cloud"
    property string age: ""
    property string size: ""
    property string chip: ""
    property int chipKind: Chip.Kind.Manual
    property bool hasBox: true
    property int checkState: Qt.Unchecked
    property bool canCheck: true
    // Why the item cannot be chosen: a lock stands in the place of the box then.
    property string lockReason: ""
    property bool isFocused: false
    property int indent: 43
    // Whether the columns of age and chip are shown; narrow lists leave the age out.
    property bool showsAge: width > 440 && !(isActive && remarkLines > 1)
    property bool showsChip: width > 320
    property bool canExplain: false
    property bool canOpenFolder: false
    property bool canKeep: false
    property string explanation: ""
    property alias extraActions: extra.data
    signal toggled
    signal explainAsked
    signal openFolderAsked
    signal keepAsked
    signal pressed
    signal menuAsked
    // A click with Shift.
    signal rangeAsked
    // A double click beside the box.
    signal openAsked

    readonly property bool isActive: area.containsMouse || actionHover.hovered || isFocused
    readonly property bool isLocked: lockReason !== ""
    readonly property string secondLine: Texts.joined([place, remark], " · ")
    readonly property string shownSecondLine: remarkLines > 1 && remark !== ""
                                              ? Texts.joined([placeMetrics.elidedText, remark], " · ") : secondLine

    implicitHeight: 51
    Accessible.role: hasBox && !isLocked ? Accessible.CheckBox : Accessible.ListItem
    Accessible.name: Texts.joined([name, chip, size], ", ")
    Accessible.description: Texts.joined([secondLine, warning, age, lockReason], ", ")
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.checkable: hasBox && canCheck
    Accessible.checked: checkState === Qt.Checked
    Accessible.onToggleAction: root.toggled()
    Accessible.onPressAction: root.toggled()

    // Texts alone, and only where a place may have to give way.
    TextMetrics {
        id: remarkMetrics

        font: second.font
        text: root.remarkLines > 1 ? root.remark : ""
    }

    TextMetrics {
        id: placeMetrics

        // Lines break between words, so that they are never quite full.
        readonly property real slack: 64

        font: second.font
        text: root.remarkLines > 1 ? root.place : ""
        elide: Text.ElideMiddle
        elideWidth: Math.max(72, 2 * second.room - remarkMetrics.advanceWidth - slack)
    }

    Rectangle {
        anchors.fill: parent
        color: area.containsMouse || actionHover.hovered ? Theme.hover : Theme.surface
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onPressed: root.pressed()
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                root.menuAsked();
            else if (mouse.modifiers & Qt.ShiftModifier)
                root.rangeAsked();
            else
                root.toggled();
        }
        onDoubleClicked: mouse => {
            // The first click has turned the row over; a second one on the box turns it back.
            root.toggled();
            if (mouse.x > texts.x)
                root.openAsked();
        }
    }

    CheckMark {
        x: root.indent + 1
        anchors.verticalCenter: parent.verticalCenter
        visible: root.hasBox && !root.isLocked
        enabled: root.canCheck
        checkState: root.checkState < 0 ? Qt.Unchecked : root.checkState
        isHovered: area.containsMouse
    }

    // Most rows have none.
    Repeater {
        model: root.isLocked ? 1 : 0

        Icon {
            x: root.indent
            y: Math.round((root.height - height) / 2)
            name: "lock"
            color: Theme.muted

            HoverHandler {
                id: lockHover
            }

            Tip {
                text: root.lockReason
                shown: lockHover.hovered
            }
        }
    }

    Column {
        id: texts

        anchors.left: parent.left
        anchors.leftMargin: root.hasBox ? root.indent + 29 : root.indent
        anchors.right: actions.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter

        BodyText {
            id: title

            width: parent.width
            lineHeight: 19
            text: root.name
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }

        Item {
            width: parent.width
            height: second.height
            visible: root.secondLine !== "" || root.warning !== ""

            CaptionText {
                id: second

                readonly property real room: parent.width - (root.warning === "" ? 0 : Math.min(160, parent.width / 2))

                // A warning follows the text; alone it takes what there is.
                width: root.warning === "" ? room : Math.min(implicitWidth, room)
                text: Texts.fromLeft(root.shownSecondLine)
                wrapMode: root.remarkLines > 1 ? Text.Wrap : Text.NoWrap
                maximumLineCount: root.remarkLines
                elide: root.remarkLines > 1 ? Text.ElideRight : Text.ElideMiddle
                Accessible.ignored: true
            }

            // Most rows never warn.
            Repeater {
                model: root.warning === "" ? 0 : 1

                Item {
                    anchors.left: second.right
                    anchors.leftMargin: root.secondLine === "" ? 0 : 5
                    anchors.right: parent.right
                    height: 16

                    Icon {
                        id: warningIcon

                        anchors.verticalCenter: parent.verticalCenter
                        name: root.warningSymbol
                        size: 14
                        color: Theme.review
                    }

                    CaptionText {
                        anchors.left: warningIcon.right
                        anchors.leftMargin: 4
                        anchors.right: parent.right
                        text: root.warning
                        color: Theme.review
                        Accessible.ignored: true
                    }
                }
            }
        }
    }

    // Made when the row is pointed at: most rows never are.
    Row {
        id: actions

        anchors.right: chipPlace.left
        anchors.rightMargin: width > 0 ? 8 : 0
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        HoverHandler {
            id: actionHover
        }

        Repeater {
            model: root.isActive && root.canExplain ? 1 : 0

            IconButton {
                // Tab goes from the row that has the keyboard to its actions.
                focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
                symbol: "info"
                text: qsTr("cleanup.why")
                onClicked: root.explainAsked()
            }
        }

        Repeater {
            model: root.isActive && root.canOpenFolder ? 1 : 0

            IconButton {
                focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
                symbol: "folder-open"
                text: qsTr("action.reveal_in_finder")
                onClicked: root.openFolderAsked()
            }
        }

        Repeater {
            model: root.isActive && root.canKeep ? 1 : 0

            IconButton {
                focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
                symbol: "lock"
                text: qsTr("keep.keep")
                onClicked: root.keepAsked()
            }
        }
    }

    Item {
        id: chipPlace

        anchors.right: agePlace.left
        anchors.rightMargin: 12
        height: parent.height
        width: root.showsChip && root.chip !== "" ? chipItem.implicitWidth : 0

        Chip {
            id: chipItem

            anchors.centerIn: parent
            visible: parent.width > 0
            kind: root.chipKind
            text: root.chip

            HoverHandler {
                id: chipHover
            }

            Repeater {
                model: chipHover.hovered && root.explanation !== "" ? 1 : 0

                Item {
                    anchors.fill: parent

                    Tip {
                        text: root.explanation
                        shown: true
                    }
                }
            }
        }
    }

    CaptionText {
        id: agePlace

        anchors.right: sizePlace.left
        anchors.rightMargin: root.showsAge ? 12 : 0
        anchors.verticalCenter: parent.verticalCenter
        width: root.showsAge ? root.width > 600 ? 108 : 96 : 0
        visible: root.showsAge
        horizontalAlignment: Text.AlignRight
        text: root.age
        wrapMode: Text.Wrap
        maximumLineCount: 2
        Accessible.ignored: true
    }

    BodyText {
        id: sizePlace

        anchors.right: extra.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(64, implicitWidth)
        horizontalAlignment: Text.AlignRight
        text: root.size
        Accessible.ignored: true
    }

    Row {
        id: extra

        anchors.right: parent.right
        anchors.rightMargin: visibleChildren.length > 0 ? 12 : 0
        anchors.verticalCenter: parent.verticalCenter
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }

    FullTip {
        isPointedAt: area.containsMouse
        labels: [title, {text: Texts.fromLeft(root.secondLine),
                         truncated: second.truncated || root.shownSecondLine !== root.secondLine}]
    }

    Repeater {
        model: root.isFocused ? 1 : 0

        FocusRing {
            shown: true
            around: -2
            radius: 6
        }
    }
}
