import QtQuick
import QtQuick.Controls.Basic
import Orvane

ApplicationWindow {
    id: window

    required property AppState appState
    required property NavigationModel navigation
    required property LanguageModel languages
    required property OverviewModel overview
    required property CleanupModel cleanup
    required property HistoryModel history
    required property TidyModel tidy

    width: 1180
    height: 760
    visible: true
    title: qsTr("app.name")

    Button {
        anchors.centerIn: parent
        text: window.appState.isScanning ? window.appState.scanStatus : qsTr("action.scan")
        onClicked: window.appState.startScan()
    }
}
