import QtQuick
import QtQuick.Layouts
import Orvane

// When the rules run by themselves, and whether the background agent that does it is there.
SettingsCard {
    id: root

    required property SettingsModel model
    required property OverviewModel overview

    title: qsTr("settings.schedule_title")
    note: qsTr("settings.schedule_note")

    readonly property bool isAgentMissing: model.scheduleEnabled && !model.agentInstalled
    readonly property bool isByLowSpace: model.scheduleFrequency === SettingsModel.LowSpace
    readonly property string lastRun: model.lastScheduledRun > 0
                                      ? qsTr("settings.last_run").arg(Texts.dateTime(model.lastScheduledRun)) : ""
    // Without a run before it, the first one is due at once.
    readonly property string nextRun: !model.scheduleEnabled ? ""
                                      : isByLowSpace
                                        ? qsTr("settings.next_run_low").arg(model.scheduleThresholdGB + " " + qsTr(
                                                                                "unit.GB"))
                                        : model.lastScheduledRun > 0 && overview.nextScheduledRun > Date.now()
                                          ? qsTr("settings.next_run").arg(Texts.dateTime(overview.nextScheduledRun))
                                          : qsTr("settings.next_run_soon")

    SwitchRow {
        label: qsTr("settings.schedule_enabled")
        note: Texts.joined([root.nextRun, root.lastRun], " · ")
        on: root.model.scheduleEnabled
        onToggleAsked: root.model.scheduleEnabled = !root.model.scheduleEnabled
    }

    Divider {
        Layout.fillWidth: true
    }

    SettingRow {
        enabled: root.model.scheduleEnabled
        label: qsTr("settings.frequency")

        NumberField {
            visible: root.isByLowSpace
            label: qsTr("settings.threshold")
            from: 1
            to: 10000
            value: root.model.scheduleThresholdGB
            onValueModified: root.model.scheduleThresholdGB = value
        }

        BodyText {
            visible: root.isByLowSpace
            text: qsTr("unit.GB")
        }

        MenuButton {
            label: qsTr("settings.frequency")
            keys: root.model.frequencyKeys
            current: root.model.scheduleFrequency
            onChosen: index => root.model.scheduleFrequency = index
        }
    }

    Divider {
        Layout.fillWidth: true
    }

    SwitchRow {
        enabled: root.model.scheduleEnabled
        label: qsTr("settings.approved_only")
        on: root.model.scheduleApprovedOnly
        onToggleAsked: root.model.scheduleApprovedOnly = !root.model.scheduleApprovedOnly
    }

    Divider {
        Layout.fillWidth: true
    }

    SettingRow {
        label: qsTr("settings.background_agent")
        note: root.model.agentStatus !== "" ? root.model.agentStatus
                                            : root.isAgentMissing ? qsTr("settings.agent_wanted")
                                                                  : qsTr("settings.agent_note")
        isWarning: root.model.agentStatus !== "" || root.isAgentMissing

        PlainButton {
            visible: root.isAgentMissing
            text: qsTr("settings.agent_install")
            Accessible.name: text + ": " + qsTr("settings.background_agent")
            onClicked: root.model.installAgent()
        }

        Chip {
            kind: root.model.agentInstalled ? Chip.Kind.Safe : Chip.Kind.Manual
            text: root.model.agentInstalled ? qsTr("settings.agent_idle") : qsTr("settings.agent_absent")
        }
    }
}
