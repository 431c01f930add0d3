pragma ComponentBehavior: Bound

import QtQuick
import Orvane
import "TreemapLayout.js" as Layout

// Areas by size. Each of `areas` has label, bytes, count, colorIndex and children, which are shown as shades within it.
// Areas too small to be hit are drawn at a size that can be; their tooltip says the truth.
FocusScope {
    id: root

    property var areas: []
    property string summary: ""
    property int spacing: 4
    signal chosen(var area, var child)
    signal menuAsked(var area, Item item)

    // The least share that an area is drawn with, so that it can be seen and clicked.
    readonly property double floor: 0.012
    readonly property var shown: (areas ?? []).filter(area => area.bytes > 0)
    readonly property var sizes: {
        const total = shown.reduce((sum, area) => sum + area.bytes, 0);
        return shown.map(area => Math.max(area.bytes, total * floor));
    }
    readonly property var places: Layout.boxes(sizes, width + spacing, height + spacing)

    // The keyboard goes on in the picture that a choice by it brought.
    property bool goesOn: false

    function focusFirst(): void {
        (repeater.itemAt(0) as TreemapArea)?.forceActiveFocus(Qt.TabFocusReason);
    }

    // Areas and their parts stay for the next picture: showing another one costs much less than making it.
    property int made: 0
    property int madeParts: 0

    onShownChanged: {
        made = Math.max(made, shown.length);
        if (goesOn && shown.length > 0)
            Qt.callLater(focusFirst);
        goesOn = false;
    }

    implicitHeight: 224
    Accessible.role: Accessible.Graphic
    Accessible.name: root.summary

    Repeater {
        id: repeater

        model: root.made

        TreemapArea {
            required property int index
            readonly property var place: root.places[index] ?? null

            visible: index < root.shown.length
            area: root.shown[index] ?? null
            madeParts: root.madeParts
            onPartCountChanged: root.madeParts = Math.max(root.madeParts, partCount)
            x: place ? Math.round(place.x) : 0
            y: place ? Math.round(place.y) : 0
            width: place ? Math.max(2, Math.round(place.x + place.width) - x - root.spacing) : 0
            height: place ? Math.max(2, Math.round(place.y + place.height) - y - root.spacing) : 0
            onChosen: child => {
                root.goesOn = visualFocus;
                root.chosen(area, child);
            }
            onMenuAsked: root.menuAsked(area, this)
        }
    }
}
