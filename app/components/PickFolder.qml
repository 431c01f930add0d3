pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Dialogs
import Orvane

// Asks for a folder: with the desktop's own chooser, and with one of Orvane's only where the desktop has none.
Item {
    id: root

    property string startFolder: ""
    signal picked(string url)

    function open() {
        chooser.choose(qsTr("action.choose_folder"), root.startFolder, root.Window.window);
    }

    visible: false

    FolderChooser {
        id: chooser

        onPicked: url => root.picked(url)
        onUnavailable: {
            const dialog = (chooser.hasNativeDialog ? nativeDialog : ownDialog).createObject(root);
            dialog.open();
        }
    }

    Component {
        id: nativeDialog

        FolderDialog {
            title: qsTr("action.choose_folder")
            onAccepted: {
                root.picked("" + selectedFolder);
                destroy();
            }
            onRejected: destroy()
        }
    }

    Component {
        id: ownDialog

        FolderSheet {
            startFolder: root.startFolder
            onPicked: url => root.picked(url)
            onClosed: destroy()
        }
    }
}
