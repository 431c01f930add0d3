pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Shapes
import Orvane

// A disk as a ring: used, reclaimable (a part of what is used) and free, clockwise from the top.
Item {
    id: root

    required property double used
    required property double reclaimable
    required property double free
    property string caption: ""
    property string figure: ""
    // The ring in words.
    property string summary: ""
    property int thickness: 20

    readonly property double total: Math.max(1, used + free)
    readonly property double usedShare: Math.max(0, used - reclaimable) / total
    readonly property double reclaimableShare: Math.min(used, reclaimable) / total
    readonly property real radius: Math.min(width, height) / 2 - thickness / 2

    // The angle in degrees from the top at which a part ends; eased when figures change.
    property real usedEnd: 360 * usedShare
    property real reclaimableEnd: 360 * (usedShare + reclaimableShare)

    implicitWidth: 160
    implicitHeight: 160
    Accessible.role: Accessible.Graphic
    Accessible.name: root.summary

    Behavior on usedEnd {
        NumberAnimation {
            duration: Theme.longMotion
            easing.type: Easing.OutCubic
        }
    }

    Behavior on reclaimableEnd {
        NumberAnimation {
            duration: Theme.longMotion
            easing.type: Easing.OutCubic
        }
    }

    component Arc: ShapePath {
        id: arc

        property real from: 0
        property real to: 360
        property bool isShown: true

        fillColor: "transparent"
        strokeWidth: isShown && to - from > 0.05 ? root.thickness : -1
        capStyle: ShapePath.FlatCap

        PathAngleArc {
            centerX: root.width / 2
            centerY: root.height / 2
            radiusX: root.radius
            radiusY: root.radius
            startAngle: arc.from - 90
            sweepAngle: Math.max(0.01, arc.to - arc.from)
        }
    }

    Shape {
        anchors.fill: parent

        Arc {
            strokeColor: Theme.line
        }

        Arc {
            strokeColor: Theme.used
            to: root.usedEnd
        }

        Arc {
            strokeColor: Theme.surface
            from: root.usedEnd - 0.8
            to: root.reclaimableEnd + 0.8
            isShown: root.reclaimable > 0
        }

        // Never so thin that it cannot be seen.
        Arc {
            strokeColor: Theme.accent
            from: Math.min(root.usedEnd, root.reclaimableEnd - 1.6) + 0.4
            to: root.reclaimableEnd - 0.4
            isShown: root.reclaimable > 0
        }
    }

    Column {
        anchors.centerIn: parent
        width: parent.width - 2 * root.thickness - 12
        spacing: 2

        FigureText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: root.figure
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 14
            font.pixelSize: 26
        }

        CaptionText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            maximumLineCount: 2
            text: root.caption
        }
    }

    HoverHandler {
        id: hover
    }

    Tip {
        text: root.summary
        shown: hover.hovered
    }
}
