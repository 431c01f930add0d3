pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// One cleanup rule: its switch, what it takes, what it does.
Item {
    id: root

    required property int index
    required property string id
    required property string name
    required property string description
    required property bool isEnabled
    required property bool isBuiltIn
    required property string action
    required property string actionPath
    required property string conditions
    property bool isFocused: false
    property bool isBusy: false
    signal toggled
    signal editAsked
    signal previewAsked
    signal runAsked
    signal removeAsked
    signal menuAsked

    readonly property bool isActive: area.containsMouse || actionHover.hovered || isFocused
    readonly property string actionText: action === "moveToTrash" ? qsTr("rules.to_trash")
                                                                  : action === "moveToFolder"
                                                                    ? qsTr("rules.to_folder").arg(actionPath)
                                                                    : qsTr("rules.review_only")

    // The actions on the rule: {symbol, key, run}. Actions that only some rules have come first, so that the others
    // stand below one another.
    readonly property var offers: {
        const all = [
            {symbol: "search", key: "rules.preview", run: () => root.previewAsked()},
            {symbol: "play", key: "rules.run_one", run: () => root.runAsked()},
            {symbol: "edit", key: "rules.edit", run: () => root.editAsked()}
        ];
        if (!isBuiltIn)
            all.unshift({symbol: "trash", key: "rules.remove", run: () => root.removeAsked()});
        return all;
    }

    // The keyboard leaves the actions of a row with the row.
    onIsFocusedChanged: {
        for (let i = 0; i < offered.count && !isFocused; ++i) {
            const button = offered.itemAt(i) as IconButton;
            if (button)
                button.focus = false;
        }
    }

    height: 64
    Accessible.role: Accessible.CheckBox
    Accessible.name: name
    Accessible.description: Texts.joined([conditions, actionText], ", ")
    Accessible.focusable: true
    Accessible.focused: isFocused
    Accessible.checkable: true
    Accessible.checked: isEnabled
    Accessible.onToggleAction: root.toggled()
    Accessible.onPressAction: root.editAsked()

    Rectangle {
        anchors.fill: parent
        color: area.containsMouse || actionHover.hovered ? Theme.hover : Theme.surface
    }

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => mouse.button === Qt.RightButton ? root.menuAsked() : root.editAsked()
    }

    ToggleSwitch {
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        focusPolicy: Qt.NoFocus
        text: root.name
        on: root.isEnabled
        onToggleAsked: root.toggled()
    }

    Column {
        anchors.left: parent.left
        anchors.leftMargin: 68
        anchors.right: chip.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        opacity: root.isEnabled ? 1 : 0.75

        BodyText {
            id: title

            width: parent.width
            text: root.name
            elide: Text.ElideMiddle
            font.weight: Font.Medium
            Accessible.ignored: true
        }

        CaptionText {
            id: detail

            width: parent.width
            text: Texts.fromLeft(root.conditions === "" ? root.description : root.conditions)
            Accessible.ignored: true
        }
    }

    // Always there, so that nobody has to find them by chance; quiet until the row is pointed at or has the keyboard.
    Row {
        id: actions

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2
        opacity: root.isActive ? 1 : 0.75

        HoverHandler {
            id: actionHover
        }

        Repeater {
            id: offered

            model: root.offers

            IconButton {
                required property var modelData

                // Tab goes from the row to its actions, and from the last of them past the other rows.
                focusPolicy: root.isFocused ? Qt.TabFocus : Qt.NoFocus
                enabled: !root.isBusy
                symbol: modelData.symbol
                text: qsTr(modelData.key)
                Accessible.name: text + ": " + root.name
                onClicked: modelData.run()
            }
        }
    }

    Chip {
        id: chip

        anchors.right: parent.right
        // Beside the room of four actions.
        anchors.rightMargin: 14 + 4 * 30
        anchors.verticalCenter: parent.verticalCenter
        kind: root.action === "moveToTrash" ? Chip.Kind.Accent
                                            : root.action === "moveToFolder" ? Chip.Kind.Safe : Chip.Kind.Manual
        // A folder far down leaves the rule's name its room.
        maxWidth: Math.max(96, root.width * 0.3)
        text: root.actionText

        HoverHandler {
            id: chipHover
        }

        Tip {
            text: chip.text
            shown: chipHover.hovered && chip.isCut
        }
    }

    Divider {
        anchors.bottom: parent.bottom
        width: parent.width
    }

    FullTip {
        isPointedAt: area.containsMouse
        labels: [title, detail]
    }

    FocusRing {
        shown: root.isFocused
        around: -2
        radius: 6
    }
}
