import QtQuick
import Orvane

// One row of the history: a run, or something that a run moved.
Item {
    id: root

    required property int index
    required property int kind
    required property double date
    required property string titleKey
    required property string name
    required property string place
    required property string destination
    required property double count
    required property double bytes
    required property string stateKey
    required property bool canRestore
    required property bool expanded
    required property string origin
    required property string actorSymbol
    property bool isFocused: false
    property bool isBusy: false
    signal folded
    signal openFolderAsked
    signal restoreAsked
    signal menuAsked

    readonly property bool isRun: kind === 0
    // The action is a symbol alone where its word would take the title's room.
    readonly property bool isNarrow: width < 640
    readonly property bool isGone: stateKey === "state.gone"
    readonly property string stateText: stateKey === "" ? "" : qsTr(stateKey)
    readonly property string title: isRun ? qsTr(titleKey) + " · " + Texts.counted("count.items", count) : name
    readonly property string detail: isRun ? Texts.joined([Texts.moment(date), origin], " · ")
                                           : destination === "" ? place : place + " → " + destination

    // The keyboard leaves the action of a row with the row.
    onIsFocusedChanged: {
        if (!isFocused)
            restore.focus = false;
    }

    height: isRun ? 58 : 51
    Accessible.role: Accessible.ListItem
    Accessible.name: Texts.joined([title, detail, stateText, Texts.bytes(bytes)], ", ")
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.onPressAction: if (root.isRun) root.folded()

    Rectangle {
        anchors.fill: parent
        color: area.containsMouse && root.isRun ? Theme.hover : root.isRun ? Theme.surface : Theme.groupHeader
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                root.menuAsked();
            else if (root.isRun)
                root.folded();
        }
        onDoubleClicked: if (!root.isRun) root.openFolderAsked()
    }

    Icon {
        id: chevron

        x: 15
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isRun
        name: root.expanded ? "chevron-down" : "chevron-right"
    }

    // A line of time, with the section that acted at each run.
    Rectangle {
        x: 58
        y: root.index === 0 ? parent.height / 2 : 0
        width: 1
        height: parent.height - y
        color: Theme.line
    }

    Rectangle {
        x: 44
        anchors.verticalCenter: parent.verticalCenter
        visible: root.isRun
        width: 29
        height: 29
        radius: height / 2
        color: Theme.accentSoft

        Icon {
            anchors.centerIn: parent
            name: root.isRun ? root.actorSymbol : ""
            color: Theme.accentHover
            size: 16
        }
    }

    Column {
        anchors.left: parent.left
        anchors.leftMargin: 85
        anchors.right: chip.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter

        BodyText {
            id: titleText

            width: parent.width
            text: root.title
            font.weight: root.isRun ? Font.DemiBold : Font.Normal
            elide: root.isRun ? Text.ElideRight : Text.ElideMiddle
            Accessible.ignored: true
        }

        CaptionText {
            id: detailText

            width: parent.width
            text: root.detail
            elide: root.isRun ? Text.ElideRight : Text.ElideMiddle
            Accessible.ignored: true
        }
    }

    Chip {
        id: chip

        anchors.right: size.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: root.stateText !== ""
        width: visible ? implicitWidth : 0
        kind: root.isGone ? Chip.Kind.Review
                          : root.stateKey === "state.restored" ? Chip.Kind.Safe : Chip.Kind.Manual
        text: root.stateText
    }

    BodyText {
        id: size

        anchors.right: actionPlace.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(68, implicitWidth)
        horizontalAlignment: Text.AlignRight
        font.weight: root.isRun ? Font.DemiBold : Font.Normal
        text: Texts.bytes(root.bytes)
        Accessible.ignored: true
    }

    Item {
        id: actionPlace

        anchors.right: parent.right
        anchors.rightMargin: 12
        height: parent.height
        // As wide for entries as for runs, so that the columns stand below one another.
        width: root.isNarrow ? 36 : Math.max(110, runLabel.advanceWidth + 40)

        TextMetrics {
            id: runLabel

            text: qsTr("history.restore_run")
            font: restore.font
        }

        LinkButton {
            id: restore

            readonly property string label: root.isRun ? qsTr("history.restore_run") : qsTr("history.restore")

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            // Tab goes from the row that has the keyboard to its action, and from there past the other rows.
            focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
            visible: root.canRestore
            enabled: !root.isBusy
            symbol: "undo"
            text: root.isNarrow ? "" : label
            Accessible.name: label + ": " + root.title
            Accessible.description: root.detail
            onClicked: root.restoreAsked()

            Tip {
                text: restore.label
                shown: root.isNarrow && (restore.hovered || restore.visualFocus)
            }
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }

    FullTip {
        isPointedAt: area.containsMouse
        labels: [titleText, detailText]
    }

    FocusRing {
        shown: root.isFocused
        around: -2
        radius: 6
    }
}
