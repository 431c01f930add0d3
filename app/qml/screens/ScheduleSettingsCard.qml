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

    SwitchRow {
        label: qsTr("settings.schedule_enabled")
        note: root.model.scheduleEnabled && root.overview.nextScheduledRun > 0
              ? qsTr("settings.next_run").arg(Texts.dateTime(root.overview.nextScheduledRun))
              : root.model.lastScheduledRun > 0
                ? qsTr("settings.last_run").arg(Texts.dateTime(root.model.lastScheduledRun)) : ""
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
            visible: root.model.scheduleFrequency === 3
            label: qsTr("settings.threshold")
            from: 1
            to: 10000
            value: root.model.scheduleThresholdGB
            onValueModified: root.model.scheduleThresholdGB = value
        }

        BodyText {
            visible: root.model.scheduleFrequency === 3
            text: qsTr("unit.GB")
        }

        MenuButton {
            label: qsTr("settings.frequency")
            choices: [qsTr("settings.daily"), qsTr("settings.weekly"), qsTr("settings.monthly"),
                      qsTr("settings.low_space")]
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
        note: root.model.agentStatus
        isWarning: true

        Chip {
            kind: root.model.agentInstalled ? Chip.Kind.Safe : Chip.Kind.Manual
            text: root.model.agentInstalled ? qsTr("settings.agent_idle") : qsTr("settings.agent_absent")
        }
    }
}
