pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Orvane

// A tooltip. Shows after a moment, over or under its parent. Made when it is first shown: most never are.
Item {
    id: root

    property string text: ""
    property bool shown: false
    property int maximumWidth: 320
    property int delay: 500
    property T.ToolTip bubble: null

    readonly property bool isWanted: shown && text !== ""

    function make() {
        if (isWanted && !bubble)
            bubble = bubbleComponent.createObject(parent) as T.ToolTip;
    }

    visible: false
    onIsWantedChanged: make()
    Component.onCompleted: make()

    Component {
        id: bubbleComponent

        T.ToolTip {
            id: tip

            x: parent ? Math.round((parent.width - width) / 2) : 0
            y: -height - 6
            margins: 8
            padding: 8
            leftPadding: 10
            rightPadding: 10
            implicitWidth: Math.min(root.maximumWidth, metrics.implicitWidth) + leftPadding + rightPadding
            implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
            visible: root.isWanted
            text: root.text
            delay: root.delay
            closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

            // The width that the text would like.
            Text {
                id: metrics

                visible: false
                text: tip.text
                font.pixelSize: Theme.captionSize
                textFormat: Text.PlainText
                Accessible.ignored: true
            }

            contentItem: Text {
                text: tip.text
                color: Theme.inkOnTooltip
                font.pixelSize: Theme.captionSize
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignLeft
                textFormat: Text.PlainText
            }

            background: Rectangle {
                radius: 6
                color: Theme.tooltip
            }
        }
    }
}
