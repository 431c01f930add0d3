pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import Orvane

// Asks for a file: with the desktop's own chooser, and with one of Orvane's only where the desktop has none.
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
        onUnavailable: {
            const dialog = (chooser.hasNativeDialog ? nativeDialog : ownDialog).createObject(root);
            dialog.open();
        }
    }

    Component {
        id: nativeDialog

        FileDialog {
            title: root.title
            onAccepted: {
                root.picked("" + selectedFile);
                destroy();
            }
            onRejected: destroy()
        }
    }

    Component {
        id: ownDialog

        FolderSheet {
            title: root.title
            forFile: true
            onPicked: url => root.picked(url)
            onClosed: destroy()
        }
    }
}
