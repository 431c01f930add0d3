import QtQuick
import Orvane

// A setting that is on or off.
SettingRow {
    id: root

    property bool on: false
    property bool canChange: true
    signal toggleAsked

    ToggleSwitch {
        enabled: root.canChange
        text: root.label
        on: root.on
        onToggleAsked: root.toggleAsked()
    }
}
