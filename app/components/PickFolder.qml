import QtQuick
import QtQuick.Dialogs

// Asks for a folder.
FolderDialog {
    id: root

    signal picked(string url)

    onAccepted: root.picked("" + root.selectedFolder)
}
