import QtQuick
import QtQuick.Templates as T
import Orvane

// A tooltip. Shows after a moment, over or under its parent.
T.ToolTip {
    id: root

    property bool shown: false
    property int maximumWidth: 320

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: -height - 6
    margins: 8
    padding: 8
    leftPadding: 10
    rightPadding: 10
    implicitWidth: Math.min(maximumWidth, metrics.implicitWidth) + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    visible: shown && text !== ""
    delay: 500
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    // The width that the text would like.
    Text {
        id: metrics

        visible: false
        text: root.text
        font.pixelSize: Theme.captionSize
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    contentItem: Text {
        text: root.text
        color: Theme.inkOnTooltip
        font.pixelSize: Theme.captionSize
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }

    background: Rectangle {
        radius: 6
        color: Theme.tooltip
    }
}
