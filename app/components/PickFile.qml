pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import Orvane

// Asks for a file: with the desktop's own chooser, and with the toolkit's where the desktop has none.
Item {
    id: root

    property string title: ""
    signal picked(string url)

    function open() {
        chooser.choose(root.title, "", root.Window.window);
    }

    visible: false

    FolderChooser {
        id: chooser

        forFile: true
        onPicked: url => root.picked(url)
        onUnavailable: dialog.createObject(root).open()
    }

    Component {
        id: dialog

        FileDialog {
            title: root.title
            onAccepted: {
                root.picked("" + selectedFile);
                destroy();
            }
            onRejected: destroy()
        }
    }
}
