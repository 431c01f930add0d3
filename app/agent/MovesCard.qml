pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// Where the chosen files would go, as a picture: all of them at the left, each folder with its share at the right.
Card {
    id: root

    // {text, count, bytes}; one without a text stands for the files that stay.
    required property var moves

    readonly property int maxShown: 6
    readonly property double total: moves.reduce((sum, move) => sum + move.count, 0)
    // The folders that are too many for the picture are one entry.
    readonly property var shown: {
        if (moves.length <= maxShown)
            return moves;
        const rest = moves.slice(maxShown - 1);
        const sum = key => rest.reduce((total, move) => total + move[key], 0);
        return moves.slice(0, maxShown - 1).concat([{text: "…", count: sum("count"), bytes: sum("bytes")}]);
    }
    readonly property real room: picture.height - 6 * (shown.length - 1)
    readonly property real minHeight: 36
    // Tall enough to be read, and else by their shares.
    readonly property var heights: shown.map(move => minHeight + (room - minHeight * shown.length) * move.count / Math.max(1, total))

    function nameOf(move: var): string {
        return move.text === "" ? qsTr("agent.stay") : move.text.split("/").pop();
    }

    function topOf(row: int): real {
        return heights.slice(0, row).reduce((sum, height) => sum + height + 6, 0);
    }

    implicitWidth: 262
    implicitHeight: 320
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("agent.before_after") + ": " + moves.map(
                         move => (move.text === "" ? qsTr("agent.stay") : move.text) + " " + Texts.count(move.count)).join(", ")

    HeadingText {
        id: title

        width: parent.width
        text: qsTr("agent.before_after")
        Accessible.ignored: true
    }

    Item {
        id: picture

        anchors.top: title.bottom
        anchors.topMargin: 14
        anchors.bottom: parent.bottom
        width: parent.width

        Rectangle {
            id: before

            width: 76
            height: parent.height
            radius: Theme.controlRadius
            color: Theme.manualSoft

            CaptionText {
                anchors.centerIn: parent
                width: parent.width - 12
                horizontalAlignment: Text.AlignHCenter
                text: Texts.counted("count.files", root.total)
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }

        Canvas {
            id: ribbons

            anchors.left: before.right
            anchors.right: after.left
            height: parent.height
            onPaint: {
                const context = getContext("2d");
                context.reset();
                let from = 0;
                for (let row = 0; row < root.shown.length; ++row) {
                    const share = height * root.shown[row].count / Math.max(1, root.total);
                    const top = root.topOf(row);
                    const bottom = top + root.heights[row];
                    context.fillStyle = root.shown[row].text === "" ? Theme.line : Theme.mixed(
                                            Theme.surface, Theme.category(row + 1), 0.3);
                    context.beginPath();
                    context.moveTo(0, from);
                    context.bezierCurveTo(width / 2, from, width / 2, top, width, top);
                    context.lineTo(width, bottom);
                    context.bezierCurveTo(width / 2, bottom, width / 2, from + share, 0, from + share);
                    context.fill();
                    from += share;
                }
            }

            Connections {
                target: root

                function onHeightsChanged() {
                    ribbons.requestPaint();
                }
            }

            Connections {
                target: Theme

                function onDarkChanged() {
                    ribbons.requestPaint();
                }
            }
        }

        Item {
            id: after

            anchors.right: parent.right
            width: Math.min(92, parent.width / 2)
            height: parent.height

            Repeater {
                model: root.shown.length

                Rectangle {
                    id: block

                    required property int index
                    readonly property var move: root.shown[index] ?? {text: "", count: 0, bytes: 0}
                    readonly property bool stays: move.text === ""

                    y: root.topOf(index)
                    width: after.width
                    height: root.heights[index] ?? 0
                    radius: Theme.controlRadius
                    color: stays ? Theme.manualSoft : Theme.category(index + 1)

                    Column {
                        anchors.centerIn: parent
                        width: parent.width - 12

                        CaptionText {
                            width: parent.width
                            horizontalAlignment: Text.AlignHCenter
                            color: block.stays ? Theme.text : Theme.inkOnCategory
                            text: root.nameOf(block.move)
                            elide: Text.ElideMiddle
                            Accessible.ignored: true
                        }

                        CaptionText {
                            width: parent.width
                            horizontalAlignment: Text.AlignHCenter
                            color: block.stays ? Theme.text : Theme.inkOnCategory
                            text: Texts.count(block.move.count)
                            Accessible.ignored: true
                        }
                    }

                    HoverHandler {
                        id: pointer
                    }

                    Tip {
                        text: Texts.joined([block.stays ? qsTr("agent.stay") : block.move.text,
                                            Texts.counted("count.files", block.move.count),
                                            Texts.bytes(block.move.bytes)], " · ")
                        shown: pointer.hovered
                    }
                }
            }
        }
    }
}
