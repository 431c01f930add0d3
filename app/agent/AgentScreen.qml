pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Orvane

// A request in plain words, the plan made of it, and every file that it would touch before anything moves.
Page {
    id: root

    required property AppState appState
    required property AgentModel model

    // Leaves the list what there is of room.
    readonly property bool isShort: height < 680
    readonly property bool isBusy: model.isPlanning || model.isWorking
    // A section does what was asked for, and no plan is worth a look.
    readonly property bool isElsewhere: model.roomText !== "" && model.doubt === ""
    // A line for each of several steps.
    readonly property string stepLines: model.planSteps.length > 1 || model.isRefused
                                        ? linesOf(model.planSteps) : ""
    readonly property var currentProvider: model.providers[model.provider] ?? null

    function linesOf(steps: var): string {
        return steps.map(step => "\n" + Texts.joined([step.text, step.detail], " · ")).join("");
    }

    function names(providers: var): var {
        return providers.map(provider => provider.needsKey && !provider.hasKey
                                         ? qsTr("agent.provider_no_key").arg(provider.name) : provider.name);
    }

    function find() {
        prompt.forceActiveFocus(Qt.ShortcutFocusReason);
        prompt.selectAll();
    }

    function selectAll() {
        model.selectAll(true);
    }

    function deselectAll() {
        model.selectAll(false);
    }

    function undo() {
        if (model.canUndo && !isBusy)
            model.undo();
    }

    function startWork() {
        if (!isBusy && model.prompt.trim() !== "")
            model.dryRun();
    }

    title: qsTr("nav.agent")
    subtitle: qsTr("agent.subtitle")
    actions: [
        Item {
            // The button beside it says the same.
            visible: root.model.isOffline && !root.isNarrow
            implicitWidth: badge.implicitWidth
            implicitHeight: Theme.controlHeight

            Chip {
                id: badge

                anchors.verticalCenter: parent.verticalCenter
                kind: Chip.Kind.Safe
                text: qsTr("agent.offline_badge")
            }
        },
        MenuButton {
            enabled: !root.isBusy
            label: qsTr("agent.provider")
            choices: root.names(root.model.providers)
            current: root.model.provider
            onChosen: index => root.model.provider = index
        }
    ]

    Component.onCompleted: {
        // A key may have been stored meanwhile, also in the terminal.
        model.reloadProviders();
        model.reloadPresets();
        prompt.forceActiveFocus();
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: root.isShort ? 8 : Theme.gap

        Card {
            Layout.fillWidth: true
            padding: 12
            implicitHeight: 62
            // The field has no outline of its own.
            outline: prompt.activeFocus ? Theme.accent : Theme.line

            RowLayout {
                anchors.fill: parent
                anchors.leftMargin: 4
                spacing: 12

                Icon {
                    name: "agent"
                    size: 20
                    color: Theme.accent
                }

                InputField {
                    id: prompt

                    Layout.fillWidth: true
                    leftPadding: 0
                    enabled: !root.isBusy
                    placeholder: qsTr("agent.placeholder")
                    label: qsTr("agent.prompt")
                    font.pixelSize: 15
                    text: root.model.prompt
                    background: null
                    onTextEdited: root.model.prompt = text
                    onAccepted: root.startWork()
                }

                PlainButton {
                    id: whatIsSent

                    enabled: root.model.prompt.trim() !== ""
                    // Leaves the request its room.
                    symbol: root.isNarrow ? "send" : ""
                    text: root.isNarrow ? "" : qsTr("agent.what_is_sent")
                    Accessible.name: qsTr("agent.what_is_sent")
                    onClicked: {
                        root.model.updateRequest();
                        request.open();
                    }

                    Tip {
                        text: qsTr("agent.what_is_sent")
                        shown: root.isNarrow && (whatIsSent.hovered || whatIsSent.visualFocus)
                    }
                }

                PrimaryButton {
                    enabled: root.model.prompt.trim() !== "" && !root.isBusy
                    text: qsTr("action.dry_run")
                    onClicked: root.model.dryRun()
                }
            }
        }

        ProgressStrip {
            Layout.fillWidth: true
            visible: root.model.isPlanning
            title: qsTr("agent.planning")
            figures: Texts.joined([root.model.progressText, qsTr("agent.waited").arg(Texts.count(waited.seconds))], " · ")
            onCancelAsked: root.model.cancel()

            // A remote planner tells nothing until it answers.
            Timer {
                id: waited

                property int seconds: 0

                interval: 1000
                repeat: true
                running: root.model.isPlanning
                onRunningChanged: seconds = 0
                onTriggered: ++seconds
            }
        }

        RunStrip {
            Layout.fillWidth: true
            run: root.model
            isWorking: root.model.isWorking
            workTitle: qsTr("agent.applying")
            done: root.model.progressDone
            total: root.model.progressTotal
            detail: pace === "" ? root.model.progressText : pace
            outcome: root.model.resultText
            resultNote: root.model.resultNote
            canUndo: root.model.canUndo
            undoLabel: qsTr("dashboard.undo")
            onCancelAsked: root.model.cancel()
            onUndoAsked: root.model.undo()
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.error !== "" || root.model.messages.length > 0
            isWarning: true
            text: root.model.error !== "" ? root.model.error : Texts.firstLines(root.model.messages, 4)
            detail: root.model.fault
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.ruleProblem !== ""
            text: root.model.ruleProblem
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.notices.length > 0
            isWarning: true
            text: Texts.firstLines(root.model.notices, 4)
        }

        ReadingChips {
            Layout.fillWidth: true
            visible: root.model.reading.length > 0
            reading: root.model.reading
            canChange: !root.isBusy
            onValueChosen: (condition, value) => root.model.change(condition, value)
            onOtherAsked: chip => {
                if (chip.condition === 0)
                    folderPicker.open();
                else
                    conditionSheet.ask(chip);
            }
        }

        CaptionText {
            Layout.fillWidth: true
            visible: text !== ""
            color: Theme.review
            font.weight: Font.Medium
            text: root.model.changeText
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }

        Notice {
            Layout.fillWidth: true
            visible: root.model.roomText !== "" && !root.isElsewhere
            text: root.model.roomText
            action: root.model.roomAction
            onActed: root.model.openRoom()
        }

        Card {
            Layout.fillWidth: true
            visible: root.model.beside.length > 0
            padding: 12
            implicitHeight: beside.implicitHeight + 2 * padding

            ColumnLayout {
                id: beside

                width: parent.width
                spacing: 2

                Repeater {
                    model: root.model.beside

                    RowLayout {
                        id: places

                        required property var modelData

                        Layout.fillWidth: true
                        spacing: 12

                        BodyText {
                            Layout.fillWidth: true
                            text: places.modelData.text
                            wrapMode: Text.Wrap
                        }

                        LinkButton {
                            enabled: !root.isBusy
                            text: qsTr("agent.beside_add")
                            font.pixelSize: 13
                            onClicked: root.model.addPlaces(places.modelData.category)
                        }
                    }
                }
            }
        }

        Card {
            Layout.fillWidth: true
            visible: root.model.doubt !== "" && !root.isElsewhere
            padding: root.isShort ? 8 : 14
            implicitHeight: doubts.implicitHeight + 2 * padding

            ColumnLayout {
                id: doubts

                width: parent.width
                spacing: 2

                HeadingText {
                    Layout.fillWidth: true
                    color: Theme.review
                    text: qsTr("agent.closest")
                    wrapMode: Text.Wrap
                }

                BodyText {
                    Layout.fillWidth: true
                    text: root.model.doubt
                    wrapMode: Text.Wrap
                }
            }
        }

        CaptionText {
            Layout.fillWidth: true
            visible: root.model.hasPlan && !root.isElsewhere
            text: Texts.joined([qsTr("agent.plan_by").arg(root.model.answeredBy), root.model.planTitle], " · ")
                  + root.stepLines
            wrapMode: Text.Wrap
            maximumLineCount: root.isShort ? Math.max(1, root.model.planSteps.length) : 20
            elide: Text.ElideRight
        }

        CaptionText {
            Layout.fillWidth: true
            visible: text !== ""
            color: Theme.review
            text: root.model.fallbackReason === "" ? "" : qsTr("agent.fallback").arg(root.model.fallbackReason)
            wrapMode: Text.Wrap
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: Theme.gap

            Card {
                Layout.fillWidth: true
                Layout.fillHeight: true
                // Its content follows its size, which the layout gives.
                implicitWidth: 300
                implicitHeight: 200
                flush: true

                AgentMatches {
                    anchors.fill: parent
                    visible: root.model.hasPlan && !root.model.isRefused && !root.isElsewhere
                    model: root.model
                    appState: root.appState
                    isBusy: root.isBusy
                    isShort: root.isShort
                    onConfirmAsked: verb => large.ask(root.model.isLarge(root.model.selectedCount,
                                                                         root.model.selectedBytes),
                                                      root.model.selectedSums, verb, root.model.confirm)
                }

                EmptyState {
                    id: empty

                    // The requests on offer come first where both have no room.
                    readonly property bool hasRoom: !presets.visible || parent.height > 340

                    anchors.top: presets.bottom
                    anchors.bottom: parent.bottom
                    width: parent.width
                    visible: (!root.model.hasPlan || root.model.isRefused || root.isElsewhere) && hasRoom
                    drawing: "agent"
                    title: root.model.isPlanning || root.isElsewhere ? "" : qsTr("agent.empty_title")
                    text: root.isElsewhere ? root.model.roomText : root.model.isPlanning ? "" : qsTr("agent.empty_text")
                    action: root.isElsewhere ? root.model.roomAction : ""
                    onActed: root.model.openRoom()
                }

                Flow {
                    id: presets

                    // Near the request that they fill in.
                    anchors.top: parent.top
                    anchors.topMargin: height > 0 ? 18 : 0
                    x: 20
                    width: parent.width - 40
                    height: visible ? implicitHeight : 0
                    visible: !root.model.hasPlan && !root.isBusy && root.model.presets.length > 0
                    spacing: 8

                    CaptionText {
                        width: parent.width
                        text: Texts.joined([empty.hasRoom ? "" : qsTr("agent.empty_text"), qsTr("agent.presets")], "\n")
                        wrapMode: Text.Wrap
                    }

                    Repeater {
                        model: root.model.presets

                        PlainButton {
                            required property string modelData
                            required property int index

                            width: Math.min(implicitWidth, presets.width)
                            text: modelData
                            onClicked: root.model.askPreset(index)
                        }
                    }
                }
            }

            MovesCard {
                Layout.fillHeight: true
                Layout.maximumHeight: implicitHeight
                Layout.alignment: Qt.AlignTop
                visible: root.model.moves.length > 0 && !root.isNarrow && !root.model.isRefused && !root.isElsewhere
                moves: root.model.moves
            }
        }
    }

    LargeRunQuestion {
        id: large
    }

    ConditionSheet {
        id: conditionSheet

        model: root.model
    }

    PickFolder {
        id: folderPicker

        onPicked: url => root.model.change(0, url)
    }

    OnDemand {
        id: request

        Sheet {
            title: qsTr("agent.what_is_sent")
            sheetWidth: 640

            ColumnLayout {
                width: parent.width
                spacing: 12

                BodyText {
                    Layout.fillWidth: true
                    color: Theme.muted
                    text: root.model.request === "" ? qsTr("agent.nothing_sent") : qsTr("agent.sent_text")
                    wrapMode: Text.Wrap
                }

                RawText {
                    Layout.fillWidth: true
                    visible: root.model.request !== ""
                    text: root.model.request
                    label: qsTr("agent.what_is_sent")
                }
            }

            buttons: PlainButton {
                focus: true
                text: qsTr("action.close")
                onClicked: request.sheet.close()
            }
        }
    }
}
