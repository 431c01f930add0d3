import QtQuick
import Orvane

// Asks, when a restore found places taken, whether they are swapped or the items get other names. Programs look for
// a folder by its name, so where a whole folder stands in the way swapping is offered first.
AlertDialog {
    id: root

    required property HistoryModel history

    readonly property string swapText: qsTr("history.swap")
    readonly property string besideText: qsTr("history.restore_beside")
    readonly property bool swapsFirst: history.areFoldersTaken

    function answer(swaps: bool) {
        if (swaps)
            history.swapPlaces();
        else
            history.restoreBeside();
    }

    title: qsTr("history.taken_title")
    message: qsTr("history.taken_text")
    details: history.takenPlaces
    confirmText: swapsFirst ? swapText : besideText
    rejectText: qsTr("action.cancel")
    extraText: swapsFirst ? besideText : swapText
    onConfirmed: answer(swapsFirst)
    onExtraChosen: answer(!swapsFirst)
}
