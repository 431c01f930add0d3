pragma ComponentBehavior: Bound
import QtQuick
import Orvane

// One row of the duplicates: a set of identical files, or one copy.
Item {
    id: root

    required property int index
    required property int kind
    required property string name
    required property string place
    required property double copies
    required property double bytes
    required property double freed
    required property double date
    required property int checkState
    required property bool isKept
    required property string thumbnail
    required property string symbol
    required property bool expanded
    required property string keptReason
    property bool isFocused: false
    signal toggled
    signal folded
    signal touched
    signal openFolderAsked
    signal keepAsked
    signal menuAsked

    readonly property bool isGroup: kind === 0
    readonly property string path: place === "" ? name : place + "/" + name
    readonly property string groupDetail: Texts.counted("duplicates.copies", copies) + " · " + qsTr(
                                              "duplicates.each").arg(Texts.bytes(bytes)) + " · " + (
                                              keptReason === "" ? qsTr("duplicates.identical") : keptReason)

    height: isGroup ? 66 : 36
    Accessible.role: isGroup ? Accessible.ListItem : Accessible.CheckBox
    Accessible.name: isGroup ? Texts.joined([name, groupDetail], ", ") : path
    Accessible.description: isGroup ? "" : Texts.joined([isKept ? qsTr("duplicates.kept") : "", dateText.text], ", ")
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.checkable: !isGroup && checkState >= 0
    Accessible.checked: checkState === Qt.Checked
    Accessible.onToggleAction: if (!root.isGroup) root.toggled()
    Accessible.onPressAction: root.isGroup ? root.folded() : root.toggled()

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
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                root.menuAsked();
            else if (root.isGroup)
                root.folded();
            else
                root.toggled();
        }
        onDoubleClicked: if (!root.isGroup) root.openFolderAsked()
    }

    FileThumb {
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isGroup
        source: root.isGroup ? root.thumbnail : ""
        symbol: root.symbol === "" ? "file" : root.symbol
    }

    Column {
        anchors.left: parent.left
        anchors.leftMargin: 82
        anchors.right: frees.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isGroup

        HeadingText {
            id: title

            width: parent.width
            text: root.isGroup ? root.name : ""
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }

        CaptionText {
            id: detail

            width: parent.width
            text: root.isGroup ? root.groupDetail : ""
            Accessible.ignored: true
        }
    }

    CaptionText {
        id: frees

        anchors.right: size.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isGroup && root.freed > 0
        // Leaves the title its room.
        text: visible && root.width > 640 ? qsTr("duplicates.frees") : ""
        Accessible.ignored: true
    }

    BodyText {
        id: size

        anchors.right: chevron.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(72, implicitWidth)
        visible: root.isGroup
        horizontalAlignment: Text.AlignRight
        font.weight: Font.DemiBold
        text: root.isGroup && root.freed > 0 ? Texts.bytes(root.freed) : ""
        Accessible.ignored: true
    }

    Icon {
        id: chevron

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isGroup
        name: root.expanded ? "chevron-down" : "chevron-right"
        color: Theme.muted
    }

    TriStateBox {
        x: 83
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.isGroup
        enabled: root.checkState >= 0
        focusPolicy: Qt.NoFocus
        checkState: root.checkState < 0 ? Qt.Unchecked : root.checkState
        Accessible.ignored: true
        onToggleAsked: root.toggled()
    }

    BodyText {
        id: pathText

        anchors.left: parent.left
        anchors.leftMargin: 112
        anchors.right: actions.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.isGroup
        text: root.isGroup ? "" : Texts.fromLeft(root.path)
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }

    // Made when the row is pointed at: most rows never are.
    Row {
        id: actions

        anchors.right: kept.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter

        HoverHandler {
            id: actionHover
        }

        Repeater {
            model: !root.isGroup && (area.containsMouse || actionHover.hovered || root.isFocused) ? 1 : 0

            IconButton {
                // Tab goes from the row that has the keyboard to its action.
                focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
                symbol: "lock"
                text: qsTr("keep.keep")
                onClicked: root.keepAsked()
            }
        }
    }

    Chip {
        id: kept

        anchors.right: dateText.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: !root.isGroup && root.isKept
        width: visible ? implicitWidth : 0
        kind: Chip.Kind.Safe
        text: qsTr("duplicates.kept")
    }

    CaptionText {
        id: dateText

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(96, implicitWidth)
        visible: !root.isGroup
        horizontalAlignment: Text.AlignRight
        // The date that decides between the oldest and the newest, to the minute.
        text: root.isGroup ? "" : qsTr("duplicates.created").arg(Texts.dateTime(root.date))
        Accessible.ignored: true
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }

    FullTip {
        isPointedAt: area.containsMouse
        labels: root.isGroup ? [title, detail] : [pathText]
    }

    FocusRing {
        shown: root.isFocused
        around: -2
        radius: 6
    }
}
