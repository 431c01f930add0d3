import QtQuick
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
            if (chooser.hasNativeDialog)
                dialog.setSource("DesktopFileDialog.qml", {title: root.title});
            else
                dialog.setSource("FolderSheet.qml", {title: root.title, forFile: true});
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
