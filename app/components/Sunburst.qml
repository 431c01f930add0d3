pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Shapes
import Orvane

// Areas by size as two rings: the inner one the areas of a treemap, the outer one what is in each. The arrow keys walk
// the inner ring.
FocusScope {
    id: root

    property var areas: []
    property string summary: ""
    property string figure: ""
    property int current: -1
    signal chosen(var area, var child)
    signal menuAsked(var area, Item item)

    readonly property real outerRadius: Math.min(width, height) / 2 - 4
    readonly property real thickness: outerRadius * 0.27
    readonly property double total: Math.max(1, areas.reduce((sum, area) => sum + area.bytes, 0))
    // {area, child, from, to, ring} in degrees from the top; slivers that nobody could see are left out.
    readonly property var arcs: {
        const result = [];
        let at = 0;
        for (const area of areas) {
            const end = at + 360 * area.bytes / total;
            if (end - at > 0.4)
                result.push({area: area, child: null, from: at, to: end, ring: 0});
            let inner = at;
            for (const child of area.children) {
                const next = inner + 360 * child.bytes / total;
                if (next - inner > 0.8)
                    result.push({area: area, child: child, from: inner, to: next, ring: 1});
                inner = next;
            }
            at = end;
        }
        return result;
    }
    // Arcs stay for the next picture: showing another one costs less than making it.
    property int made: 0

    onArcsChanged: made = Math.max(made, arcs.length)

    readonly property var spoken: {
        const hovered = hover.hovered ? arcAt(hover.point.position.x, hover.point.position.y) : null;
        return hovered ?? (activeFocus && current >= 0 && current < areas.length ? {area: areas[current], child: null}
                                                                                  : null);
    }

    function label(area: var): string {
        return area.titleKey ? qsTr(area.titleKey) : area.label;
    }

    function arcAt(x: real, y: real): var {
        const dx = x - width / 2;
        const dy = y - height / 2;
        const distance = Math.sqrt(dx * dx + dy * dy);
        const ring = distance > outerRadius ? -1 : distance > outerRadius - thickness
                                              ? 1 : distance > outerRadius - 2 * thickness ? 0 : -1;
        const angle = (Math.atan2(dx, -dy) * 180 / Math.PI + 360) % 360;
        return arcs.find(arc => arc.ring === ring && angle >= arc.from && angle < arc.to) ?? null;
    }

    function step(by: int): void {
        if (areas.length > 0)
            current = (Math.max(current, by > 0 ? -1 : 0) + by + areas.length) % areas.length;
    }

    function chooseCurrent(): void {
        if (current >= 0 && current < areas.length)
            root.chosen(areas[current], null);
    }

    implicitHeight: 320
    activeFocusOnTab: true
    Accessible.role: Accessible.Graphic
    Accessible.focusable: true
    Accessible.name: spoken ? label(spoken.child ?? spoken.area) + ", " + Texts.bytes(
                                  (spoken.child ?? spoken.area).bytes) : root.summary
    onAreasChanged: current = -1
    Keys.onRightPressed: root.step(1)
    Keys.onDownPressed: root.step(1)
    Keys.onLeftPressed: root.step(-1)
    Keys.onUpPressed: root.step(-1)
    Keys.onReturnPressed: root.chooseCurrent()
    Keys.onEnterPressed: root.chooseCurrent()
    Keys.onSpacePressed: root.chooseCurrent()
    Keys.onMenuPressed: if (root.current >= 0) root.menuAsked(root.areas[root.current], root)

    Repeater {
        model: root.made

        Shape {
            id: arc

            required property int index
            readonly property var place: root.arcs[index] ?? null
            readonly property bool isLit: root.spoken !== null && root.spoken.area === place?.area
                                          && (root.spoken.child ?? null) === place.child
            readonly property bool isOuter: place?.ring === 1

            anchors.fill: root
            visible: place !== null

            ShapePath {
                fillColor: "transparent"
                strokeColor: Qt.darker(Theme.category(arc.place?.area.colorIndex ?? 0),
                                       (arc.isOuter ? 1.2 : 1) * (arc.isLit ? 1.3 : 1))
                strokeWidth: root.thickness - 2
                capStyle: ShapePath.FlatCap

                PathAngleArc {
                    centerX: root.width / 2
                    centerY: root.height / 2
                    radiusX: root.outerRadius - (arc.isOuter ? 0.5 : 1.5) * root.thickness
                    radiusY: radiusX
                    startAngle: (arc.place?.from ?? 0) - 90 + 0.2
                    sweepAngle: arc.place ? Math.max(0.1, arc.place.to - arc.place.from - 0.4) : 0.1
                }
            }
        }
    }

    FigureText {
        anchors.centerIn: parent
        width: Math.max(0, 2 * (root.outerRadius - 2 * root.thickness) - 16)
        horizontalAlignment: Text.AlignHCenter
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 11
        font.pixelSize: 22
        text: root.figure
    }

    HoverHandler {
        id: hover
    }

    TapHandler {
        onTapped: point => {
            const arc = root.arcAt(point.position.x, point.position.y);
            if (arc)
                root.chosen(arc.area, arc.child);
        }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: point => {
            const arc = root.arcAt(point.position.x, point.position.y);
            if (arc)
                root.menuAsked(arc.area, root);
        }
    }

    FocusRing {
        shown: root.activeFocus
    }

    Tip {
        readonly property var what: root.spoken?.child ?? root.spoken?.area ?? null

        text: what ? root.label(what) + " · " + Texts.bytes(what.bytes) : ""
        shown: what !== null
        delay: 100
    }
}
