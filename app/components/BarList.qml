pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// Bars by size under one another: {label, value (0 to 1), figure, colorIndex}.
Column {
    id: root

    property var entries: []

    spacing: 10

    Repeater {
        model: root.entries

        Column {
            id: entry

            required property var modelData

            width: root.width
            spacing: 4
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.label + ", " + modelData.figure

            Item {
                width: parent.width
                height: 20

                BodyText {
                    id: label

                    anchors.left: parent.left
                    anchors.right: figure.left
                    anchors.rightMargin: 8
                    text: entry.modelData.label

                    HoverHandler {
                        id: hover
                    }

                    Tip {
                        text: entry.modelData.label
                        shown: hover.hovered && label.truncated
                    }
                }

                BodyText {
                    id: figure

                    anchors.right: parent.right
                    font.weight: Font.DemiBold
                    text: entry.modelData.figure
                }
            }

            Meter {
                width: parent.width
                filled: entry.modelData.value
                fillColor: Theme.category(entry.modelData.colorIndex)
            }
        }
    }
}
