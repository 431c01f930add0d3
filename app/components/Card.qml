pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// A surface with a hairline and, in the light, a shadow that is barely there.
Item {
    id: root

    default property alias content: inner.data
    property int padding: 20
    property int radius: Theme.cardRadius
    // The content reaches to the hairline, and the corners are drawn over it.
    property bool flush: false
    property color outline: Theme.line

    implicitWidth: inner.childrenRect.width + 2 * root.inset
    implicitHeight: inner.childrenRect.height + 2 * root.inset

    readonly property int inset: flush ? 1 : padding

    Repeater {
        model: Theme.dark ? 0 : 3

        Rectangle {
            required property int index

            x: -index
            y: 1 + index
            width: root.width + 2 * index
            height: root.height
            radius: root.radius + index
            color: Theme.shadow
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: Theme.surface
        border.color: root.outline
        border.width: 1
    }

    Item {
        id: inner

        anchors.fill: parent
        anchors.margins: root.inset
    }

    OnlyWhen {
        holds: root.flush

        RoundedCorners {
            radius: root.radius
        }
    }

    // The lower corners that were put over the content hide the shadow there: it goes over them again.
    OnlyWhen {
        holds: root.flush && !Theme.dark

        Item {
            x: -4
            y: root.height - root.radius
            width: root.width + 8
            height: root.radius + 4
            clip: true

            Repeater {
                model: 3

                Rectangle {
                    required property int index

                    x: 4 - index
                    y: 1 + index - parent.y
                    width: root.width + 2 * index
                    height: root.height
                    radius: root.radius + index
                    color: "transparent"
                    border.width: 1 + index
                    border.color: Theme.shadow
                }
            }
        }
    }
}
