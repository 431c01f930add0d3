pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Orvane
import "TreemapLayout.js" as Layout

// One area of a treemap: its label and size, and where there is room its largest folders below them, by name.
T.AbstractButton {
    id: root

    required property var area
    signal chosen(var child)
    signal menuAsked

    readonly property var folders: area?.children ?? []
    readonly property string sizeText: Texts.bytes(area?.bytes ?? 0)
    readonly property string label: nameOf(area)
    readonly property int inset: width < 120 ? 8 : 12
    // The folders' boxes below the label.
    readonly property int partsTop: heading.y + heading.height + 10
    readonly property bool showsParts: folders.length > 1 && width > 130 && height - partsTop > 48
    readonly property var parts: {
        if (!showsParts)
            return [];
        const minBytes = (area?.bytes ?? 0) * 0.02;
        return Layout.boxes(folders.map(child => Math.max(child.bytes, minBytes)), width - 2 * partsMargin + partsGap,
                            height - partsTop - partsMargin + partsGap);
    }
    readonly property int partsMargin: 6
    readonly property int partsGap: 3

    readonly property int partCount: parts.length > 0 ? folders.length : 0
    // Of the parts that are made, at least as many as there are.
    required property int madeParts

    function nameOf(area: var): string {
        return area?.titleKey ? qsTr(area.titleKey) : area?.label ?? "";
    }

    function partAt(x: real, y: real): int {
        const left = x - partsMargin;
        const top = y - partsTop;
        return parts.findIndex(
            part => left >= part.x && left < part.x + part.width && top >= part.y && top < part.y + part.height);
    }

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: root.label + ", " + root.sizeText
    Accessible.onPressAction: root.chosen(null)
    onClicked: root.chosen(hover.hovered && hover.part >= 0 ? folders[hover.part] : null)
    Keys.onReturnPressed: root.chosen(null)
    Keys.onEnterPressed: root.chosen(null)
    Keys.onMenuPressed: root.menuAsked()

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: root.menuAsked()
    }

    HoverHandler {
        id: hover

        readonly property int part: hovered ? root.partAt(point.position.x, point.position.y) : -1

        cursorShape: Qt.PointingHandCursor
    }

    // Made when the area is pointed at: most never are.
    Repeater {
        model: root.hovered || root.visualFocus ? 1 : 0

        Item {
            anchors.fill: parent

            Tip {
                readonly property var child: root.folders[hover.part] ?? null

                text: root.label + " · " + root.sizeText + " · " + Texts.counted("count.items", root.area?.count ?? 0)
                      + (child ? "\n" + root.nameOf(child) + " · " + Texts.bytes(child.bytes) : "")
                shown: true
                delay: 300
            }
        }
    }

    contentItem: Item {
        Icon {
            id: symbol

            x: root.width - width - 10
            y: 10
            visible: name !== "" && root.width > 180 && root.height > 60
            name: root.area?.symbol ?? ""
            color: Theme.inkOnCategory
            size: 16
        }

        Column {
            id: heading

            // How much of its room a title may want: dots stand for the rest.
            readonly property real titleSpill: 1.3
            readonly property bool wrapsTitle: root.height > 62 && titleMetrics.advanceWidth > width
                                               && breaksAfterWord(root.label)

            // Whether the first line holds whole words. Ideographs and Hangul break anywhere.
            function breaksAfterWord(text: string): bool {
                const first = text.search(/[\s-]/);
                return /[\u3040-\u9fff\uac00-\ud7af]/.test(text)
                    || (first > 0 && fontMetrics.advanceWidth(text.slice(0, first)) <= width);
            }

            x: root.inset
            y: Math.min(10, Math.max(2, (root.height - height) / 2))
            width: root.width - 2 * root.inset - (symbol.visible ? 22 : 0)
            // A label of which hardly anything is left says less than none: the tooltip has it.
            visible: root.height > 22
                     && (width >= 64 || titleMetrics.advanceWidth < width * title.maximumLineCount * titleSpill)

            TextMetrics {
                id: titleMetrics

                text: root.label
                font: title.font
            }

            FontMetrics {
                id: fontMetrics

                font: title.font
            }

            Text {
                id: title

                width: parent.width
                text: root.label
                color: Theme.inkOnCategory
                font.pixelSize: 13
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                maximumLineCount: heading.wrapsTitle ? 2 : 1
                wrapMode: heading.wrapsTitle ? Text.Wrap : Text.NoWrap
                horizontalAlignment: Text.AlignLeft
                textFormat: Text.PlainText
                Accessible.ignored: true
            }

            Text {
                width: parent.width
                visible: root.height > 44 + (title.lineCount - 1) * 18 && implicitWidth <= width
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
            model: root.madeParts

            Rectangle {
                id: part

                required property int index
                readonly property var place: index < root.partCount ? root.parts[index] : null

                visible: place !== null
                x: place ? root.partsMargin + Math.round(place.x) : 0
                y: place ? root.partsTop + Math.round(place.y) : 0
                width: place ? Math.max(1, Math.round(place.x + place.width) - Math.round(place.x) - root.partsGap) : 0
                height: place ? Math.max(1, Math.round(place.y + place.height) - Math.round(place.y) - root.partsGap) : 0
                radius: Math.min(5, width / 4, height / 4)
                // Darker than the area, so that white stays readable.
                color: index === hover.part ? "#3C000000" : "#1E000000"

                Text {
                    readonly property bool hasRoom: parent.height > 18 && width > 28

                    x: 8
                    y: Math.min(6, (parent.height - height) / 2)
                    width: parent.width - 16
                    visible: hasRoom && implicitWidth < width * 1.3
                    // Nothing is laid out where it could not show.
                    text: hasRoom ? root.nameOf(root.folders[part.index]) : ""
                    color: Theme.inkOnCategory
                    font.pixelSize: 11
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignLeft
                    textFormat: Text.PlainText
                    Accessible.ignored: true
                }
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
