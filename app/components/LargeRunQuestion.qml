import QtQuick
import Orvane

// Asks once more before very much moves, with its sums; what is less goes ahead at once.
AlertDialog {
    id: root

    property var goAhead: () => {}

    // `sums` says what would move, `verb` is on the button.
    function ask(isLarge: bool, sums: string, verb: string, goAhead: var) {
        if (!isLarge) {
            goAhead();
            return;
        }
        root.message = sums;
        root.confirmText = verb;
        root.goAhead = goAhead;
        root.open();
    }

    title: qsTr("consent.large_title")
    note: qsTr("consent.undo_note")
    rejectText: qsTr("action.cancel")
    onConfirmed: {
        const goOn = root.goAhead;
        goOn();
    }
}
