pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// One row of the history: a run, something that a run moved, or the foot of a run with what brings its chosen items
// back. The rows of a run are a card, beside a line of time with the clock and the section that acted.
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
    // The last row of its run.
    required property bool isLast
    // Of an item: whether it comes back with the others.
    required property bool chosen
    // Of an unfolded run and its foot.
    required property double itemCount
    required property double chosenCount
    required property double restorableCount
    required property double takenCount
    property bool isFocused: false
    property bool isBusy: false
    // Whether a run that is unfolded stands out.
    property bool isOutlined: true
    // A click: a run unfolds, an item is taken out of those that come back or in again.
    signal toggled
    // A click on an item with Shift.
    signal rangeAsked
    signal openFolderAsked
    signal restoreAsked
    signal menuAsked

    readonly property bool isRun: kind === 0
    readonly property bool isFoot: kind === 2
    // Whether the item can be chosen.
    readonly property bool hasBox: kind === 1 && canRestore
    // The action is a symbol alone where its word would take the title's room.
    readonly property bool isNarrow: width < 760
    readonly property bool isPlaceTaken: stateKey === "state.place_taken"
    // How many items of an unfolded run can come back.
    readonly property string restorableText: qsTr("history.can_come_back").arg(Texts.count(restorableCount))
                                                                          .arg(Texts.count(itemCount))
    readonly property bool isPartlyGone: isRun && restorableCount > 0 && restorableCount < itemCount
    readonly property string stateText: isFoot || stateKey === "" ? "" : isPartlyGone ? restorableText : qsTr(stateKey)
    readonly property string countText: isRun ? Texts.counted("count.items", count) : ""
    readonly property string title: name !== "" ? name : isRun ? qsTr(titleKey) : ""
    readonly property string wholeTitle: Texts.joined([title, countText], " · ")
    // Of a run the line below its title says less: the clock stands beside it, and its day above.
    readonly property string shownDetail: isRun ? origin : destination === "" ? place : place + " → " + destination
    readonly property string detail: isRun ? Texts.joined([Texts.moment(date), origin], " · ") : shownDetail
    readonly property int clockWidth: isNarrow ? 56 : 64
    readonly property int textIndent: 40
    readonly property int rowHeight: isRun ? 58 : isFoot ? 64 : 51
    readonly property int gap: 12

    // The keyboard leaves the action of a row with the row.
    onIsFocusedChanged: {
        if (!isFocused)
            restore.focus = false;
    }

    height: rowHeight + (isLast ? gap : 0)
    Accessible.role: hasBox ? Accessible.CheckBox : Accessible.ListItem
    Accessible.name: isFoot ? restorableText : Texts.joined([wholeTitle, detail, stateText, Texts.bytes(bytes)], ", ")
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.checkable: hasBox
    Accessible.checked: hasBox && chosen
    Accessible.onToggleAction: root.toggled()
    Accessible.onPressAction: root.toggled()

    CaptionText {
        width: root.clockWidth
        height: root.rowHeight
        visible: root.isRun
        horizontalAlignment: Text.AlignRight
        verticalAlignment: Text.AlignVCenter
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 9
        text: root.isRun ? Texts.time(root.date) : ""
        Accessible.ignored: true
    }

    Rectangle {
        id: timeLine

        x: root.clockWidth + 28
        width: 2
        height: parent.height
        color: Theme.line
    }

    Rectangle {
        x: timeLine.x + 1 - width / 2
        y: (root.rowHeight - height) / 2
        visible: root.isRun
        width: 26
        height: 26
        radius: height / 2
        color: Theme.accentSoft

        Icon {
            anchors.centerIn: parent
            name: root.isRun ? root.actorSymbol : ""
            color: Theme.accentHover
            size: 14
        }
    }

    Item {
        id: card

        x: timeLine.x + 30
        width: parent.width - x
        height: root.rowHeight

        // The rows between the first and the last show the sides of their card alone.
        Item {
            anchors.fill: parent
            clip: !root.isRun || !root.isLast

            Rectangle {
                y: root.isRun ? 0 : -radius
                width: parent.width
                height: parent.height - y + (root.isLast ? 0 : radius)
                radius: Theme.cardRadius
                color: area.containsMouse && root.isRun ? Theme.hover : Theme.surface
                border.width: 1
                border.color: root.isOutlined && (root.expanded || !root.isRun) ? Theme.accent : Theme.line
            }
        }

        Divider {
            x: root.isRun ? 16 : root.textIndent
            anchors.bottom: parent.bottom
            width: parent.width - x - 16
            visible: !root.isLast
        }

        MouseArea {
            id: area

            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            onClicked: mouse => {
                if (mouse.button === Qt.RightButton)
                    root.menuAsked();
                else if (mouse.modifiers & Qt.ShiftModifier && root.hasBox)
                    root.rangeAsked();
                else if (!root.isFoot)
                    root.toggled();
            }
            onDoubleClicked: mouse => {
                if (root.isRun || root.isFoot)
                    return;
                // The first click has turned the row over; a second one on the box turns it back.
                root.toggled();
                if (mouse.x >= root.textIndent)
                    root.openFolderAsked();
            }
        }

        Icon {
            x: 14
            anchors.verticalCenter: parent.verticalCenter
            visible: root.isRun
            name: root.expanded ? "chevron-down" : "chevron-right"
        }

        CheckMark {
            x: 14
            anchors.verticalCenter: parent.verticalCenter
            visible: root.hasBox
            checkState: root.chosen ? Qt.Checked : Qt.Unchecked
            isHovered: area.containsMouse
        }

        Column {
            visible: !root.isFoot
            anchors.left: parent.left
            anchors.leftMargin: root.textIndent
            anchors.right: chip.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter

            Item {
                width: parent.width
                height: titleText.height

                BodyText {
                    id: titleText

                    width: Math.min(Math.ceil(implicitWidth), parent.width - countLabel.implicitWidth)
                    text: root.title
                    font.weight: root.isRun ? Font.DemiBold : Font.Normal
                    elide: root.isRun ? Text.ElideRight : Text.ElideMiddle
                    Accessible.ignored: true
                }

                BodyText {
                    id: countLabel

                    anchors.left: titleText.right
                    text: root.isRun ? " · " + root.countText : ""
                    color: Theme.muted
                    Accessible.ignored: true
                }
            }

            CaptionText {
                id: detailText

                width: parent.width
                text: Texts.fromLeft(root.shownDetail)
                visible: text !== ""
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
            kind: root.isPlaceTaken || root.isPartlyGone ? Chip.Kind.Review
                              : root.canRestore ? Chip.Kind.Safe : Chip.Kind.Manual
            text: root.stateText
        }

        BodyText {
            id: size

            anchors.right: actionPlace.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(78, implicitWidth)
            horizontalAlignment: Text.AlignRight
            font.weight: root.isRun ? Font.DemiBold : Font.Normal
            visible: !root.isFoot
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

                readonly property string label: qsTr("history.restore_run")

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                // Tab goes from the row that has the keyboard to its action, and from there past the other rows.
                focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
                visible: root.isRun && root.canRestore
                enabled: !root.isBusy
                symbol: "undo"
                text: root.isNarrow ? "" : label
                Accessible.name: label + ": " + root.wholeTitle
                Accessible.description: root.detail
                onClicked: root.restoreAsked()

                Tip {
                    text: restore.label
                    shown: root.isNarrow && (restore.hovered || restore.visualFocus)
                }
            }
        }

        OnlyWhen {
            holds: root.isFoot

            HistoryFoot {
                anchors.fill: parent
                anchors.leftMargin: 14
                anchors.rightMargin: 14
                chosenCount: root.chosenCount
                text: Texts.joined([root.restorableText, root.takenCount > 0 ? qsTr("history.taken_note") : ""], " · ")
                isFocused: root.isFocused
                isNarrow: root.isNarrow
                isBusy: root.isBusy
                onOpenFolderAsked: root.openFolderAsked()
                onRestoreAsked: root.restoreAsked()
            }
        }

        FullTip {
            isPointedAt: area.containsMouse
            labels: [titleText, detailText]
        }

        FocusRing {
            shown: root.isFocused
            around: -2
            radius: root.isRun && root.isLast ? Theme.cardRadius - 2 : 6
        }
    }
}
