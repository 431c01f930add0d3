pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The words of a request, each with what it became, and the conditions of the plan, which can be changed in place; what
// was assumed or could be added has a dashed border.
Flow {
    id: root

    required property var reading
    property bool canChange: true
    signal valueChosen(int condition, string value)
    signal otherAsked(var chip)

    // Whose value was chosen last: its chip is made anew with the new plan, and has the keyboard again then.
    property int lastCondition: -1

    spacing: 8
    onCanChangeChanged: settled.restart()

    Timer {
        id: settled

        interval: 0
        onTriggered: {
            for (let i = 0; root.canChange && root.lastCondition >= 0 && i < chips.count; ++i) {
                const chip = chips.itemAt(i) as ReadingPlace;
                if (chip && chip.modelData.condition === root.lastCondition)
                    chip.takeFocus();
            }
        }
    }

    CaptionText {
        height: 26
        verticalAlignment: Text.AlignVCenter
        text: qsTr("agent.understood")
    }

    component ReadingPlace: Item {
        required property var modelData
        property Item button: null

        function takeFocus() {
            button.forceActiveFocus(Qt.OtherFocusReason);
        }
    }

    Repeater {
        id: chips

        model: root.reading

        ReadingPlace {
            id: place

            readonly property bool isCondition: modelData.condition >= 0
            readonly property bool isRead: modelData.kind === AgentModel.Read

            width: isCondition ? condition.width : fixed.width
            height: 26
            button: condition

            ConditionChip {
                id: condition

                width: Math.min(implicitWidth, root.width)
                visible: place.isCondition
                enabled: root.canChange
                chip: place.modelData
                maxWidth: root.width
                onValueChosen: value => {
                    root.lastCondition = place.modelData.condition;
                    root.valueChosen(place.modelData.condition, value);
                }
                onOtherAsked: {
                    root.lastCondition = place.modelData.condition;
                    root.otherAsked(place.modelData);
                }
            }

            Rectangle {
                id: fixed

                width: words.implicitWidth + 22
                height: 26
                radius: height / 2
                visible: !place.isCondition
                color: place.isRead ? Theme.surface : "transparent"
                border.width: place.isRead ? 1 : 0
                border.color: Theme.line
                Accessible.role: Accessible.StaticText
                Accessible.name: Texts.joined([place.modelData.text, place.modelData.became], " → ")

                DashedOutline {
                    anchors.fill: parent
                    visible: place.modelData.kind === AgentModel.Assumed
                }

                ReadingChip {
                    id: words

                    x: 11
                    anchors.verticalCenter: parent.verticalCenter
                    maxWidth: root.width - 30
                    typed: place.modelData.text
                    became: place.modelData.became
                }
            }
        }
    }
}
