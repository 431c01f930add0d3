import QtQuick
import QtQuick.Templates as T
import Orvane

// A modal card over the window. Content goes below the title, buttons below the content, the last one to the right.
T.Popup {
    id: root

    property string title: ""
    property alias buttons: buttonRow.data
    property int sheetWidth: 480
    property bool canClose: true
    // Beside the buttons, so that it is seen however far the content is scrolled.
    property string hint: ""
    property color hintColor: Theme.muted
    default property alias body: holder.data

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) : 0
    width: Math.min(sheetWidth, parent ? parent.width - 64 : sheetWidth)
    padding: 24
    modal: true
    focus: true
    implicitHeight: Math.min(parent ? parent.height - 64 : 600, column.implicitHeight + 2 * padding)
    closePolicy: canClose ? T.Popup.CloseOnEscape : T.Popup.NoAutoClose

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.longMotion
        }
    }

    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: Theme.shortMotion
        }
    }

    contentItem: FocusScope {
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: root.title

        Item {
            id: column

            readonly property real footHeight: buttonRow.visibleChildren.length > 0 ? buttonRow.implicitHeight + 24 : 0

            anchors.fill: parent
            implicitHeight: (titleText.visible ? titleText.implicitHeight + 12 : 0) + holder.childrenRect.height
                            + footHeight

            TitleText {
                id: titleText

                width: parent.width
                visible: text !== ""
                text: root.title
                font.pixelSize: 18
                wrapMode: Text.Wrap
            }

            Flickable {
                id: scroll

                anchors.top: titleText.visible ? titleText.bottom : parent.top
                anchors.topMargin: titleText.visible ? 12 : 0
                anchors.bottom: parent.bottom
                anchors.bottomMargin: column.footHeight
                width: parent.width
                contentHeight: holder.childrenRect.height
                clip: contentHeight > height
                boundsBehavior: Flickable.StopAtBounds
                interactive: contentHeight > height

                // In the sheet's margin, beside the content.
                T.ScrollBar.vertical: ScrollHint {
                    parent: column
                    x: scroll.width + 6
                    y: scroll.y
                    height: scroll.height
                }

                FocusFollower {
                    area: scroll
                }

                Item {
                    id: holder

                    width: scroll.width
                    height: childrenRect.height
                }
            }

            CaptionText {
                anchors.bottom: parent.bottom
                width: Math.max(0, parent.width - buttonRow.childrenRect.width - 20)
                height: buttonRow.height
                visible: text !== ""
                verticalAlignment: Text.AlignVCenter
                text: root.hint
                color: root.hintColor
                font.pixelSize: 13
                wrapMode: Text.Wrap
                maximumLineCount: 2
            }

            Flow {
                id: buttonRow

                anchors.bottom: parent.bottom
                width: parent.width
                layoutDirection: Qt.RightToLeft
                spacing: 10
            }
        }
    }

    background: Rectangle {
        radius: Theme.cardRadius
        color: Theme.surface
        border.color: Theme.raisedLine
        border.width: 1
    }
}
