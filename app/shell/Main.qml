pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Orvane

// The window: the sidebar and the section that is shown.
T.ApplicationWindow {
    id: window

    required property AppState appState
    required property WindowMemory memory
    required property NavigationModel navigation
    required property LanguageModel languages
    required property OverviewModel overview
    required property HistoryModel history
    required property TidyModel tidy
    required property DuplicatesModel duplicates
    required property AppsModel apps
    required property OrganizeModel organize
    required property AgentModel agent
    required property SettingsModel settings
    // By AppNavigationItem: the file of each screen, and what it is handed.
    required property var screens

    readonly property Page screen: loader.item as Page

    // A dropped folder is scanned as soon as it is among the folders.
    property bool scansAddedFolder: false

    readonly property int section: appState.selectedNavigation
    onSectionChanged: showSection(section)

    function showSection(section: int) {
        const screen = screens[section] ?? screens[0];
        loader.setSource(screen.source, screen.properties);
    }

    function rememberSize() {
        if (visibility !== Window.Windowed)
            return;
        memory.remember("width", width);
        memory.remember("height", height);
    }

    function go(section: int) {
        appState.selectedNavigation = section;
    }

    // By the keyboard, which goes along.
    function goByKey(section: int) {
        go(section);
        screen?.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    width: memory.number("width", 900, 16000, 1180)
    height: memory.number("height", 600, 16000, 760)
    visibility: memory.flag("maximized") ? Window.Maximized : Window.AutomaticVisibility
    onWidthChanged: rememberSize()
    onHeightChanged: rememberSize()
    onVisibilityChanged: if (visible) memory.remember("maximized", window.visibility === Window.Maximized)
    minimumWidth: 900
    minimumHeight: 600
    visible: true
    title: qsTr("app.name")
    color: Theme.background
    // The program's own font, with its families for Chinese, Japanese and Korean: controls would take the desktop's.
    font: fontProbe.font

    onClosing: close => {
        if (!appState.canKeepTray || !appState.closesToTray) {
            close.accepted = false;
            appState.quit();
        } else if (!appState.knowsTray) {
            close.accepted = false;
            trayNote.open();
        }
    }

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
        property: "systemAccent"
        value: window.appState.accent
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

        function onFolderDropped(url: string, name: string) {
            if (window.screen?.takeFolder(url))
                return;
            dropQuestion.url = url;
            dropQuestion.name = name;
            dropQuestion.open();
        }

        function onShortcutsAsked() {
            shortcuts.open();
        }

        function onAboutAsked() {
            about.open();
        }

        function onUndoLeftToScreen() {
            window.screen?.undo();
        }

        function onTold(text: string) {
            toast.show(text, "");
        }

        function onQuitAsked() {
            quitQuestion.open();
        }
    }

    Connections {
        target: window.settings

        function onPublished() {
            if (!window.scansAddedFolder)
                return;
            window.scansAddedFolder = false;
            if (window.settings.folderError !== "")
                window.go(AppNavigationItem.Settings);
            else
                window.appState.startScan();
        }
    }

    Connections {
        target: window.history

        function onPlacesTaken() {
            takenPlaces.open();
        }
    }

    Connections {
        target: window.appState.preview

        function onChanged() {
            if (window.appState.preview.isOpen)
                look.open();
        }
    }

    Connections {
        target: window.agent

        function onRoomAsked(section: int, folder: string, name: string, way: int) {
            if (section === AppNavigationItem.Duplicates && folder !== "")
                window.duplicates.chooseFolder(folder);
            if (section === AppNavigationItem.Organize && folder !== "")
                window.organize.chooseFolder(folder);
            if (section === AppNavigationItem.Organize && way >= 0)
                window.organize.strategy = way;
            if (section === AppNavigationItem.Apps)
                window.apps.searchText = name;
            window.go(section);
        }

        function onTrashAsked() {
            window.appState.openTrash();
        }
    }

    Connections {
        target: window.tidy

        function onAsked() {
            tidySheet.open();
        }

        function onTidied() {
            toast.show(window.tidy.statusText, window.tidy.canUndo ? qsTr("dashboard.undo") : "");
        }
    }

    Connections {
        target: window.screen

        function onIntroductionAsked() {
            onboarding.open();
        }
    }

    Backdrop {
        anchors.fill: parent
        Accessible.role: Accessible.Pane

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
    }

    DropArea {
        anchors.fill: parent
        onEntered: drag => drag.accepted = drag.hasUrls
        onDropped: drop => {
            if (drop.urls.length > 0)
                window.appState.takeDropped("" + drop.urls[0]);
        }
    }

    OnDemand {
        id: dropQuestion

        property string url: ""
        property string name: ""

        AlertDialog {
            title: qsTr("folder.dropped_title").arg(dropQuestion.name)
            message: qsTr("folder.dropped_text")
            confirmText: qsTr("folder.dropped_action")
            rejectText: qsTr("action.cancel")
            onConfirmed: {
                window.settings.addFolder(dropQuestion.url);
                window.scansAddedFolder = true;
            }
        }
    }

    OnDemand {
        id: onboarding

        source: Qt.resolvedUrl("../onboarding/OnboardingSheet.qml")
        properties: ({
            appState: window.appState, settings: window.settings, languages: window.languages
        })
    }

    OnDemand {
        id: takenPlaces

        source: Qt.resolvedUrl("../history/TakenPlacesSheet.qml")
        properties: ({history: window.history})
    }

    Toast {
        id: toast

        onActed: window.tidy.undo()
    }

    OnDemand {
        id: look

        source: Qt.resolvedUrl("LookSheet.qml")
        properties: ({appState: window.appState})
    }

    OnDemand {
        id: tidySheet

        source: Qt.resolvedUrl("../settings/TidySheet.qml")
        properties: ({tidy: window.tidy})
    }

    OnDemand {
        id: shortcuts

        source: Qt.resolvedUrl("ShortcutsSheet.qml")
    }

    OnDemand {
        id: about

        source: Qt.resolvedUrl("AboutSheet.qml")
    }

    OnDemand {
        id: quitQuestion

        AlertDialog {
            title: qsTr("quit.title")
            message: qsTr("quit.text")
            confirmText: qsTr("quit.finish")
            rejectText: qsTr("quit.stop")
            extraText: qsTr("action.cancel")
            onConfirmed: window.appState.quitWhenFinished()
            onRejected: window.appState.quitWhenStopped()
        }
    }

    OnDemand {
        id: trayNote

        AlertDialog {
            title: qsTr("tray.closing_title")
            message: qsTr("tray.closing_text")
            confirmText: qsTr("tray.close_window")
            rejectText: qsTr("tray.quit")
            onConfirmed: {
                window.appState.noteTrayIsKnown();
                window.close();
            }
            onRejected: window.appState.quit()
        }
    }

    Instantiator {
        model: 10

        delegate: Shortcut {
            required property int index

            sequences: ["Ctrl+" + (index + 1) % 10]
            onActivated: window.goByKey(index)
        }
    }

    Shortcut {
        sequences: ["Ctrl+F"]
        onActivated: window.screen?.find()
    }

    Shortcut {
        sequences: ["Ctrl+A"]
        onActivated: window.screen?.selectAll()
    }

    Shortcut {
        sequences: ["Ctrl+Shift+A"]
        onActivated: window.screen?.deselectAll()
    }

    Shortcut {
        sequences: ["Ctrl+Z"]
        onActivated: window.appState.undoRequested()
    }

    Shortcut {
        sequences: ["Ctrl+R", "F5"]
        onActivated: window.screen?.startWork()
    }

    Shortcut {
        sequences: ["Ctrl+?", "Ctrl+Shift+/", "F1"]
        onActivated: shortcuts.open()
    }

    Shortcut {
        sequences: ["Ctrl+Q"]
        onActivated: window.appState.quit()
    }
}
