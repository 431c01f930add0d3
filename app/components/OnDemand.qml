import QtQuick
import Orvane

// A sheet that is made when it opens and goes when it is closed: most are never seen, and each takes as much memory as
// the content of a small section. Of one that is named by its file not even the types are loaded before.
Item {
    id: root

    default property Component content
    // Of the file, where the sheet is not the content, and what it is made with.
    property url source
    property var properties: ({})
    // The sheet, while it is open.
    property Sheet sheet: null

    function open() {
        if (!sheet) {
            const made = content ? content : Qt.createComponent(source);
            sheet = made.createObject(root, properties) as Sheet;
        }
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
