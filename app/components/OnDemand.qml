import QtQuick
import Orvane

// A sheet that is made when it opens and goes when it is closed: most are never seen, and each takes as much memory as
// the content of a small section.
Item {
    id: root

    default property Component content
    // The sheet, while it is open.
    property Sheet sheet: null

    function open() {
        if (!sheet)
            sheet = content.createObject(root) as Sheet;
        sheet.open();
    }

    visible: false

    Connections {
        target: root.sheet

        function onClosed() {
            root.sheet.destroy();
            root.sheet = null;
        }
    }
}
