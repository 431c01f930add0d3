import QtQuick
import Orvane

// A dashed border with round ends, around what is assumed or could be added.
Canvas {
    id: root

    onPaint: {
        const context = getContext("2d");
        context.reset();
        context.strokeStyle = Theme.muted;
        context.setLineDash([3, 3]);
        context.roundedRect(0.5, 0.5, width - 1, height - 1, height / 2, height / 2);
        context.stroke();
    }

    Connections {
        target: Theme

        function onDarkChanged() {
            root.requestPaint();
        }
    }
}
