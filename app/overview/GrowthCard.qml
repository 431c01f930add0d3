pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Shapes
import Orvane

// The growth of the last week: a figure, the folders and kinds that explain it, the places where most can go, and a line
// over time.
Card {
    id: root

    required property MapModel model

    readonly property var points: model.line ?? []
    readonly property double bytes: model.grownBytes
    readonly property var reasons: (model.grownFolders ?? []).map(grown => grown.name + " (+" + Texts.bytes(
                                                                       grown.bytes) + ")")
    readonly property var kinds: (model.grownKinds ?? []).map(grown => qsTr(grown.nameKey) + " (+" + Texts.bytes(
                                                                  grown.bytes) + ")")

    readonly property var freeing: model.freeingMost ?? []

    implicitHeight: layout.implicitHeight + 2 * padding - 4

    RowLayout {
        id: layout

        width: parent.width
        spacing: 24

        ColumnLayout {
            Layout.fillWidth: true
            Layout.preferredWidth: 320
            spacing: 4

            CaptionText {
                Layout.fillWidth: true
                text: qsTr("map.since").arg(Texts.momentInText(root.model.grownSince))
            }

            FigureText {
                Layout.fillWidth: true
                text: root.bytes === 0 ? qsTr("map.same")
                                       : (root.bytes > 0 ? "+" : "−") + Texts.bytes(Math.abs(root.bytes))
                color: root.bytes > 0 ? Theme.review : Theme.text
            }

            CaptionText {
                Layout.fillWidth: true
                visible: root.reasons.length > 0
                wrapMode: Text.Wrap
                text: qsTr("map.mostly").arg(Texts.joined([root.reasons.join(", "), root.kinds.join(", ")], "; "))
            }

            CaptionText {
                Layout.fillWidth: true
                Layout.topMargin: 4
                visible: root.freeing.length > 0
                text: qsTr("map.free_most")
            }

            Repeater {
                model: root.freeing

                LinkButton {
                    required property var modelData

                    Layout.maximumWidth: root.width / 2
                    symbol: "cleanup"
                    text: modelData.name + " · " + Texts.bytes(modelData.bytes)
                    onClicked: root.model.showInCleanup(modelData.folder)
                }
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.preferredWidth: 320
            Layout.preferredHeight: 76
            visible: root.points.length > 1
            Accessible.role: Accessible.Graphic
            Accessible.name: root.points.length > 1
                             ? qsTr("map.line_summary").arg(Texts.bytes(root.points[0].bytes)).arg(
                                   Texts.bytes(root.points[root.points.length - 1].bytes)) : ""

            Shape {
                id: line

                readonly property var places: {
                    if (root.points.length < 2)
                        return [];
                    const dates = root.points.map(point => point.date);
                    const sizes = root.points.map(point => point.bytes);
                    const first = dates[0];
                    const span = Math.max(1, dates[dates.length - 1] - first);
                    const minBytes = Math.min(...sizes);
                    const range = Math.max(1, Math.max(...sizes) - minBytes);
                    return root.points.map(point => Qt.point((point.date - first) / span * width,
                                                             4 + (1 - (point.bytes - minBytes) / range) * (height - 10)));
                }

                anchors.fill: parent

                ShapePath {
                    strokeWidth: -1
                    fillColor: Theme.accentSoft

                    PathPolyline {
                        path: line.places.length > 1 ? [Qt.point(0, line.height), ...line.places,
                                                        Qt.point(line.width, line.height)] : []
                    }
                }

                ShapePath {
                    strokeWidth: 2
                    strokeColor: Theme.accent
                    fillColor: "transparent"
                    joinStyle: ShapePath.RoundJoin

                    PathPolyline {
                        path: line.places
                    }
                }
            }
        }
    }
}
