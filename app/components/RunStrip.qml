import QtQuick
import Orvane

// The strip of a run that moves files: its progress with Pause and Cancel, then what came of it with Undo until it is
// dismissed.
ProgressStrip {
    id: root

    // The model whose run it is, which knows its pace and remembers that the result was read.
    property RunModel run: null
    property bool isWorking: false
    property bool isUndoing: false
    property double done: 0
    property double total: 0
    property string workTitle: qsTr("action.cleaning")
    property string outcome: ""
    property bool canUndo: false
    property string undoLabel: qsTr("action.undo")
    property bool isDismissed: false

    readonly property string pace: run?.paceText ?? ""

    visible: isWorking || (outcome !== "" && !isDismissed)
    title: isPaused ? run?.isWaiting ? qsTr("run.paused") : qsTr("run.pausing")
                    : isUndoing ? qsTr("action.restoring") : workTitle
    value: total > 0 ? done / total : -1
    figures: total > 0 ? qsTr("count.of").arg(Texts.count(done)).arg(Texts.count(total)) : ""
    result: isWorking ? "" : outcome
    undoText: canUndo ? undoLabel : ""
    canPause: run?.canPause ?? false
    isPaused: run?.isPaused ?? false
    onPauseAsked: isPaused ? run.resume() : run.pause()
    onDismissed: run ? run.dismissResult() : isDismissed = true
    onOutcomeChanged: isDismissed = false
    onIsWorkingChanged: isDismissed = false
}
