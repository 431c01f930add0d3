pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Orvane

// A menu of choices; the one in force has a check mark.
T.Menu {
    id: root

    margins: 8
    padding: 6
    overlap: 1
    implicitWidth: {
        let widest = 150;
        for (let i = 0; i < count; ++i)
            widest = Math.max(widest, itemAt(i)?.implicitWidth ?? 0);
        return Math.min(widest + leftPadding + rightPadding, 420);
    }
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding

    contentItem: ListView {
        implicitHeight: contentHeight
        model: root.contentModel
        interactive: Window.window ? contentHeight + root.topPadding + root.bottomPadding > Window.window.height : false
        clip: true
        currentIndex: root.currentIndex

        T.ScrollBar.vertical: ScrollHint {}
    }

    background: Item {
        id: backdrop

        Repeater {
            model: Theme.dark ? 0 : 5

            Rectangle {
                required property int index

                x: -index
                y: 2 + index
                width: backdrop.width + 2 * index
                height: backdrop.height
                radius: 10 + index
                color: Theme.shadow
            }
        }

        Rectangle {
            anchors.fill: parent
            radius: 10
            color: Theme.surface
            border.color: Theme.raisedLine
        }
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.shortMotion
        }
    }
}
