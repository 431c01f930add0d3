pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Shapes
import Orvane

// Lies over what fills a rounded box to its edges and gives the box its corners and outline back. Clipping is square,
// and without shaders nothing else rounds it off.
Item {
    id: root

    property int radius: Theme.cardRadius
    // The colour around the box.
    property color ground: Theme.background
    property color outline: Theme.line

    anchors.fill: parent
    Accessible.ignored: true

    Repeater {
        model: 4

        // Clockwise from the top left.
        Shape {
            required property int index

            x: index === 1 || index === 2 ? root.width - width : 0
            y: index >= 2 ? root.height - height : 0
            width: root.radius
            height: root.radius
            rotation: 90 * index

            ShapePath {
                fillColor: root.ground
                strokeWidth: -1

                PathLine {
                    x: root.radius
                }

                PathArc {
                    y: root.radius
                    radiusX: root.radius
                    radiusY: root.radius
                    direction: PathArc.Counterclockwise
                }
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: root.radius
        color: "transparent"
        border.color: root.outline
        border.width: 1
    }
}
