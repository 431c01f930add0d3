import QtQuick
import QtQuick.Layouts
import Orvane

// The present work, its progress, and Cancel. With `result` set it says what came of it, with Undo.
Card {
    id: root

    property string title: ""
    // 0 to 1, or below 0 where the end is not known.
    property double value: -1
    property string figures: ""
    property string detail: ""
    property bool canCancel: true
    property bool canPause: false
    property bool isPaused: false
    property string result: ""
    property string resultNote: ""
    property string undoText: ""
    signal cancelAsked
    signal pauseAsked
    signal undoAsked
    signal dismissed

    readonly property bool isResult: result !== ""
    // The figures take a line of their own where the bar had no room beside them.
    readonly property bool isTight: width < 700
    // Never nothing: the layout is made before the strip has its width.
    readonly property real maxText: Math.max(160, width * 0.35)

    padding: 12
    implicitHeight: layout.implicitHeight + 2 * padding
    Accessible.role: isResult ? Accessible.AlertMessage : Accessible.ProgressBar
    Accessible.name: isResult ? result + " " + resultNote : title + " " + figures

    ColumnLayout {
        id: layout

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        RowLayout {
            Layout.fillWidth: true
            spacing: 12

            Icon {
                visible: root.isResult
                name: "check"
                color: Theme.accent
            }

            HeadingText {
                Layout.fillWidth: root.isResult
                Layout.maximumWidth: root.isResult ? Math.max(root.maxText, root.width) : root.maxText
                text: root.isResult ? root.result : root.title
                wrapMode: root.isResult ? Text.Wrap : Text.NoWrap
            }

            Meter {
                Layout.fillWidth: true
                visible: !root.isResult
                filled: root.value
            }

            CaptionText {
                // Before there are figures too: they would stand in the corner until the layout has a place for them.
                visible: !root.isResult && !root.isTight
                Layout.maximumWidth: root.maxText
                text: root.figures
                font.pixelSize: 13
            }

            PlainButton {
                visible: !root.isResult && root.canPause
                implicitHeight: 30
                text: root.isPaused ? qsTr("run.resume") : qsTr("run.pause")
                onClicked: root.pauseAsked()
            }

            PlainButton {
                visible: !root.isResult && root.canCancel
                implicitHeight: 30
                text: qsTr("action.cancel")
                onClicked: root.cancelAsked()
            }

            LinkButton {
                visible: root.isResult && root.undoText !== ""
                symbol: "undo"
                text: root.undoText
                onClicked: root.undoAsked()
            }

            IconButton {
                visible: root.isResult
                symbol: "close"
                iconSize: 14
                text: qsTr("action.dismiss")
                onClicked: root.dismissed()
            }
        }

        CaptionText {
            Layout.fillWidth: true
            visible: !root.isResult && root.isTight && text !== ""
            text: root.figures
            font.pixelSize: 13
        }

        CaptionText {
            Layout.fillWidth: true
            Layout.leftMargin: root.isResult ? 30 : 0
            visible: text !== ""
            text: root.isResult ? root.resultNote : root.detail
            elide: root.isResult ? Text.ElideRight : Text.ElideMiddle
            wrapMode: root.isResult ? Text.Wrap : Text.NoWrap
        }
    }
}
