pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls.Basic
import Orvane

// The window: the sidebar and the section that is shown.
ApplicationWindow {
    id: window

    required property AppState appState
    required property NavigationModel navigation
    required property LanguageModel languages
    required property OverviewModel overview
    required property MapModel map
    required property CleanupModel cleanup
    required property HistoryModel history
    required property TidyModel tidy
    required property DuplicatesModel duplicates
    required property AppsModel apps
    required property OrganizeModel organize
    required property RulesModel rules
    required property AgentModel agent
    required property PrivacyModel privacy
    required property SettingsModel settings

    readonly property Page screen: loader.item as Page
    // The screen of each section, by AppNavigationItem.
    readonly property var screens: [
        ["Overview", {appState: appState, model: overview, map: map}],
        ["Cleanup", {appState: appState, model: cleanup, overview: overview}],
        ["Duplicates", {appState: appState, model: duplicates}],
        ["Apps", {appState: appState, model: apps}],
        ["Organize", {appState: appState, model: organize}],
        ["Rules", {appState: appState, model: rules}],
        ["Agent", {appState: appState, model: agent}],
        ["History", {appState: appState, model: history}],
        ["Privacy", {appState: appState, model: privacy}],
        ["Settings", {
            appState: appState, model: settings, languages: languages, overview: overview, tidy: tidy, map: map
        }]
    ]

    readonly property int section: appState.selectedNavigation
    onSectionChanged: showSection(section)

    function showSection(section: int) {
        const screen = screens[section] ?? screens[0];
        loader.setSource("../" + screen[0].toLowerCase() + "/" + screen[0] + "Screen.qml", screen[1]);
    }

    function go(section: int) {
        appState.selectedNavigation = section;
    }

    width: 1180
    height: 760
    minimumWidth: 900
    minimumHeight: 600
    visible: true
    title: qsTr("app.name")
    color: Theme.background
    // The program's own font, with its families for Chinese, Japanese and Korean: controls would take the desktop's.
    font: fontProbe.font

    Component.onCompleted: {
        showSection(section);
        if (!appState.hasCompletedOnboarding)
            onboarding.open();
    }

    Text {
        id: fontProbe

        visible: false
    }

    Binding {
        target: Theme
        property: "dark"
        value: window.appState.darkScheme
    }

    Binding {
        target: Theme
        property: "reducedMotion"
        value: window.appState.reducedMotion
    }

    // Back from the program that shows the Trash.
    onActiveChanged: if (active) overview.reloadTrash()

    Connections {
        target: window.appState

        function onRaised() {
            window.visible = true;
            window.raise();
            window.requestActivate();
        }
    }

    Connections {
        target: window.tidy

        function onAsked() {
            tidySheet.open();
        }
    }

    Connections {
        target: loader.item as SettingsScreen

        function onIntroductionAsked() {
            onboarding.open();
        }
    }

    Sidebar {
        id: sidebar

        width: Theme.sidebarWidth
        height: parent.height
        appState: window.appState
        navigation: window.navigation
        languages: window.languages
        overview: window.overview
    }

    Loader {
        id: loader

        anchors.left: sidebar.right
        anchors.right: parent.right
        height: parent.height
        focus: true
        onLoaded: fadeIn.restart()

        NumberAnimation {
            id: fadeIn

            target: loader
            property: "opacity"
            from: Theme.shortMotion > 0 ? 0 : 1
            to: 1
            duration: Theme.shortMotion
        }
    }

    OnboardingSheet {
        id: onboarding

        appState: window.appState
        settings: window.settings
        languages: window.languages
    }

    TakenPlacesSheet {
        history: window.history
    }

    TidySheet {
        id: tidySheet

        tidy: window.tidy
    }

    Instantiator {
        model: 10

        delegate: Shortcut {
            required property int index

            sequences: ["Ctrl+" + (index + 1) % 10]
            onActivated: window.go(index)
        }
    }

    Shortcut {
        sequences: ["Ctrl+F"]
        onActivated: window.screen?.find()
    }

    Shortcut {
        sequences: ["Ctrl+A"]
        onActivated: window.screen?.selectRecommended()
    }

    Shortcut {
        sequences: ["Ctrl+Shift+A"]
        onActivated: window.screen?.deselectAll()
    }

    Shortcut {
        sequences: ["Ctrl+Z"]
        onActivated: window.screen?.undo()
    }

    Shortcut {
        sequences: ["Ctrl+R", "F5"]
        onActivated: window.screen?.startWork()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]
        onActivated: window.appState.quit()
    }
}
