import QtQuick
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
            if (chooser.hasNativeDialog)
                dialog.setSource("DesktopFolderDialog.qml");
            else
                dialog.setSource("FolderSheet.qml", {startFolder: root.startFolder});
        }
    }

    Loader {
        id: dialog
    }

    Connections {
        target: dialog.item

        function onPicked(url: string) {
            root.picked(url);
        }

        function onDone() {
            dialog.source = "";
        }
    }
}
