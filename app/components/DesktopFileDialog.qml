import QtQuick.Dialogs

// The desktop's dialog for a file. In a file of its own: its module is loaded when it is asked for.
FileDialog {
    signal picked(string url)
    signal done

    onAccepted: {
        picked("" + selectedFile);
        done();
    }
    onRejected: done()
    Component.onCompleted: open()
}
