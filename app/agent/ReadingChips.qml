pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// The words of a request, each with what it became; what was assumed has a dashed border.
Flow {
    id: root

    required property var reading

    spacing: 8

    CaptionText {
        height: 26
        verticalAlignment: Text.AlignVCenter
        text: qsTr("agent.understood")
    }

    Repeater {
        model: root.reading

        Rectangle {
            id: chip

            required property var modelData
            readonly property bool isRead: modelData.kind === AgentModel.Read

            width: Math.min(words.implicitWidth + 22, root.width)
            height: 26
            radius: height / 2
            color: isRead ? Theme.surface : "transparent"
            border.width: isRead ? 1 : 0
            border.color: Theme.line
            Accessible.role: Accessible.StaticText
            Accessible.name: Texts.joined([modelData.text, modelData.became], " → ")

            Canvas {
                id: dashes

                anchors.fill: parent
                visible: chip.modelData.kind === AgentModel.Assumed
                onPaint: {
                    const context = getContext("2d");
                    context.reset();
                    context.strokeStyle = Theme.muted;
                    context.setLineDash([3, 3]);
                    context.roundedRect(0.5, 0.5, width - 1, height - 1, height / 2, height / 2);
                    context.stroke();
                }

                Connections {
                    target: Theme

                    function onDarkChanged() {
                        dashes.requestPaint();
                    }
                }
            }

            Row {
                id: words

                x: 11
                width: parent.width - 22
                anchors.verticalCenter: parent.verticalCenter
                spacing: 5

                CaptionText {
                    id: typed

                    width: Math.min(implicitWidth, root.width / 2)
                    visible: text !== ""
                    color: Theme.text
                    font.weight: Font.DemiBold
                    text: chip.modelData.text
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }

                CaptionText {
                    width: Math.min(implicitWidth, root.width - 30 - (typed.visible ? typed.width : 0))
                    visible: text !== ""
                    text: chip.isRead && chip.modelData.became !== "" ? "→ " + chip.modelData.became
                                                                      : chip.modelData.became
                    elide: Text.ElideMiddle
                    Accessible.ignored: true
                }
            }
        }
    }
}
