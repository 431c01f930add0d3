pragma ComponentBehavior: Bound

import QtQuick
import Orvane

// Asks once more before very much moves, with its sums; what is less goes ahead at once.
OnDemand {
    id: root

    property string sums: ""
    property string verb: ""
    property var goAhead: () => {}

    // `sums` says what would move, `verb` is on the button.
    function ask(isLarge: bool, sums: string, verb: string, goAhead: var) {
        if (!isLarge) {
            goAhead();
            return;
        }
        root.sums = sums;
        root.verb = verb;
        root.goAhead = goAhead;
        root.open();
    }

    AlertDialog {
        title: qsTr("consent.large_title")
        message: root.sums
        note: qsTr("consent.undo_note")
        confirmText: root.verb
        rejectText: qsTr("action.cancel")
        onConfirmed: {
            const goOn = root.goAhead;
            goOn();
        }
    }
}
