pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// A condition of a plan, or one that it could have: pressing it opens what it can become.
ButtonBase {
    id: root

    // As AgentModel.reading has it.
    required property var chip
    property real maxWidth: 400
    signal valueChosen(string value)
    signal otherAsked

    readonly property bool isMissing: chip.kind === AgentModel.Missing
    readonly property bool isChanged: chip.kind === AgentModel.Changed
    readonly property bool isDashed: isMissing || chip.kind === AgentModel.Assumed
    readonly property bool isFolder: chip.condition === 0

    implicitHeight: 26
    leftPadding: 11
    rightPadding: 9
    outline: isDashed ? "transparent" : isChanged ? Theme.accent : Theme.line
    fill: hovered || down ? Theme.hover : isChanged ? Theme.accentSoft : isDashed ? "transparent" : Theme.surface
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: isMissing ? qsTr("agent.add_condition").arg(chip.name ?? "")
                               : (chip.name ?? "") + ": " + Texts.joined([chip.text, chip.became], " → ")
    onClicked: menu.opened ? menu.close() : menu.open()
    Keys.onDownPressed: menu.open()

    contentItem: Item {
        implicitWidth: words.implicitWidth + 16
        implicitHeight: words.implicitHeight

        ReadingChip {
            id: words

            anchors.verticalCenter: parent.verticalCenter
            maxWidth: root.maxWidth - 40
            typed: root.chip.text
            became: root.isMissing ? "+ " + root.chip.became : root.chip.became
            ink: root.isChanged ? Theme.text : Theme.muted
        }

        Icon {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            name: "chevron-down"
            size: 12
            color: Theme.muted
        }
    }

    background: Rectangle {
        radius: height / 2
        color: root.fill.a > 0 ? root.fill : root.noFill
        border.width: root.outline.a > 0 ? 1 : 0
        border.color: root.outline

        DashedOutline {
            anchors.fill: parent
            visible: root.isDashed
        }

        FocusRing {
            shown: root.visualFocus
            radius: height / 2
        }
    }

    ChoiceMenu {
        id: menu

        y: root.height + 6

        Repeater {
            model: root.chip.choices ?? []

            ChoiceItem {
                required property var modelData

                text: modelData.text
                isCurrent: modelData.isCurrent
                onTriggered: root.valueChosen(modelData.value)
            }
        }

        ChoiceItem {
            text: root.isFolder ? qsTr("action.other_folder") : qsTr("agent.other_value")
            onTriggered: root.otherAsked()
        }

        ChoiceItem {
            visible: !root.isFolder && !root.isMissing
            height: implicitHeight
            text: qsTr("agent.remove_condition")
            onTriggered: root.valueChosen("")
        }
    }
}
