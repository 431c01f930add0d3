import QtQuick
import Orvane

// A thin bar, `filled` to a share (0 to 1). Below 0 the amount is not known and a part of it wanders.
Rectangle {
    id: root

    property double filled: 0
    property color fillColor: Theme.accent
    readonly property bool isUnknown: filled < 0

    implicitHeight: 6
    implicitWidth: 120
    radius: height / 2
    color: Theme.line
    clip: true
    Accessible.ignored: true

    Rectangle {
        id: fill

        height: parent.height
        radius: parent.radius
        color: root.fillColor
        x: root.isUnknown ? wander.at * root.width : 0
        width: root.isUnknown ? root.width * 0.3 : Math.round(root.width * Math.min(1, root.filled))

        Behavior on width {
            enabled: !root.isUnknown

            NumberAnimation {
                duration: Theme.longMotion
                easing.type: Easing.OutCubic
            }
        }
    }

    QtObject {
        id: wander

        property real at: 0.35
    }

    SequentialAnimation {
        running: root.isUnknown && root.visible && !Theme.reducedMotion
        loops: Animation.Infinite

        NumberAnimation {
            target: wander
            property: "at"
            from: -0.3
            to: 1
            duration: 1400
            easing.type: Easing.InOutQuad
        }
    }
}
