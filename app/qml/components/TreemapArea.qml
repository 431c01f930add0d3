pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Orvane
import "TreemapLayout.js" as Layout

// One area of a treemap: its label and size, with the largest parts as faint outlines.
T.AbstractButton {
    id: root

    required property var area
    signal chosen(var child)

    readonly property var folders: area?.children ?? []
    readonly property string sizeText: Texts.bytes(area?.bytes ?? 0)
    readonly property string label: area?.titleKey ? qsTr(area.titleKey) : area?.label ?? ""
    readonly property int inset: width < 120 ? 8 : 12
    readonly property var parts: {
        const listed = folders.reduce((sum, child) => sum + child.bytes, 0);
        const rest = Math.max(0, (area?.bytes ?? 0) - listed);
        const sizes = folders.map(child => Math.max(1, child.bytes));
        if (rest > 0)
            sizes.push(rest);
        return width > 90 && height > 70 ? Layout.boxes(sizes, width, height) : [];
    }

    function partAt(x: real, y: real): int {
        return parts.slice(0, folders.length).findIndex(
            part => x >= part.x && x < part.x + part.width && y >= part.y && y < part.y + part.height);
    }

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: root.label + ", " + root.sizeText
    Accessible.onPressAction: root.chosen(null)
    onClicked: root.chosen(hover.hovered && hover.part >= 0 ? folders[hover.part] : null)
    Keys.onReturnPressed: root.chosen(null)
    Keys.onEnterPressed: root.chosen(null)

    HoverHandler {
        id: hover

        readonly property int part: hovered ? root.partAt(point.position.x, point.position.y) : -1

        cursorShape: Qt.PointingHandCursor
    }

    Tip {
        readonly property var child: hover.part >= 0 ? root.folders[hover.part] : null

        text: root.label + " · " + root.sizeText + " · " + Texts.counted("count.items", root.area?.count ?? 0)
              + (child ? "\n" + child.label + " · " + Texts.bytes(child.bytes) : "")
        shown: root.hovered || root.visualFocus
        delay: 300
    }

    contentItem: Item {
        Column {
            x: root.inset
            y: Math.min(10, Math.max(2, (root.height - height) / 2))
            width: root.width - 2 * root.inset
            visible: root.width > 44 && root.height > 22

            Text {
                id: title

                width: parent.width
                text: root.label
                color: Theme.inkOnCategory
                font.pixelSize: 13
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                maximumLineCount: root.height > 74 ? 2 : 1
                wrapMode: maximumLineCount > 1 ? Text.Wrap : Text.NoWrap
                textFormat: Text.PlainText
                Accessible.ignored: true
            }

            Text {
                width: parent.width
                visible: root.height > 44 && implicitWidth <= width
                text: root.sizeText
                color: Theme.inkOnCategory
                topPadding: 2
                font.pixelSize: 12
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
        }
    }

    background: Rectangle {
        radius: Math.min(8, width / 4, height / 4)
        color: Theme.category(root.area?.colorIndex ?? 0)

        Repeater {
            model: Math.min(root.parts.length, root.folders.length)

            Rectangle {
                required property int index
                readonly property var part: root.parts[index]

                x: Math.round(part.x) + 2
                y: Math.round(part.y) + 2
                width: Math.max(0, Math.round(part.width) - 4)
                height: Math.max(0, Math.round(part.height) - 4)
                radius: 6
                color: index === hover.part ? "#24FFFFFF" : "transparent"
                border.color: root.hovered ? "#50FFFFFF" : "#1CFFFFFF"
                border.width: 1
            }
        }

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: root.down ? "#22000000" : "transparent"
        }

        FocusRing {
            shown: root.visualFocus
        }
    }
}
