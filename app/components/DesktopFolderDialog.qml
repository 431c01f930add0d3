import QtQuick.Dialogs

// The desktop's dialog for a folder. In a file of its own: its module is loaded when it is asked for.
FolderDialog {
    signal picked(string url)
    signal done

    title: qsTr("action.choose_folder")
    onAccepted: {
        picked("" + selectedFolder);
        done();
    }
    onRejected: done()
    Component.onCompleted: open()
}
